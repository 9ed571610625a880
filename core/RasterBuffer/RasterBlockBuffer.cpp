#include "core/RasterBuffer/RasterBlockBuffer.h"

#include "core/Base/Failure.h"
#include "core/RasterBuffer/AlphaBlockBuffer.h"

#include <algorithm>
#include <cstring>

void CRasterBlockBuffer::Allocate(CSize szBlock, CPoint ptPos, size_t nPlanes, size_t nSample) {
    constexpr size_t ALIGNMENT = 64;
    const size_t nPlane = static_cast<size_t>(szBlock.cx) * static_cast<size_t>(szBlock.cy);
    m_pAlloc.reset(new uint8_t[nPlane * nPlanes * nSample + ALIGNMENT]);
    const size_t nAddress = reinterpret_cast<uintptr_t>(m_pAlloc.get());
    m_pFirst = m_pAlloc.get() + ((nAddress + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT - nAddress);
    m_szBlock = szBlock;
    m_nPlanes = nPlanes;
    m_nSample = nSample;
    m_ptPos = ptPos;
}

CRect CRasterBlockBuffer::OverlapWith(const CRasterBlockBuffer& other, CPoint pt, CPoint& ptMove) const {
    ptMove = pt - m_ptPos;
    return {std::max(0, m_ptPos.x - pt.x), std::max(0, m_ptPos.y - pt.y),
            std::min(other.m_szBlock.cx, m_szBlock.cx + m_ptPos.x - pt.x),
            std::min(other.m_szBlock.cy, m_szBlock.cy + m_ptPos.y - pt.y)};
}

std::vector<uint8_t> CRasterBlockBuffer::CopyAlpha() const {
    return {GetLastPlane(), GetLastPlane() + GetPlaneBytes()};
}

void CRasterBlockBuffer::RestoreAlpha(const std::vector<uint8_t>& vAlpha) {
    SELF_CHECK(invalid_argument, vAlpha.size() == GetPlaneBytes());
    std::memcpy(GetLastPlane(), vAlpha.data(), vAlpha.size());
}

void CRasterBlockBuffer::ClearOutside(const CRect& rcKeep) {
    const CRect rcAll({0, 0}, m_szBlock);
    CRect rc = rcKeep.Intersect(rcAll);
    if (rc == rcAll) return;
    if (rc.IsEmpty()) rc = {};
    for (size_t nPlane = 0; nPlane < m_nPlanes; ++nPlane)
        for (int32_t y = 0; y < m_szBlock.cy; ++y) {
            uint8_t* pRow = m_pFirst + nPlane * GetPlaneBytes() + Offset({0, y}) * m_nSample;
            const bool bKeeps = rc.top <= y && y < rc.bottom;
            const size_t nLeft = static_cast<size_t>(bKeeps ? rc.left : m_szBlock.cx) * m_nSample;
            const size_t nRight = static_cast<size_t>(bKeeps ? rc.right : m_szBlock.cx) * m_nSample;
            std::memset(pRow, 0, nLeft);
            std::memset(pRow + nRight, 0, static_cast<size_t>(m_szBlock.cx) * m_nSample - nRight);
        }
}

const uint8_t* CRasterBlockBuffer::MaskBytes(const CRasterBlockBuffer* pMask, CSize sz) {
    if (!pMask) return nullptr;
    const auto* pCoverage = dynamic_cast<const CAlphaBlock8*>(pMask);
    SELF_CHECK(invalid_argument, pCoverage != nullptr && pCoverage->GetSize() == sz);
    return pCoverage->GetAlpha();
}

std::vector<uint8_t> CRasterBlockBuffer::InsideBytes(CSize szInside) const {
    std::vector<uint8_t> vInside;
    if (szInside == m_szBlock) return vInside;
    vInside.resize(GetPlaneBytes() / m_nSample);
    const CRect rc = CRect({0, 0}, szInside).Intersect(CRect({0, 0}, m_szBlock));
    for (int32_t y = rc.top; y < rc.bottom; ++y)
        std::fill_n(vInside.begin() + static_cast<ptrdiff_t>(Offset({0, y})), std::max(rc.Width(), 0),
                    uint8_t{255});
    return vInside;
}
