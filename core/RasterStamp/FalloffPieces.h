// A wide soft edge cut into stretches that short polynomials describe: far less work than a bell curve a
// cell.
#pragma once

#include "core/RasterKernel/StampKernel.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Follows the rows of a quarter disc from the centre outwards. Without pieces every cell is the
/// definition's.
class CFalloffPieces {
public:
    CFalloffPieces() = default;
    /// Covers the squared distances (in squares of half cells) above `uInner` up to `uOuter`, below 2^31.
    CFalloffPieces(const TFalloff& falloff, uint64_t uInner, uint64_t uOuter);

    /// Goes to the cells of row `nRow`; rows are asked for in rising order.
    void SetRow(size_t nRow);
    /// Writes the cells from `nFirst` (in the edge, not before the row's number) up to, without, `nEnd` as
    /// pFalloff does, and anything to CELL_MARGIN places more.
    void Fill(uint16_t* pCells, size_t nFirst, size_t nEnd, const TFalloff& falloff) const;

private:
    struct TStretch {
        uint64_t uEnd; ///< last squared distance
        size_t nEnd;   ///< of the row's cells
        TFalloffPiece piece;
    };

    std::vector<TStretch> m_vStretches; ///< outwards
    size_t m_nFirst = 0;                ///< the stretches before it do not reach the row's diagonal any more
    size_t m_nRow = 0;
};
