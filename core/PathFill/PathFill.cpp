#include "core/PathFill/PathFill.h"

#include "core/PathFill/FillReach.h"

#include <cstring>

namespace {

void RaiseTo(uint8_t* pDest, uint8_t uValue, size_t nCount) {
    if (uValue == 255)
        std::memset(pDest, 255, nCount);
    else
        for (size_t n = 0; n < nCount; ++n) pDest[n] = std::max(pDest[n], uValue);
}

} // namespace

void CPathFill::FillTile(std::span<const TOutline> outlines, const TFillPlane& plane, CAlphaBlock8& tile) {
    std::for_each(outlines.begin(), outlines.end(), CheckOutline);
    const CSize szPlane{RoundUp(plane.szPlane.cx, DEFAULT_BLOCKSIZE.cx),
                        RoundUp(plane.szPlane.cy, DEFAULT_BLOCKSIZE.cy)};
    const CRect rcTile = tile.GetRect();
    CRect rc;
    for (const TOutline& points : outlines)
        if (points.size() >= 4) rc = rc.Union(ReachOf(points, plane.ptOrigin, szPlane).Intersect(rcTile));
    if (rc.IsEmpty()) return;
    // Whole runs, as the kernel requires.
    rc.left -= (rc.left - rcTile.left) % CCountRow::RUN;
    rc.right = std::min(rc.left + RoundUp(rc.Width(), CCountRow::RUN), rcTile.right);
    m_target.rc = rc;
    m_target.szTile = tile.GetSize();
    m_target.nColumns = 1;
    const auto nOffset = ptrdiff_t{rc.top - rcTile.top} * m_target.szTile.cx + rc.left - rcTile.left;
    m_target.vTiles.assign(1, tile.GetAlpha() + nOffset);
    Fill(outlines, plane.ptOrigin, szPlane);
}

void CPathFill::FillPlane(TOutline points, CPoint ptOrigin, CAlphaBufferImpl<uint8_t>& plane) {
    CheckOutline(points);
    const CSize sz = plane.GetBlockSize();
    SELF_CHECK(invalid_argument, sz.cx % CCountRow::RUN == 0 && sz.cy % ROWS == 0);
    const CSize szPlane{plane.GetBufferSize().cx * sz.cx, plane.GetBufferSize().cy * sz.cy};
    const CRect rcReach = ReachOf(points, ptOrigin, szPlane);
    if (points.size() < 4 || rcReach.IsEmpty()) return;
    m_target.rc = {rcReach.left / sz.cx * sz.cx, rcReach.top / sz.cy * sz.cy, RoundUp(rcReach.right, sz.cx),
                   RoundUp(rcReach.bottom, sz.cy)};
    m_target.szTile = sz;
    m_target.nColumns = m_target.rc.Width() / sz.cx;
    m_target.vTiles.clear();
    plane.ForEachBlockIn(m_target.rc, [&](CPoint pt) {
        m_target.vTiles.push_back(static_cast<CAlphaBlock8&>(*plane.GetWritableBlock(pt)).GetAlpha());
    });
    Fill({&points, 1}, ptOrigin, szPlane);
}

void CPathFill::Fill(std::span<const TOutline> outlines, CPoint ptOrigin, CSize szPlane) {
    const int32_t nHeight = m_target.rc.Height();
    m_vRuns.resize(static_cast<size_t>((m_target.rc.Width() + CCountRow::RUN - 1) / CCountRow::RUN));
    const int32_t nStep = BandHeight(outlines, ptOrigin, szPlane, m_target.rc, ROWS);
    for (int32_t y = 0; y < nHeight; y += nStep)
        FillBand(outlines, ptOrigin, szPlane, y, std::min(y + nStep, nHeight));
}

// Coordinates are relative to the target's corner; the band has a margin of one pixel for the filter,
// except at the plane's border.
void CPathFill::FillBand(std::span<const TOutline> outlines, CPoint ptOrigin, CSize szPlane, int32_t yTop,
                         int32_t yEnd) {
    const CRect& rc = m_target.rc;
    const int32_t nWidth = rc.Width();
    const CRect rcCount{rc.left == 0 ? 0 : -1, rc.top + yTop == 0 ? 0 : yTop - 1,
                        rc.right == szPlane.cx ? nWidth : nWidth + 1,
                        rc.top + yEnd == szPlane.cy ? yEnd : yEnd + 1};
    const CRect rcCells{rcCount.left * FILL_CELLS, rcCount.top * FILL_CELLS, rcCount.right * FILL_CELLS,
                        rcCount.bottom * FILL_CELLS};
    m_chains.Clear(rcCells);
    for (const TOutline& points : outlines) {
        CFlattener<CMonotoneChains>(rcCells, m_chains)
            .Flatten(points, int64_t{ptOrigin.x} + rc.left, int64_t{ptOrigin.y} + rc.top);
        m_chains.BeginOutline();
    }
    m_counter.Begin(m_chains, rcCount.left, rcCount.right);
    for (CCountRow& row : m_aRows) row.Create(nWidth);
    m_pTiles = nullptr;
    m_full = {}; // a failed fill may have left some

    for (int32_t y = yTop, yCounted = yTop - 1; y < yEnd;) {
        if (SoftenEdges(y, rcCount)) {
            y += ROWS;
            yCounted = y - 1;
            continue;
        }
        const int32_t nRows = std::min(ROWS, yEnd - y);
        bool bEmpty = true;
        for (; yCounted <= y + nRows; ++yCounted) CountRow(yCounted);
        for (int32_t n = -1; n <= nRows; ++n) bEmpty = bEmpty && RowAt(y + n).IsEmpty();
        if (!bEmpty) SoftenRows(y, nRows, rcCount);
        y += nRows;
        // The next row that is not empty may lie far below.
        const int32_t yNext = m_counter.NextRow(yCounted);
        if (bEmpty && yNext == INT32_MAX) break;
        if (bEmpty && yNext - 1 > y + ROWS) {
            y += (yNext - 1 - y) / ROWS * ROWS;
            yCounted = y - 1;
        }
    }
    FlushTiles();
}

