// The lines of an outline as chains that run only down or only up, each crossing a row of cells at most once.
#pragma once

#include "core/PathFill/FlattenOutline.h"
#include "core/RasterKernel/CrossingKernel.h"

#include <cstdint>
#include <vector>

/// Lines that follow on one another: one crossing for each row of cells from yTop to before yEnd.
struct TChain {
    int32_t yTop;
    int32_t yEnd;
    int32_t nDirection; ///< 1 downwards, -1 upwards
    size_t nFirst;      ///< the crossing that was drawn first: of the first row or, upwards, of the last
};

/// A sink of CFlattener. A crossing is the first cell whose centre lies at the line or right of it.
///
/// Crossings are exact: a line is at most 2^15 sixteenths high, so a crossing that is not at a centre lies at
/// least 2^-15 of a sixteenth from it, and the slope's 32 bits of fraction, rounded down, add up to an error
/// below 2^-16. One at a centre errs downwards, to the same cell.
class CMonotoneChains {
public:
    /// Forgets all lines. Those added later are clipped to the rows of `rcCells`; crossings beyond its
    /// columns are put at their ends.
    void Clear(const CRect& rcCells) {
        m_rcCells = rcCells;
        m_nCells = 0;
        m_vChains.clear();
    }
    void AddLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
        const int32_t yA = RowFrom(y0);
        const int32_t yB = RowFrom(y1);
        if (yA == yB) return;
        // Downwards the first row is above the line's end, upwards the line's beginning is above it.
        if (yA < yB)
            Add(x0, y0, SlopeOf(x1 - x0, y1 - y0), std::minmax(x0, x1), {yA, yB, 1, 0});
        else
            Add(x1, y1, SlopeOf(x0 - x1, y0 - y1), std::minmax(x0, x1), {yB, yA, -1, 0});
    }
    const std::vector<TChain>& GetChains() const { return m_vChains; }
    /// The crossings of a chain from row `yTop` to before `yEnd`; those of one that runs up from the last to
    /// the first.
    const int32_t* GetCells(const TChain& chain, int32_t yTop, int32_t yEnd) const {
        const int32_t nBefore = chain.nDirection > 0 ? yTop - chain.yTop : chain.yEnd - yEnd;
        return m_vCells.data() + chain.nFirst + nBefore;
    }

private:
    static constexpr int SLOPE_BITS = CROSSING_BITS - LINE_BITS;
    static constexpr int32_t UNIT = 1 << LINE_BITS;

    // The first row whose centre lies at y or below.
    static int32_t RowFrom(int32_t y) { return (y + UNIT / 2 - 1) >> LINE_BITS; }
    static int64_t SlopeOf(int32_t dx, int32_t dy) {
        const int64_t n = dx * (int64_t{1} << SLOPE_BITS);
        return n / dy - (n % dy < 0);
    }

    // A line whose upper end is (x, y); `chain` is its part of one.
    void Add(int32_t x, int32_t y, int64_t nSlope, std::pair<int32_t, int32_t> columns, TChain chain) {
        chain.yTop = std::max(chain.yTop, m_rcCells.top);
        chain.yEnd = std::min(chain.yEnd, m_rcCells.bottom);
        if (chain.yTop >= chain.yEnd) return;
        const int32_t nRows = chain.yEnd - chain.yTop;
        const int32_t yFirst = chain.nDirection > 0 ? chain.yTop : chain.yEnd - 1;
        int64_t nX = x * (int64_t{1} << SLOPE_BITS) + nSlope * (yFirst * UNIT + UNIT / 2 - y);
        nX += (int64_t{UNIT / 2} << SLOPE_BITS) - 1; // to the first centre at it or right of it
        const int64_t nStep = nSlope * UNIT * chain.nDirection;
        // What is written beyond the last row is overwritten by the next line.
        constexpr size_t BLOCK = 16;
        chain.nFirst = m_nCells;
        m_nCells += static_cast<size_t>(nRows);
        if (m_nCells + BLOCK > m_vCells.size()) m_vCells.resize((m_nCells + BLOCK) * 2);
        int32_t* pCells = m_vCells.data() + chain.nFirst;
        m_kernels.pCross(pCells, nX, nStep, static_cast<size_t>(nRows));
        if (columns.first < m_rcCells.left * UNIT || columns.second > m_rcCells.right * UNIT)
            for (int32_t n = 0; n < nRows; ++n)
                pCells[n] = std::clamp(pCells[n], m_rcCells.left, m_rcCells.right);
        Append(chain);
    }
    // The last line becomes the end of the last chain or the beginning of a new one.
    void Append(const TChain& line) {
        if (!m_vChains.empty() && m_vChains.back().nDirection == line.nDirection) {
            TChain& chain = m_vChains.back();
            if (line.nDirection > 0 && chain.yEnd == line.yTop) {
                chain.yEnd = line.yEnd;
                return;
            }
            if (line.nDirection < 0 && chain.yTop == line.yEnd) {
                chain.yTop = line.yTop;
                return;
            }
        }
        m_vChains.push_back(line);
    }

    const TCrossingKernels& m_kernels = CrossingKernels();
    CRect m_rcCells;
    size_t m_nCells = 0;
    std::vector<int32_t> m_vCells; ///< m_nCells crossings in the order of the outline, and room
    std::vector<TChain> m_vChains;
};
