#include "core/PathFill/PathFill.h"

#include <climits>
#include <cstring>

namespace {

void CheckOutline(std::span<const CPoint> points) {
    SELF_CHECK(invalid_argument, points.size() % 3 == 1 || points.empty());
    SELF_CHECK(invalid_argument, points.empty() || points.front() == points.back());
}

int32_t RoundUp(int32_t n, int32_t nStep) { return (n + nStep - 1) / nStep * nStep; }

// The pixels of a plane that an outline's hull, and the filter around it, can touch.
CRect ReachOf(std::span<const CPoint> points, CPoint ptOrigin, CSize szPlane) {
    int32_t nLeft = INT32_MAX, nTop = INT32_MAX, nRight = INT32_MIN, nBottom = INT32_MIN;
    for (const CPoint& pt : points) {
        nLeft = std::min(nLeft, pt.x), nRight = std::max(nRight, pt.x);
        nTop = std::min(nTop, pt.y), nBottom = std::max(nBottom, pt.y);
    }
    const auto pixel = [](int32_t n, int32_t nFrom, int32_t nMore, int32_t nSize) {
        const int64_t nPixel = (int64_t{n} >> 3) - nFrom + nMore;
        return static_cast<int32_t>(std::clamp<int64_t>(nPixel, 0, nSize));
    };
    return {pixel(nLeft, ptOrigin.x, -2, szPlane.cx), pixel(nTop, ptOrigin.y, -2, szPlane.cy),
            pixel(nRight, ptOrigin.x, 3, szPlane.cx), pixel(nBottom, ptOrigin.y, 3, szPlane.cy)};
}

void RaiseTo(uint8_t* pDest, uint8_t uValue, size_t nCount) {
    if (uValue == 255)
        std::memset(pDest, 255, nCount);
    else
        for (size_t n = 0; n < nCount; ++n) pDest[n] = std::max(pDest[n], uValue);
}

} // namespace

// Rows of a tile lie behind one another, so a block of them is filled at once.
void CPathFill::TTargetTile::FillRow(int32_t y, int32_t nWidth) {
    if (nFullEnd != y) {
        Flush(nWidth);
        nFullTop = y;
    }
    nFullEnd = y + 1;
}

void CPathFill::TTargetTile::Flush(int32_t nWidth) {
    std::memset(pPixels + nFullTop * nWidth, 255, static_cast<size_t>((nFullEnd - nFullTop) * nWidth));
    nFullTop = nFullEnd = 0;
}

void CPathFill::FillTile(std::span<const CPoint> points, const TFillPlane& plane, CAlphaBlock8& tile) {
    CheckOutline(points);
    const CSize sz = tile.GetSize();
    const CSize szPlane{RoundUp(plane.szPlane.cx, sz.cx), RoundUp(plane.szPlane.cy, sz.cy)};
    const CRect rcReach = ReachOf(points, plane.ptOrigin, szPlane);
    if (points.size() < 4 || rcReach.Intersect(tile.GetRect()).IsEmpty()) return;
    m_target.rc = tile.GetRect();
    m_target.szTile = sz;
    m_target.nColumns = 1;
    m_target.vTiles.assign(1, {tile.GetAlpha()});
    Fill(points, plane.ptOrigin, szPlane);
}

void CPathFill::FillPlane(std::span<const CPoint> points, CPoint ptOrigin, CAlphaBufferImpl<uint8_t>& plane) {
    CheckOutline(points);
    const CSize sz = plane.GetBlockSize();
    const CSize szPlane{plane.GetBufferSize().cx * sz.cx, plane.GetBufferSize().cy * sz.cy};
    const CRect rcReach = ReachOf(points, ptOrigin, szPlane);
    if (points.size() < 4 || rcReach.IsEmpty()) return;
    m_target.rc = {rcReach.left / sz.cx * sz.cx, rcReach.top / sz.cy * sz.cy, RoundUp(rcReach.right, sz.cx),
                   RoundUp(rcReach.bottom, sz.cy)};
    m_target.szTile = sz;
    m_target.nColumns = m_target.rc.Width() / sz.cx;
    m_target.vTiles.clear();
    plane.ForEachBlockIn(m_target.rc, [&](CPoint pt) {
        auto spTile = plane.GetBlock(pt, true);
        // The plane's reference and this one are two.
        if (spTile.use_count() > 2) plane.ShareBlock(pt, spTile = spTile->Clone());
        m_target.vTiles.push_back({static_cast<CAlphaBlock8&>(*spTile).GetAlpha()});
    });
    Fill(points, ptOrigin, szPlane);
}