// A row that no chain touches is empty.
void CPathFill::CountRow(int32_t y) {
    CCountRow& row = RowAt(y);
    row.Clear();
    if (m_counter.NextRow(y) == y) m_counter.Count(y, row);
}

// The pixels of the tiles at row `y`.
void CPathFill::EnterTiles(int32_t y) {
    FlushTiles();
    const CSize sz = m_target.szTile;
    m_yTiles = y / sz.cy * sz.cy;
    m_pTiles = m_target.vTiles.data() + y / sz.cy * m_target.nColumns;
    int32_t x = 0;
    for (uint8_t*& pRun : m_vRuns) {
        pRun = m_pTiles[x / sz.cx] + x % sz.cx;
        x += CCountRow::RUN;
    }
}

// Rows from `y` on that contain only isolated edges.
bool CPathFill::SoftenEdges(int32_t y, const CRect& rcCount) {
    if (y <= rcCount.top || y + ROWS >= rcCount.bottom) return false;
    if (!m_counter.GetEdges(y - 1, ROWS + 2, m_vEdges)) return false;
    if (!m_pTiles || y - m_yTiles >= m_target.szTile.cy) EnterTiles(y);
    int32_t nFirst = 0;
    for (const TFillEdge& edge : m_vEdges) {
        if (!edge.bBegins) FillRuns(y, nFirst, edge.nFirstRun);
        SoftenEdge(edge, y);
        nFirst = edge.nEndRun;
    }
    return true;
}

void CPathFill::SoftenEdge(const TFillEdge& edge, int32_t y) {
    constexpr int32_t RUN = CCountRow::RUN;
    std::array<TEdgeRow, ROWS + 2> aRows;
    for (size_t n = 0; n < aRows.size(); ++n)
        WriteEdgeRow(aRows[n], edge.pSums[n], edge.nFirstRun * RUN - 1, edge.bBegins);
    const auto nStride = static_cast<size_t>(m_target.szTile.cx);
    const size_t nOffset = static_cast<size_t>(y - m_yTiles) * nStride;
    const int32_t nEndRun = std::min(edge.nEndRun, static_cast<int32_t>(m_vRuns.size()));
    for (int32_t nRun = edge.nFirstRun; nRun < nEndRun; ++nRun) {
        std::array<const uint8_t*, ROWS + 2> apRows;
        for (size_t n = 0; n < apRows.size(); ++n)
            apRows[n] = aRows[n].data() + 1 + (nRun - edge.nFirstRun) * RUN;
        m_kernels.pSoften({m_vRuns[static_cast<size_t>(nRun)] + nOffset, nStride, apRows.data(), size_t{ROWS},
                           static_cast<size_t>(std::min(RUN, m_target.rc.Width() - nRun * RUN))});
    }
}

// Fills whole runs of ROWS rows.
void CPathFill::FillRuns(int32_t y, int32_t nFirst, int32_t nEnd) {
    constexpr int32_t RUN = CCountRow::RUN;
    const int32_t nWidth = m_target.szTile.cx;
    const int32_t nTileRuns = m_target.nColumns > 1 ? nWidth / RUN : static_cast<int32_t>(m_vRuns.size()) + 1;
    const ptrdiff_t nOffset = ptrdiff_t{y - m_yTiles} * nWidth;
    const int32_t nTile = (nFirst + nTileRuns - 1) / nTileRuns;
    const int32_t nTileEnd = nEnd / nTileRuns;
    const auto fill = [&](int32_t nFrom, int32_t nTo) {
        for (int32_t nRun = nFrom; nRun < nTo; ++nRun) {
            uint8_t* pRun = m_vRuns[static_cast<size_t>(nRun)] + nOffset;
            for (int32_t n = 0; n < ROWS; ++n, pRun += nWidth) std::memset(pRun, 255, RUN);
        }
    };
    if (nTile >= nTileEnd) {
        fill(nFirst, nEnd);
        return;
    }
    fill(nFirst, nTile * nTileRuns);
    FillTiles(y, y + ROWS, nTile, nTileEnd);
    fill(nTileEnd * nTileRuns, nEnd);
}

