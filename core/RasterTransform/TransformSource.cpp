#include "core/RasterTransform/TransformSource.h"

#include "core/RasterKernel/SampleKernel.h"

#include <algorithm>
#include <cstring>

namespace {

// Calls `fn(corner, part)` for each block of a plane's grid and the part of a rectangle inside it.
template <class Function>
void ForEachPart(const CRasterBuffer& plane, const CRect& rc, Function fn) {
    plane.ForEachBlockIn(rc, [&](CPoint pt) { fn(pt, rc.Intersect(CRect(pt, plane.GetBlockSize()))); });
}

} // namespace

bool TTransformSource::HasTiles(const CRect& rcWanted) const {
    bool bAny = false;
    ForEachPart(*spPlane, rcWanted.Intersect(rc), [&](CPoint pt, const CRect&) {
        bAny = bAny || (spPlane->HasBlock(pt) && (!spMask || spMask->HasBlock(pt)));
    });
    return bAny;
}

void CSourceWindow::Read(const TTransformSource& source, const CRect& rc, size_t nChannels) {
    const auto nWidth = static_cast<size_t>(rc.Width());
    m_nPlane = nWidth * static_cast<size_t>(rc.Height());
    m_vBytes.assign(m_nPlane * nChannels, 0);
    const auto offset = [&](int32_t x, int32_t y) {
        return static_cast<size_t>(y - rc.top) * nWidth + static_cast<size_t>(x - rc.left);
    };
    ForEachPart(*source.spPlane, rc, [&](CPoint pt, const CRect& rcPart) {
        const auto spTile = source.spPlane->GetBlock(pt, false);
        if (!spTile) return;
        const auto nPart = static_cast<size_t>(rcPart.Width());
        for (size_t n = 0; n < nChannels; ++n)
            for (int32_t y = rcPart.top; y < rcPart.bottom; ++y)
                std::memcpy(m_vBytes.data() + n * m_nPlane + offset(rcPart.left, y),
                            spTile->GetPixelPtr(CPoint{rcPart.left, y} - pt) + n * spTile->GetPlaneBytes(),
                            nPart);
    });
    if (!source.spMask) return;
    uint8_t* pAlpha = m_vBytes.data() + (nChannels - 1) * m_nPlane;
    ForEachPart(*source.spMask, rc, [&](CPoint pt, const CRect& rcPart) {
        const CAlphaBlock8* pTile = source.spMask->FindBlock(pt);
        for (int32_t y = rcPart.top; y < rcPart.bottom; ++y) {
            uint8_t* pRow = pAlpha + offset(rcPart.left, y);
            const uint8_t* pMask = pTile ? pTile->GetPixelPtr(CPoint{rcPart.left, y} - pt) : nullptr;
            for (int32_t x = 0; x < rcPart.Width(); ++x)
                pRow[x] = pMask ? std::min(pRow[x], pMask[x]) : uint8_t{0};
        }
    });
}

void CSourceWindow::Prepare(const TTransformSource& source, const CRect& rc, size_t nChannels) {
    // At least one row and column is read, from which all others may be repeated.
    const auto clamp = [](int32_t nFrom, int32_t nTo, int32_t nLow, int32_t nHigh) {
        const int32_t nFirst = std::clamp(nFrom, nLow, nHigh - 1);
        return std::pair(nFirst, std::clamp(nTo, nFirst + 1, nHigh));
    };
    const auto [nLeft, nRight] = clamp(rc.left, rc.right, source.rc.left, source.rc.right);
    const auto [nTop, nBottom] = clamp(rc.top, rc.bottom, source.rc.top, source.rc.bottom);
    Read(source, CRect(nLeft, nTop, nRight, nBottom), nChannels);
    const auto nCount = static_cast<size_t>(nRight - nLeft);
    const size_t nRow = static_cast<size_t>(rc.Width()) * nChannels;
    m_vPrepared.resize(nRow * static_cast<size_t>(rc.Height()) + 8);
    const size_t nBefore = nLeft > rc.left ? static_cast<size_t>(nLeft - rc.left) : 0;
    const size_t nBehind = static_cast<size_t>(rc.Width()) - nBefore - nCount;
    int32_t yLast = nTop - 1;
    for (int32_t y = rc.top; y < rc.bottom; ++y) {
        int16_t* pRow = m_vPrepared.data() + static_cast<size_t>(y - rc.top) * nRow;
        const int32_t ySource = std::clamp(y, nTop, nBottom - 1);
        if (ySource == yLast) {
            std::memcpy(pRow, pRow - nRow, nRow * sizeof(int16_t));
            continue;
        }
        yLast = ySource;
        const uint8_t* apPlanes[4];
        for (size_t n = 0; n < nChannels; ++n)
            apPlanes[n] = GetPlane(n) + static_cast<size_t>(ySource - nTop) * nCount;
        int16_t* pFirst = pRow + nBefore * nChannels;
        PrepareRow(pFirst, apPlanes, nChannels, nCount);
        for (size_t i = 0; i < nBefore * nChannels; ++i) pRow[i] = pFirst[i % nChannels];
        int16_t* pBehind = pFirst + nCount * nChannels;
        for (size_t i = 0; i < nBehind * nChannels; ++i) pBehind[i] = (pBehind - nChannels)[i % nChannels];
    }
}
