// The lines of an outline as chains that run only down or only up, each crossing a row of cells at most once.
#pragma once

#include "core/PathFill/FlattenOutline.h"

#include <cstdint>
#include <vector>

/// The rows of cells, from yTop to before yEnd, whose centres a line passes, and where. A crossing is the
/// first cell whose centre lies at the line or right of it: nX >> CROSSING_BITS.
struct TChainLine {
    int32_t yTop;
    int32_t yEnd;
    int64_t nX;    ///< at the next row
    int64_t nStep; ///< from row to row
};

/// Lines that follow on one another.
struct TChain {
    int32_t yTop;
    int32_t yEnd;
    int32_t nDirection; ///< 1 downwards, -1 upwards
    size_t nFirst;      ///< the chain's first line as it was drawn,
    size_t nLast;       ///< and its last
    size_t nCurrent;    ///< the line at the next row to be counted
};

/// A sink of CFlattener. Crossings are exact: a line is at most 2^15 sixteenths high, so a crossing that is
/// not at a centre lies at least 2^-15 of a sixteenth from it, and the slope's 32 bits of fraction, rounded
/// down, add up to an error below 2^-16. One at a centre errs downwards, to the same cell.
class CMonotoneChains {
public:
    static constexpr int SLOPE_BITS = 32;
    static constexpr int CROSSING_BITS = SLOPE_BITS + LINE_BITS;

    /// Forgets all lines. Those added later are clipped to the rows of cells from `yTop` to before `yEnd`.
    void Clear(int32_t yTop, int32_t yEnd) {
        m_yTop = yTop, m_yEnd = yEnd;
        m_vLines.clear();
        m_vChains.clear();
    }
    void AddLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
        if (y0 < y1)
            Add(x0, y0, x1, y1, 1);
        else
            Add(x1, y1, x0, y0, -1);
    }
    std::vector<TChain>& GetChains() { return m_vChains; }
    TChainLine& GetLine(size_t i) { return m_vLines[i]; }

private:
    static constexpr int32_t UNIT = 1 << LINE_BITS;

    // The first row whose centre lies at y or below.
    static int32_t RowFrom(int32_t y) { return (y + UNIT / 2 - 1) >> LINE_BITS; }

    void Add(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t nDirection) {
        const int32_t yTop = std::max(RowFrom(y0), m_yTop);
        const int32_t yEnd = std::min(RowFrom(y1), m_yEnd);
        if (yTop >= yEnd) return;
        const int64_t nSlope = SlopeOf(x1 - x0, y1 - y0);
        const int64_t nX = x0 * (int64_t{1} << SLOPE_BITS) + nSlope * (yTop * UNIT + UNIT / 2 - y0);
        // From a place to the first centre at it or right of it.
        constexpr int64_t TO_CELL = (int64_t{UNIT / 2} << SLOPE_BITS) - 1;
        m_vLines.push_back({yTop, yEnd, nX + TO_CELL, nSlope * UNIT});
        Append(yTop, yEnd, nDirection);
    }
    static int64_t SlopeOf(int32_t dx, int32_t dy) {
        if (dx == 0) return 0;
        const int64_t n = dx * (int64_t{1} << SLOPE_BITS);
        return n / dy - (n % dy < 0);
    }
    // The last line becomes the end of the last chain or the beginning of a new one.
    void Append(int32_t yTop, int32_t yEnd, int32_t nDirection) {
        const size_t nLine = m_vLines.size() - 1;
        if (!m_vChains.empty() && m_vChains.back().nDirection == nDirection) {
            TChain& chain = m_vChains.back();
            if (nDirection > 0 ? chain.yEnd == yTop : chain.yTop == yEnd) {
                (nDirection > 0 ? chain.yEnd : chain.yTop) = nDirection > 0 ? yEnd : yTop;
                chain.nLast = nLine;
                chain.nCurrent = nDirection > 0 ? chain.nFirst : nLine;
                return;
            }
        }
        m_vChains.push_back({yTop, yEnd, nDirection, nLine, nLine, nLine});
    }

    int32_t m_yTop = 0;
    int32_t m_yEnd = 0;
    std::vector<TChainLine> m_vLines;
    std::vector<TChain> m_vChains;
};