void CPathFill::SoftenRows(int32_t y, int32_t nRows, const CRect& rcCount) {
    constexpr int32_t RUN = CCountRow::RUN;
    if (!m_pTiles || y - m_yTiles >= m_target.szTile.cy) EnterTiles(y);
    std::array<const CCountRow*, ROWS + 2> apRows;
    for (int32_t n = 0; n < nRows + 2; ++n)
        apRows[n] = &RowAt(std::clamp(y - 1 + n, rcCount.top, rcCount.bottom - 1));
    const std::span rows(apRows.data(), static_cast<size_t>(nRows + 2));
    int32_t nRun = INT32_MAX, nEnd = 0;
    for (const CCountRow* pRow : rows)
        if (!pRow->IsEmpty()) {
            nRun = std::min(nRun, pRow->GetFirstRun());
            nEnd = std::max(nEnd, pRow->GetEndRun());
        }
    nEnd = std::min(nEnd, static_cast<int32_t>(m_vRuns.size()));
    const auto marks = [&](int32_t nAt) {
        uint64_t uMarks = 0;
        for (const CCountRow* pRow : rows) uMarks |= pRow->GetMarks(static_cast<size_t>(nAt) / 64);
        return uMarks >> (nAt % 64);
    };
    const int32_t nWidth = m_target.rc.Width();
    const auto nStride = static_cast<size_t>(m_target.szTile.cx);
    const size_t nOffset = static_cast<size_t>(y - m_yTiles) * nStride;
    while (nRun < nEnd) {
        uint64_t uMarks = marks(nRun);
        for (; uMarks & 1 && nRun < nEnd; uMarks >>= 1, ++nRun) {
            std::array<const uint8_t*, ROWS + 2> apValues;
            for (size_t n = 0; n < rows.size(); ++n) apValues[n] = rows[n]->GetRun(nRun);
            m_kernels.pSoften({m_vRuns[static_cast<size_t>(nRun)] + nOffset, nStride, apValues.data(),
                               static_cast<size_t>(nRows),
                               static_cast<size_t>(std::min(RUN, nWidth - nRun * RUN))});
        }
        const int32_t nFirst = nRun;
        while (nRun < nEnd) {
            uMarks = marks(nRun);
            nRun += uMarks ? std::countr_zero(uMarks) : 64 - nRun % 64;
            if (uMarks) break;
        }
        nRun = std::min(nRun, nEnd);
        if (nFirst == nRun) continue;
        for (int32_t n = 0; n < nRows; ++n) {
            const uint32_t uValue = rows[n + 1]->GetEven(nFirst);
            const uint32_t uNeighbours = 2 * uValue + rows[n]->GetEven(nFirst) + rows[n + 2]->GetEven(nFirst);
            const uint8_t uSoftened = SoftenedValue(uValue, uNeighbours);
            if (uSoftened) RaiseEven(y + n, nFirst * RUN, std::min(nRun * RUN, nWidth), uSoftened);
        }
    }
}

// Raises the pixels of a row from `x` to before `xEnd`.
void CPathFill::RaiseEven(int32_t y, int32_t x, int32_t xEnd, uint8_t uValue) {
    const int32_t nWidth = m_target.szTile.cx;
    const int32_t nRow = (y - m_yTiles) * nWidth;
    const auto raise = [&](int32_t nTile, int32_t nFrom, int32_t nTo) {
        RaiseTo(m_pTiles[nTile] + nRow + nFrom, uValue, static_cast<size_t>(nTo - nFrom));
    };
    const int32_t nFirst = x / nWidth;
    const int32_t nLast = xEnd / nWidth;
    const int32_t nFrom = x - nFirst * nWidth;
    const int32_t nTo = xEnd - nLast * nWidth;
    if (nFirst == nLast) {
        raise(nFirst, nFrom, nTo);
        return;
    }
    const int32_t nWhole = nFrom ? nFirst + 1 : nFirst;
    if (nFrom) raise(nFirst, nFrom, nWidth);
    if (nTo) raise(nLast, 0, nTo);
    if (uValue == 255)
        FillTiles(y, y + 1, nWhole, nLast);
    else
        for (int32_t n = nWhole; n < nLast; ++n) raise(n, 0, nWidth);
}

// Rows of a tile are contiguous, so they are collected and filled as one block.
void CPathFill::FillTiles(int32_t y, int32_t yEnd, int32_t nFirst, int32_t nEnd) {
    if (nFirst >= nEnd) return;
    if (m_full.nFirst != nFirst || m_full.nEnd != nEnd || m_full.yEnd != y) {
        FlushTiles();
        m_full = {nFirst, nEnd, y, y};
    }
    m_full.yEnd = yEnd;
}

void CPathFill::FlushTiles() {
    const int32_t nWidth = m_target.szTile.cx;
    const auto nBytes = static_cast<size_t>((m_full.yEnd - m_full.yTop) * nWidth);
    for (int32_t n = m_full.nFirst; n < m_full.nEnd; ++n)
        std::memset(m_pTiles[n] + (m_full.yTop - m_yTiles) * nWidth, 255, nBytes);
    m_full = {};
}