// Everything is counted from the target's corner; around the target lies a pixel for the filter to see,
// except where the plane ends.
void CPathFill::Fill(std::span<const CPoint> points, CPoint ptOrigin, CSize szPlane) {
    const CRect& rc = m_target.rc;
    const int32_t nWidth = rc.Width();
    const int32_t nHeight = rc.Height();
    const CRect rcCount{rc.left == 0 ? 0 : -1, rc.top == 0 ? 0 : -1,
                        rc.right == szPlane.cx ? nWidth : nWidth + 1,
                        rc.bottom == szPlane.cy ? nHeight : nHeight + 1};
    const CRect rcCells{rcCount.left * FILL_CELLS, rcCount.top * FILL_CELLS, rcCount.right * FILL_CELLS,
                        rcCount.bottom * FILL_CELLS};
    m_chains.Clear(rcCells.top, rcCells.bottom);
    CFlattener<CMonotoneChains>(rcCells, m_chains)
        .Flatten(points, int64_t{ptOrigin.x} + rc.left, int64_t{ptOrigin.y} + rc.top);
    m_counter.Begin(m_chains, rcCount.left, rcCount.right);
    for (CCountRow& row : m_aRows) row.Create(nWidth);

    // Row y stands at (y + 3) % 3. A row that no chain touches is empty.
    const auto rowAt = [&](int32_t y) -> CCountRow& { return m_aRows[static_cast<size_t>(y + 3) % 3]; };
    for (int32_t y = m_counter.NextRow(rcCount.top); y <= rcCount.bottom; ++y) {
        CCountRow& below = rowAt(y);
        below.Clear();
        if (m_counter.NextRow(y) == y && y < rcCount.bottom) m_counter.Count(y, below);
        const CCountRow& row = rowAt(y - 1);
        if (y > 0 && y <= nHeight)
            SoftenRow(y - 1, y - 1 == rcCount.top ? row : rowAt(y - 2), row,
                      y == rcCount.bottom ? row : below);
        if (std::all_of(m_aRows.begin(), m_aRows.end(), [](const CCountRow& r) { return r.IsEmpty(); })) {
            const int32_t yNext = m_counter.NextRow(y + 1);
            if (yNext == INT32_MAX) break;
            y = yNext - 1;
        }
    }
    for (TTargetTile& tile : m_target.vTiles) tile.Flush(m_target.szTile.cx);
}

void CPathFill::SoftenRow(int32_t y, const CCountRow& above, const CCountRow& row, const CCountRow& below) {
    const std::array<const CCountRow*, 3> apRows{&above, &row, &below};
    int32_t nRun = INT32_MAX, nEnd = 0;
    for (const CCountRow* pRow : apRows)
        if (!pRow->IsEmpty()) {
            nRun = std::min(nRun, pRow->GetFirstRun());
            nEnd = std::max(nEnd, pRow->GetEndRun());
        }
    nEnd = std::min(nEnd, (m_target.rc.Width() + CCountRow::RUN - 1) / CCountRow::RUN);
    const auto marks = [&](int32_t nAt) {
        const auto nWord = static_cast<size_t>(nAt) / 64;
        return (above.GetMarks(nWord) | row.GetMarks(nWord) | below.GetMarks(nWord)) >> (nAt % 64);
    };
    while (nRun < nEnd) {
        uint64_t uMarks = marks(nRun);
        for (; uMarks & 1 && nRun < nEnd; uMarks >>= 1, ++nRun) SoftenRun(y, nRun, apRows);
        const int32_t nFirst = nRun;
        while (nRun < nEnd) {
            uMarks = marks(nRun);
            nRun += uMarks ? std::countr_zero(uMarks) : 64 - nRun % 64;
            if (uMarks) break;
        }
        nRun = std::min(nRun, nEnd);
        if (nFirst == nRun) continue;
        const uint32_t uValue = row.GetEven(nFirst);
        const uint32_t uNeighbours = 2 * uValue + above.GetEven(nFirst) + below.GetEven(nFirst);
        RaiseEven(y, nFirst * CCountRow::RUN, nRun * CCountRow::RUN, SoftenedValue(uValue, uNeighbours));
    }
}

uint8_t* CPathFill::PixelAt(int32_t x, int32_t y) {
    const CSize sz = m_target.szTile;
    const auto nTile = static_cast<size_t>(y / sz.cy * m_target.nColumns + x / sz.cx);
    return m_target.vTiles[nTile].pPixels + y % sz.cy * sz.cx + x % sz.cx;
}

void CPathFill::SoftenRun(int32_t y, int32_t nRun, const std::array<const CCountRow*, 3>& apRows) {
    TSoftenRows rows{apRows[0]->GetRun(nRun), apRows[1]->GetRun(nRun), apRows[2]->GetRun(nRun), 0};
    int32_t x = nRun * CCountRow::RUN;
    const int32_t nEnd = std::min(x + CCountRow::RUN, m_target.rc.Width());
    while (x < nEnd) {
        const int32_t nCount = std::min(nEnd - x, m_target.szTile.cx - x % m_target.szTile.cx);
        rows.nCount = static_cast<size_t>(nCount);
        m_kernels.pSoften(PixelAt(x, y), rows);
        x += nCount;
        rows = {rows.pAbove + nCount, rows.pRow + nCount, rows.pBelow + nCount, 0};
    }
}

// Raises the pixels of a row from `x` to before `xEnd`.
void CPathFill::RaiseEven(int32_t y, int32_t x, int32_t xEnd, uint8_t uValue) {
    if (uValue == 0) return;
    const CSize sz = m_target.szTile;
    xEnd = std::min(xEnd, m_target.rc.Width());
    while (x < xEnd) {
        const int32_t nCount = std::min(xEnd - x, sz.cx - x % sz.cx);
        if (uValue == 255 && nCount == sz.cx)
            m_target.vTiles[static_cast<size_t>(y / sz.cy * m_target.nColumns + x / sz.cx)].FillRow(y % sz.cy,
                                                                                                    sz.cx);
        else
            RaiseTo(PixelAt(x, y), uValue, static_cast<size_t>(nCount));
        x += nCount;
    }
}
