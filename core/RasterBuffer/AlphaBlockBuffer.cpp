#include "core/RasterBuffer/AlphaBlockBuffer.h"

#include "core/Base/Failure.h"
#include "core/RasterBuffer/AlphaBuffer.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "core/RasterKernel/BlendKernel.h"
#include "core/RasterKernel/ReduceKernel.h"
#include "core/RasterKernel/StampKernel.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <vector>

namespace {

// Calls `fn(bytes, first, count)` for runs of coverage bytes: all of them, or parts of the upper bytes of
// 16-bit values.
template <class Function>
void ForEachRun(const uint8_t* pAlpha, size_t nCount, Function fn) {
    fn(pAlpha, size_t{0}, nCount);
}
template <class Function>
void ForEachRun(const uint16_t* pAlpha, size_t nCount, Function fn) {
    std::array<uint8_t, 2304> aBytes; // a quarter of a tile
    for (size_t n = 0; n < nCount; n += aBytes.size()) {
        const size_t nRun = std::min(aBytes.size(), nCount - n);
        StampKernels().pUpperBytes(aBytes.data(), pAlpha + n, nRun);
        fn(static_cast<const uint8_t*>(aBytes.data()), n, nRun);
    }
}

} // namespace

template <class T>
void CAlphaBlockBufferImpl<T>::Create(CSize szBlock, CPoint ptPos) {
    Allocate(szBlock, ptPos, 1, sizeof(T));
    Clear();
}

template <class T>
void CAlphaBlockBufferImpl<T>::Clear() {
    std::memset(m_pFirst, 0, GetPlaneBytes());
}

template <class T>
boost::shared_ptr<CRasterBlockBuffer> CAlphaBlockBufferImpl<T>::Clone() const {
    auto spTile = boost::make_shared<CAlphaBlockBufferImpl>();
    spTile->Allocate(m_szBlock, m_ptPos, 1, sizeof(T));
    spTile->m_pOwner = m_pOwner;
    std::memcpy(spTile->m_pFirst, m_pFirst, GetPlaneBytes());
    return spTile;
}

template <class T>
boost::shared_ptr<CRasterBlockBuffer> CAlphaBlockBufferImpl<T>::CreateReduced(CSize sz, int iScale,
                                                                              CSize szInside) const {
    SELF_CHECK(invalid_argument, iScale > 0);
    auto spTile = boost::make_shared<CAlphaBlockBufferImpl>();
    spTile->Create(sz, {m_ptPos.x / iScale, m_ptPos.y / iScale});
    const std::vector<uint8_t> vInside = InsideBytes(szInside);
    ReducePlane(spTile->GetAlpha(), sz, GetAlpha(), vInside.empty() ? nullptr : vInside.data(), m_szBlock);
    return spTile;
}

template <class T>
void CAlphaBlockBufferImpl<T>::SetOwner(CRasterBuffer* pOwner) {
    m_pOwner = dynamic_cast<CAlphaBufferBase*>(pOwner);
}

template <class T>
void CAlphaBlockBufferImpl<T>::BlendInto(CRasterBlockBuffer& dest, const CRasterBlockBuffer* pMask) const {
    SELF_CHECK(defect_logic, m_pOwner != nullptr);
    BlendCoverage(dest, static_cast<const CAlphaBufferBase&>(*m_pOwner), pMask); // SetOwner accepts no
                                                                                 // other kind
}

template <class T>
void CAlphaBlockBufferImpl<T>::BlendCoverage(CRasterBlockBuffer& dest, const CAlphaBufferBase& ink,
                                             const CRasterBlockBuffer* pMask) const {
    SELF_CHECK(invalid_argument, dest.GetSize() == m_szBlock);
    const size_t nCount = static_cast<size_t>(m_szBlock.cx) * static_cast<size_t>(m_szBlock.cy);
    const uint8_t* pMaskBytes = MaskBytes(pMask, m_szBlock);
    if (auto* pAlpha = dynamic_cast<CAlphaBlock8*>(&dest)) {
        // A stroke of 16 bits is never used as a mask.
        if constexpr (sizeof(T) == 1) AddCoverage(pAlpha->GetAlpha(), GetAlpha(), pMaskBytes, nCount);
        return;
    }
    const TColor color = ink.GetColor();
    auto* pGrey = dynamic_cast<CMonoRasterBlockBuffer*>(&dest);
    auto* pColor = dynamic_cast<CColorRasterBlockBuffer*>(&dest);
    ForEachRun(GetAlpha(), nCount, [&](const uint8_t* pCover, size_t nFirst, size_t nRun) {
        const uint8_t* pRunMask = pMaskBytes ? pMaskBytes + nFirst : nullptr;
        if (ink.IsErase() && (pGrey || pColor))
            EraseCoverage((pGrey ? pGrey->GetAlpha() : pColor->GetAlpha()) + nFirst, pCover, pRunMask, nRun);
        else if (pGrey)
            BlendInk(pGrey->Pixels(nFirst), ink.GetGrey(), pCover, pRunMask, nRun);
        else if (pColor)
            BlendInk(pColor->Pixels(nFirst), {RedOf(color), GreenOf(color), BlueOf(color)}, pCover, pRunMask,
                     nRun);
    });
}

template <class T>
const CAlphaBlockBufferImpl<T>& CAlphaBlockBufferImpl<T>::Cast(const CRasterBlockBuffer& tile) {
    const auto* pTile = dynamic_cast<const CAlphaBlockBufferImpl*>(&tile);
    SELF_CHECK(invalid_argument, pTile != nullptr);
    return *pTile;
}

template <class T>
void CAlphaBlockBufferImpl<T>::CopyRows(CAlphaBlockBufferImpl& to, CPoint ptTo,
                                        const CAlphaBlockBufferImpl& from, CPoint ptFrom, CSize sz) {
    for (int32_t y = 0; y < sz.cy; ++y)
        std::memcpy(to.GetAlpha() + to.Offset({ptTo.x, ptTo.y + y}),
                    from.GetAlpha() + from.Offset({ptFrom.x, ptFrom.y + y}),
                    static_cast<size_t>(sz.cx) * sizeof(T));
}

template <class T>
void CAlphaBlockBufferImpl<T>::ExtractTo(CRasterBlockBuffer& dest, CPoint ptDest, bool bCut,
                                         const CRasterBlockBuffer*) {
    auto& tile = const_cast<CAlphaBlockBufferImpl&>(Cast(dest));
    CPoint ptMove;
    const CRect rc = OverlapWith(dest, ptDest, ptMove);
    if (rc.IsEmpty()) return;
    const CPoint ptHere = rc.TopLeft() + ptMove;
    CopyRows(tile, rc.TopLeft(), *this, ptHere, rc.Size());
    for (int32_t y = 0; bCut && y < rc.Height(); ++y)
        std::memset(GetAlpha() + Offset({ptHere.x, ptHere.y + y}), 0,
                    static_cast<size_t>(rc.Width()) * sizeof(T));
}

template <class T>
void CAlphaBlockBufferImpl<T>::PasteFrom(const CRasterBlockBuffer& src, CPoint ptSrc) {
    CPoint ptMove;
    const CRect rc = OverlapWith(src, ptSrc, ptMove);
    if (!rc.IsEmpty()) CopyRows(*this, rc.TopLeft() + ptMove, Cast(src), rc.TopLeft(), rc.Size());
}

template class CAlphaBlockBufferImpl<uint8_t>;
template class CAlphaBlockBufferImpl<uint16_t>;
