// The lines of an outline as chains that run only downwards or only upwards, each crossing a row of cells
// at most once.
#pragma once

#include "core/PathFill/FlattenOutline.h"
#include "core/RasterKernel/CrossingKernel.h"

#include <cstdint>
#include <vector>

/// Consecutive lines: one crossing for each row of cells from yTop to before yEnd.
struct TChain {
    int32_t yTop;
    int32_t yEnd;
    int32_t nDirection; ///< 1 downwards, -1 upwards
    size_t nFirst;      ///< the crossing that was drawn first: of the first row or, upwards, of the last
    uint32_t uOutline;  ///< the number of the outline
};

/// A sink of CFlattener. A crossing is the first cell whose centre lies at the line or right of it.
///
/// Crossings are exact: a line is at most 2^15 + 1 sixteenths high, so a crossing that is not at a centre
/// lies at least 1 / (2^15 + 1) of a sixteenth from it, and the slope, which has 32 bits of fraction and is
/// less than 3 units too small, adds up to a smaller error. One at a centre errs downwards, to the same cell.
class CMonotoneChains {
public:
    /// Removes all lines. Lines added later are clipped to the rows of `rcCells`; crossings beyond its
    /// columns are clamped to their ends.
    void Clear(const CRect& rcCells) {
        m_rcCells = rcCells;
        m_nCells = 0;
        m_uOutline = 0;
        m_vChains.clear();
    }
    /// Starts another outline for the lines that follow.
    void BeginOutline() { ++m_uOutline; }
    void AddLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
        const int32_t yA = RowFrom(y0);
        const int32_t yB = RowFrom(y1);
        if (yA == yB) return;
        const bool bBeyond =
            std::min(x0, x1) < m_rcCells.left * UNIT || std::max(x0, x1) > m_rcCells.right * UNIT;
        if (yA < yB)
            Add(x0, y0, SlopeOf(x1 - x0, y1 - y0), yA, yB, 1);
        else
            Add(x1, y1, SlopeOf(x0 - x1, y0 - y1), yB, yA, -1);
        if (bBeyond) ClampLast();
    }
    const std::vector<TChain>& GetChains() const { return m_vChains; }
    /// The crossings of a chain from row `yTop` to before `yEnd`; in reverse order for a chain that runs
    /// upwards.
    const int32_t* GetCells(const TChain& chain, int32_t yTop, int32_t yEnd) const {
        const int32_t nBefore = chain.nDirection > 0 ? yTop - chain.yTop : chain.yEnd - yEnd;
        return m_vCells.data() + chain.nFirst + nBefore;
    }

private:
    static constexpr int SLOPE_BITS = CROSSING_BITS - LINE_BITS;
    static constexpr int32_t UNIT = 1 << LINE_BITS;

    // The first row whose centre is at or below y.
    static int32_t RowFrom(int32_t y) { return (y + UNIT / 2 - 1) >> LINE_BITS; }
    // The slope, rounded down by less than 3 units: the quotient, of 47 bits, is rounded by less than one.
    static int64_t SlopeOf(int32_t dx, int32_t dy) {
        return static_cast<int64_t>(dx * static_cast<double>(int64_t{1} << SLOPE_BITS) / dy) - 2;
    }

    // Adds a line whose upper end is (x, y).
    void Add(int32_t x, int32_t y, int64_t nSlope, int32_t yTop, int32_t yEnd, int32_t nDirection) {
        m_nLast = m_nCells;
        yTop = std::max(yTop, m_rcCells.top);
        yEnd = std::min(yEnd, m_rcCells.bottom);
        if (yTop >= yEnd) return;
        const int32_t yFirst = nDirection > 0 ? yTop : yEnd - 1;
        int64_t nX = x * (int64_t{1} << SLOPE_BITS) + nSlope * (yFirst * UNIT + UNIT / 2 - y);
        nX += (int64_t{UNIT / 2} << SLOPE_BITS) - 1; // to the first centre at or right of it
        // Values written beyond the last row are overwritten by the next line.
        constexpr size_t BLOCK = 16;
        m_nCells += static_cast<size_t>(yEnd - yTop);
        if (m_nCells + BLOCK > m_vCells.size()) m_vCells.resize((m_nCells + BLOCK) * 2);
        m_kernels.pCross(m_vCells.data() + m_nLast, nX, nSlope * UNIT * nDirection, m_nCells - m_nLast);
        Append(yTop, yEnd, nDirection);
    }
    // Appends the last line to the last chain or begins a new chain with it.
    void Append(int32_t yTop, int32_t yEnd, int32_t nDirection) {
        if (!m_vChains.empty() && m_vChains.back().nDirection == nDirection &&
            m_vChains.back().uOutline == m_uOutline) {
            TChain& chain = m_vChains.back();
            if (nDirection > 0 && chain.yEnd == yTop) {
                chain.yEnd = yEnd;
                return;
            }
            if (nDirection < 0 && chain.yTop == yEnd) {
                chain.yTop = yTop;
                return;
            }
        }
        m_vChains.push_back({yTop, yEnd, nDirection, m_nLast, m_uOutline});
    }
    void ClampLast() {
        for (size_t n = m_nLast; n < m_nCells; ++n)
            m_vCells[n] = std::clamp(m_vCells[n], m_rcCells.left, m_rcCells.right);
    }

    const TCrossingKernels& m_kernels = CrossingKernels();
    CRect m_rcCells;
    uint32_t m_uOutline = 0;
    size_t m_nCells = 0;
    size_t m_nLast = 0;            ///< the last line's first crossing
    std::vector<int32_t> m_vCells; ///< m_nCells crossings in the order of the outline, and spare room
    std::vector<TChain> m_vChains;
};
