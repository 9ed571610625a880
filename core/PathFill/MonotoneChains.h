// The lines of an outline as chains that run only downwards or only upwards, each crossing a row of cells
// at most once.
#pragma once

#include "core/PathFill/FlattenOutline.h"
#include "core/RasterKernel/CrossingKernel.h"

#include <algorithm>
#include <array>
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
        m_nLines = m_nCrossed = m_nCells = 0; // a failed fill may have left some
        m_uOutline = 0;
        m_vChains.clear();
    }
    /// Starts another outline for the lines that follow.
    void BeginOutline() { ++m_uOutline; }
    /// Adds the lines between consecutive points, `nLines` + 1 of them.
    void AddLines(const int32_t* pX, const int32_t* pY, size_t nLines) {
        int32_t yA = RowFrom(pY[0]);
        for (size_t n = 0; n < nLines; ++n) {
            const int32_t yB = RowFrom(pY[n + 1]);
            if (yA != yB) {
                const bool bDown = yA < yB;
                const size_t nUpper = bDown ? n : n + 1, nLower = bDown ? n + 1 : n;
                const int32_t x = pX[nUpper], y = pY[nUpper];
                Add({x, y, pX[nLower] - x, pY[nLower] - y, 0, bDown ? 1 : -1, 0}, std::min(yA, yB),
                    std::max(yA, yB));
            }
            yA = yB;
        }
        Cross();
    }
    const std::vector<TChain>& GetChains() const { return m_vChains; }
    /// The crossings of a chain from row `yTop` to before `yEnd`; in reverse order for a chain that runs
    /// upwards.
    const int32_t* GetCells(const TChain& chain, int32_t yTop, int32_t yEnd) const {
        const int32_t nBefore = chain.nDirection > 0 ? yTop - chain.yTop : chain.yEnd - yEnd;
        return m_vCells.data() + chain.nFirst + nBefore;
    }

private:
    static constexpr int32_t UNIT = TCrossingLine::UNIT;

    // The first row whose centre is at or below y.
    static int32_t RowFrom(int32_t y) { return (y + UNIT / 2 - 1) >> LINE_BITS; }

    // Adds a line that crosses the rows from yTop to before yEnd.
    void Add(TCrossingLine line, int32_t yTop, int32_t yEnd) {
        yTop = std::max(yTop, m_rcCells.top);
        yEnd = std::min(yEnd, m_rcCells.bottom);
        if (yTop >= yEnd) return;
        line.nRow = line.nStep > 0 ? yTop : yEnd - 1;
        line.nCount = static_cast<size_t>(yEnd - yTop);
        if (m_nLines == m_aLines.size()) Cross();
        m_aLines[m_nLines++] = line;
        Append(yTop, yEnd, line.nStep);
        m_nCells += line.nCount;
        if (std::min(line.x, line.x + line.dx) < m_rcCells.left * UNIT ||
            std::max(line.x, line.x + line.dx) > m_rcCells.right * UNIT) {
            Cross();
            for (size_t n = m_nCells - line.nCount; n < m_nCells; ++n)
                m_vCells[n] = std::clamp(m_vCells[n], m_rcCells.left, m_rcCells.right);
        }
    }
    // Writes the crossings of the lines that wait. The kernel's surplus is overwritten by the next ones.
    void Cross() {
        constexpr size_t SURPLUS = 16;
        if (m_nCells + SURPLUS > m_vCells.size()) m_vCells.resize((m_nCells + SURPLUS) * 2);
        m_kernels.pCrossLines(m_vCells.data() + m_nCrossed, m_aLines.data(), m_nLines);
        m_nLines = 0;
        m_nCrossed = m_nCells;
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
        m_vChains.push_back({yTop, yEnd, nDirection, m_nCells, m_uOutline});
    }

    const TCrossingKernels& m_kernels = CrossingKernels();
    CRect m_rcCells;
    uint32_t m_uOutline = 0;
    std::array<TCrossingLine, 64> m_aLines; ///< not yet crossed
    size_t m_nLines = 0;                    ///< of these
    size_t m_nCrossed = 0;                  ///< crossings written
    size_t m_nCells = 0;                    ///< and those of the lines that wait
    std::vector<int32_t> m_vCells;          ///< crossings in the order of the outline, and spare room
    std::vector<TChain> m_vChains;
};
