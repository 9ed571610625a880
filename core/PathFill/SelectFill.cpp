#include "core/PathFill/SelectFill.h"

#include "core/PathFill/CellCounter.h"
#include "core/PathFill/FillReach.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

constexpr int32_t SIDE = DEFAULT_BLOCKSIZE.cx;
constexpr int32_t RUN = CCountRow::RUN;
constexpr int32_t RUNS = SIDE / RUN; ///< in a tile's row
static_assert(DEFAULT_BLOCKSIZE.cy == SIDE && SIDE % RUN == 0);

// Counts the mask row by row. A row of a tile is nearly always all 0 or all 255; as long as its rows are the
// same, a tile is only remembered, and made at the first row that is not.
class CSelectFiller {
public:
    CSelectFiller(CAlphaBufferImpl<uint8_t>& mask, bool bAntialias)
        : m_mask(mask), m_bAntialias(bAntialias) {}

    void Fill(std::span<const CPoint> points) {
        const CRect rcReach = ReachOf(points, {0, 0}, m_mask.GetSize());
        if (points.size() < 4 || rcReach.IsEmpty()) return;
        m_rc = {rcReach.left / SIDE * SIDE, rcReach.top / SIDE * SIDE,
                std::min(RoundUp(rcReach.right, SIDE), m_mask.GetSize().cx),
                std::min(RoundUp(rcReach.bottom, SIDE), m_mask.GetSize().cy)};
        m_vColumns.resize(static_cast<size_t>(RoundUp(m_rc.Width(), SIDE) / SIDE));
        m_row.Create(RoundUp(m_rc.Width(), SIDE));
        const int32_t nStep = BandHeight({&points, 1}, {0, 0}, m_mask.GetSize(), m_rc, SIDE);
        for (int32_t y = 0; y < m_rc.Height(); y += nStep)
            FillBand(points, y, std::min(y + nStep, m_rc.Height()));
    }

private:
    // The tile of a column in the present row of tiles.
    struct TColumn {
        uint8_t* pTile = nullptr; ///< null while all rows have been the same
        uint8_t uValue = 0;       ///< of these rows, 0 or 255
    };
    // A row of a column's tile, as far as it lies on the canvas.
    struct TTileRow {
        int32_t nWidth;
        bool bEven; ///< all are aValues[0]
        std::array<uint8_t, SIDE> aValues;
    };

    // Coordinates are relative to the target's corner.
    void FillBand(std::span<const CPoint> points, int32_t yTop, int32_t yEnd) {
        const CRect rcCells{0, yTop * FILL_CELLS, m_rc.Width() * FILL_CELLS, yEnd * FILL_CELLS};
        m_chains.Clear(rcCells);
        CFlattener<CMonotoneChains>(rcCells, m_chains).Flatten(points, m_rc.left, m_rc.top);
        m_counter.Begin(m_chains, 0, m_rc.Width());
        for (int32_t y = yTop; y < yEnd; ++y) {
            m_row.Clear();
            if (m_counter.NextRow(y) == y) m_counter.Count(y, m_row);
            for (size_t n = 0; n < m_vColumns.size(); ++n) WriteRow(n, y);
            if (y % SIDE == SIDE - 1 || y == yEnd - 1) EndTiles(y / SIDE);
        }
    }

    uint8_t ValueOf(uint8_t uCount) const { return m_bAntialias ? uCount : uCount >= 128 ? 255 : 0; }

    void ReadRow(int32_t nColumn, TTileRow& row) const {
        const int32_t nFirst = nColumn * RUNS;
        row.nWidth = std::min(SIDE, m_rc.Width() - nColumn * SIDE);
        const auto nWord = static_cast<size_t>(nFirst / 64);
        const int32_t nBit = nFirst % 64;
        uint64_t uMarks = m_row.GetMarks(nWord) >> nBit;
        if (nBit > 64 - RUNS) uMarks |= m_row.GetMarks(nWord + 1) << (64 - nBit);
        uMarks &= (1 << RUNS) - 1;
        if (uMarks == 0) { // neighbours that are not marked have one value
            row.bEven = true;
            row.aValues[0] = ValueOf(m_row.GetEven(nFirst));
            return;
        }
        for (int32_t n = 0; n < RUNS; ++n) {
            uint8_t* const pValues = row.aValues.data() + n * RUN;
            std::memcpy(pValues, m_row.GetRun(nFirst + n), RUN);
            if (!m_bAntialias)
                std::transform(pValues, pValues + RUN, pValues, [this](uint8_t u) { return ValueOf(u); });
        }
        const auto nWidth = static_cast<size_t>(row.nWidth);
        row.bEven = std::memcmp(row.aValues.data(), row.aValues.data() + 1, nWidth - 1) == 0;
    }

    void WriteRow(size_t nColumn, int32_t y) {
        TColumn& column = m_vColumns[nColumn];
        const int32_t nRow = y % SIDE;
        TTileRow row;
        ReadRow(static_cast<int32_t>(nColumn), row);
        const uint8_t uValue = row.aValues[0];
        const auto nWidth = static_cast<size_t>(row.nWidth);
        if (!column.pTile) {
            const bool bPlain = row.bEven && (uValue == 0 || uValue == 255);
            if (bPlain && nRow == 0) column.uValue = uValue;
            if (bPlain && column.uValue == uValue) return;
            const CPoint pt = m_rc.TopLeft() + CPoint{static_cast<int32_t>(nColumn) * SIDE, y - nRow};
            column.pTile = static_cast<CAlphaBlock8&>(*m_mask.GetWritableBlock(pt)).GetAlpha();
            for (int32_t n = 0; n < nRow; ++n) std::memset(column.pTile + n * SIDE, column.uValue, nWidth);
        }
        uint8_t* const pRow = column.pTile + nRow * SIDE;
        if (row.bEven)
            std::memset(pRow, uValue, nWidth);
        else
            std::memcpy(pRow, row.aValues.data(), nWidth);
    }

    void EndTiles(int32_t nTileRow) {
        for (size_t n = 0; n < m_vColumns.size(); ++n) {
            const CPoint pt = m_rc.TopLeft() + CPoint{static_cast<int32_t>(n) * SIDE, nTileRow * SIDE};
            if (!m_vColumns[n].pTile && m_vColumns[n].uValue) m_mask.ShareBlockImpl(pt, FullSelectTile());
            m_vColumns[n] = {};
        }
    }

    CAlphaBufferImpl<uint8_t>& m_mask;
    const bool m_bAntialias;
    CRect m_rc; ///< whole tiles, as far as they lie on the canvas
    std::vector<TColumn> m_vColumns;
    CMonotoneChains m_chains;
    CCellCounter m_counter;
    CCountRow m_row;
};

} // namespace

void FillSelect(CSelectBuffer& select, std::span<const CPoint> points, bool bAntialias) {
    CheckOutline(points);
    CSelectFiller(select.GetMask(), bAntialias).Fill(points);
}
