#include "core/RasterStamp/StampTarget.h"

#include "core/RasterKernel/StampKernel.h"
#include "core/RasterStamp/StampShape.h"

#include <algorithm>

CStampTarget::CStampTarget(CStrokePlane& plane)
    : m_plane(plane), m_szBlock(plane.GetBlockSize()), m_szBlocks(plane.GetBufferSize()),
      m_vTiles(static_cast<size_t>(m_szBlocks.cx) * static_cast<size_t>(m_szBlocks.cy)) {}

void CStampTarget::ForgetTiles() { std::fill(m_vTiles.begin(), m_vTiles.end(), nullptr); }

uint16_t* CStampTarget::TileAt(int32_t nColumn, int32_t nRow) {
    uint16_t*& pTile = m_vTiles[static_cast<size_t>(nRow) * static_cast<size_t>(m_szBlocks.cx) +
                                static_cast<size_t>(nColumn)];
    if (!pTile) {
        const auto spTile = m_plane.GetWritableBlock(m_plane.BlockCorner(nColumn, nRow));
        pTile = static_cast<CAlphaBlock16&>(*spTile).GetAlpha();
    }
    return pTile;
}

// `rcDraw` lies in the tile whose corner is `ptTile`; `ptFirst` is the plane pixel of the stamp's first.
void CStampTarget::DrawOnTile(const uint16_t* pStamp, int32_t nSide, CPoint ptTile, const CRect& rcDraw,
                              CPoint ptFirst, uint8_t byAlpha) {
    CPoint ptDraw = rcDraw.TopLeft() - ptTile;
    CPoint ptSrc = rcDraw.TopLeft() - ptFirst;
    int32_t nWidth = rcDraw.Width();
    SELF_CHECK(defect_logic, 0 <= ptDraw.x && ptDraw.x + nWidth <= m_szBlock.cx && 0 <= ptDraw.y &&
                                 ptDraw.y + rcDraw.Height() <= m_szBlock.cy);
    SELF_CHECK(defect_logic, 0 <= ptSrc.x && ptSrc.x + nWidth <= nSide && 0 <= ptSrc.y &&
                                 ptSrc.y + rcDraw.Height() <= nSide);
    // The zeros around the stamp's rows change nothing, but allow whole vectors.
    constexpr auto MARGIN = static_cast<int32_t>(STAMP_MARGIN);
    const int32_t nMore = (MARGIN - nWidth % MARGIN) % MARGIN;
    if (ptSrc.x + nWidth == nSide && ptDraw.x + nWidth + nMore <= m_szBlock.cx) {
        nWidth += nMore;
    } else if (ptSrc.x == 0 && ptDraw.x >= nMore) {
        nWidth += nMore;
        ptDraw.x -= nMore;
        ptSrc.x -= nMore;
    }
    const size_t nStride = StampStride(static_cast<uint32_t>(nSide / 2));
    const auto nBlockStride = static_cast<size_t>(m_szBlock.cx);
    uint16_t* pTile = TileAt(ptTile.x / m_szBlock.cx, ptTile.y / m_szBlock.cy);
    StampKernels().pAccumulate({pTile + static_cast<size_t>(ptDraw.y) * nBlockStride + ptDraw.x, nBlockStride,
                                pStamp + static_cast<size_t>(ptSrc.y) * nStride + MARGIN + ptSrc.x, nStride,
                                static_cast<size_t>(nWidth), static_cast<size_t>(rcDraw.Height())},
                               byAlpha);
}

void CStampTarget::Draw(const uint16_t* pStamp, uint32_t uHalfSize, CPoint pt, uint8_t byAlpha) {
    const auto nHalf = static_cast<int32_t>(uHalfSize);
    const CSize sz = m_plane.GetSize();
    const CPoint ptFirst{pt.x - nHalf, pt.y - nHalf};
    const CRect rc = CRect(ptFirst, CSize{2 * nHalf, 2 * nHalf}).Intersect(CRect({0, 0}, sz));
    if (rc.IsEmpty()) return;
    const int32_t nLastColumn = (rc.right - 1) / m_szBlock.cx;
    const int32_t nLastRow = (rc.bottom - 1) / m_szBlock.cy;
    for (int32_t nRow = rc.top / m_szBlock.cy; nRow <= nLastRow; ++nRow)
        for (int32_t nColumn = rc.left / m_szBlock.cx; nColumn <= nLastColumn; ++nColumn) {
            const CPoint ptTile = m_plane.BlockCorner(nColumn, nRow);
            DrawOnTile(pStamp, 2 * nHalf, ptTile, rc.Intersect(CRect(ptTile, m_szBlock)), ptFirst, byAlpha);
        }
    m_plane.MarkDirty({ptFirst.x - 1, ptFirst.y - 1, ptFirst.x + 2 * nHalf, ptFirst.y + 2 * nHalf});
}
