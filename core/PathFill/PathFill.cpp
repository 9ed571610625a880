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

void CPathFill::FillTile(std::span<const CPoint> points, const TFillPlane& plane, CAlphaBlock8& tile) {
    CheckOutline(points);
    const CSize sz = tile.GetSize();
    const CSize szPlane{RoundUp(plane.szPlane.cx, sz.cx), RoundUp(plane.szPlane.cy, sz.cy)};
    const CRect rcReach = ReachOf(points, plane.ptOrigin, szPlane);
    if (points.size() < 4 || rcReach.Intersect(tile.GetRect()).IsEmpty()) return;
    m_target.rc = tile.GetRect();
    m_target.szTile = sz;
    m_target.vTiles.assign(1, tile.GetAlpha());
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
    m_target.vTiles.clear();
    plane.ForEachBlockIn(m_target.rc, [&](CPoint pt) {
        auto spTile = plane.GetBlock(pt, true);
        // The plane's reference and this one are two.
        if (spTile.use_count() > 2) plane.ShareBlock(pt, spTile = spTile->Clone());
        m_target.vTiles.push_back(static_cast<CAlphaBlock8&>(*spTile).GetAlpha());
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
}

void CPathFill::SoftenRow(int32_t y, const CCountRow& above, const CCountRow& row, const CCountRow& below) {
    int32_t nFirst = INT32_MAX, nEnd = INT32_MIN;
    for (const CCountRow* pRow : {&above, &row, &below})
        if (!pRow->IsEmpty()) {
            nFirst = std::min(nFirst, pRow->GetFirst() - 1);
            nEnd = std::max(nEnd, pRow->GetEnd() + 1);
        }
    nFirst = std::max(nFirst, 0);
    nEnd = std::min(nEnd, m_target.rc.Width());
    const auto marks = [&](int32_t nWord) {
        const auto n = static_cast<size_t>(nWord);
        return above.GetMarks(n) | row.GetMarks(n) | below.GetMarks(n);
    };
    for (int32_t x = nFirst; x < nEnd;) {
        // Runs that are marked, or not, up to the next that are not, or are.
        int32_t nRun = x / CCountRow::RUN;
        const bool bChanges = marks(nRun / 64) >> (nRun % 64) & 1;
        for (;;) {
            const uint64_t uOther = (bChanges ? ~marks(nRun / 64) : marks(nRun / 64)) >> (nRun % 64);
            nRun += uOther ? std::countr_zero(uOther) : 64 - nRun % 64;
            if (uOther || nRun * CCountRow::RUN >= nEnd) break;
        }
        const int32_t xTo = std::min(nRun * CCountRow::RUN, nEnd);
        RaiseRow(y, x, xTo, bChanges, {above.GetValues(), row.GetValues(), below.GetValues(), 0});
        x = xTo;
    }
}

// Raises the pixels of a row from `x` to before `xTo`; without `bChanges` all are the first one's equals.
void CPathFill::RaiseRow(int32_t y, int32_t x, int32_t xTo, bool bChanges, const TSoftenRows& rows) {
    const uint32_t uValue = rows.pRow[x];
    const uint8_t uSoftened = SoftenedValue(uValue, 2 * uValue + rows.pAbove[x] + rows.pBelow[x]);
    if (!bChanges && uSoftened == 0) return;
    const CSize sz = m_target.szTile;
    uint8_t* const* pTiles = m_target.vTiles.data() + y / sz.cy * (m_target.rc.Width() / sz.cx);
    while (x < xTo) {
        const int32_t xInTile = x % sz.cx;
        const int32_t nCount = std::min(xTo - x, sz.cx - xInTile);
        uint8_t* pDest = pTiles[x / sz.cx] + y % sz.cy * sz.cx + xInTile;
        if (bChanges)
            m_kernels.pSoften(pDest,
                              {rows.pAbove + x, rows.pRow + x, rows.pBelow + x, static_cast<size_t>(nCount)});
        else
            RaiseTo(pDest, uSoftened, static_cast<size_t>(nCount));
        x += nCount;
    }
}
