// Counts the set cells of pixels, one row of pixels after the other.
//
// A chain crosses each of the 16 rows of cells at most once, and where the winding number leaves or reaches 0
// there, a span of set cells begins or ends. Its 16 - f cells in its own pixel and the 16 in each one behind
// are kept as differences from pixel to pixel, so a pixel costs an addition, however many spans lie over it.
// Spans are never sorted where a chain has the neighbourhood for itself, which is nearly everywhere: its
// crossings lie apart from all others', so the winding numbers before it are known.
//
// A cell that several outlines wind around is set as soon as one of them does not wind 0 times: in rows that
// more than one outline crosses, each has its own winding numbers and all crossings are sorted.
#pragma once

#include "core/PathFill/CountRow.h"
#include "core/PathFill/FillEdge.h"
#include "core/PathFill/MonotoneChains.h"
#include "core/RasterKernel/CrossingKernel.h"

#include <boost/noncopyable.hpp>

#include <array>
#include <cstdint>
#include <vector>

class CCellCounter : boost::noncopyable {
public:
    /// Counts the cells between `chains`, which must stay as they are: pixels from `nFirst` (0 or -1) to
    /// before `nEnd`.
    void Begin(const CMonotoneChains& chains, int32_t nFirst, int32_t nEnd);
    /// The first row of pixels from `y` on that has chains; INT32_MAX when there is none.
    int32_t NextRow(int32_t y) const;
    /// Counts a row into an empty `row`. Rows must be requested in ascending order; omitted rows must have
    /// no chains.
    void Count(int32_t y, CCountRow& row);
    /// Returns the edges, from left to right, of rows that need no counting. False when the rows must be
    /// counted. After true, Count continues with the last two of them, or behind.
    bool GetEdges(int32_t y, int32_t nRows, std::vector<TFillEdge>& vEdges) const;

private:
    static constexpr int32_t ROWS = FILL_CELLS; ///< rows of cells in a row of pixels

    // A chain. The rows of pixels that it crosses from top to bottom are summed beforehand.
    struct TOrdered {
        const TChain* pChain;
        int32_t yWhole;    ///< the first of them
        int32_t yWholeEnd; ///< behind the last
        size_t nSums;      ///< the first one's in m_vSums
    };
    // A chain in one row of pixels: rows of cells from nTop to before nEnd.
    struct TActive {
        const TOrdered* pOrdered;
        const int32_t* pCells; ///< of those rows
        int32_t nTop, nEnd;
        int32_t nDirection;
        TCrossingSums sums;

        int32_t GetCell(int32_t nRow) const { return pCells[nDirection > 0 ? nRow - nTop : nEnd - 1 - nRow]; }
    };

    void Measure(TActive& active, int32_t y);
    void WriteEdge(const TActive& active, CCountRow& row);
    void CountAlone(const TActive& active);
    void AddSpans(const TActive& active, int32_t nSign);
    void CountGroup(size_t nFrom, size_t nTo, int32_t nMax);
    void CountSorted(size_t nFrom, size_t nTo);
    void CountUnion(CCountRow& row);
    void CountCrowd(size_t nFrom, size_t nTo, int32_t nMax);
    void Pass(int32_t nCell, int32_t nStep, int32_t& nWinding);
    void AddCrossing(int32_t nCell, int32_t nSign);
    void Reach(int32_t nPixel, CCountRow& row);

    const TCrossingKernels& m_kernels = CrossingKernels();
    const CMonotoneChains* m_pChains = nullptr;
    std::vector<TOrdered> m_vOrder; ///< sorted by their top
    std::vector<TCrossingSums> m_vSums;
    size_t m_nWaiting = 0;          ///< the first of m_vOrder that has not begun
    std::vector<TActive> m_vActive; ///< sorted by their left side
    std::vector<int32_t> m_vKeys;   ///< of one row of cells: 4 * cell + direction + 1
    // A crossing of one row of cells.
    struct TCellCrossing {
        int32_t nCell;
        int32_t nStep;
        uint32_t uOutline;
    };
    std::vector<TCellCrossing> m_vCrossings;
    std::vector<int32_t> m_vWindings; ///< of each outline; 0 between rows of cells
    std::vector<int32_t> m_vSteps;    ///< change of the winding number at each cell of a crowd; else 0
    int32_t m_yChanged = 0;           ///< the last row in which a chain began or ended

    int32_t m_nFirst = 0; ///< pixels counted
    int32_t m_nEnd = 0;
    std::vector<int16_t> m_vDifference; ///< from pixel -1 on
    /// Up to the position reached; only the first is valid while m_bEven.
    std::array<int32_t, ROWS> m_anWinding{};
    bool m_bEven = true;    ///< all rows of cells have the same winding number
    int32_t m_nCount = 0;   ///< of the pixel before m_nNext
    int32_t m_nNext = 0;    ///< the pixel to be written next
    int32_t m_nChanged = 0; ///< no differences from this pixel on
};
