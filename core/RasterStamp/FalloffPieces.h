// A wide soft edge divided into pieces approximated by short polynomials, much faster than a bell curve for
// each cell.
#pragma once

#include "core/RasterKernel/StampKernel.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Iterates over the rows of a quarter disc from the centre outwards. Without pieces every cell is computed
/// exactly.
class CFalloffPieces {
public:
    CFalloffPieces() = default;
    /// Covers the squared distances (in squares of half cells) above `uInner` up to `uOuter`, below 2^31.
    CFalloffPieces(const TFalloff& falloff, uint64_t uInner, uint64_t uOuter);

    /// Selects row `nRow`; rows must be selected in ascending order.
    void SetRow(size_t nRow);
    /// Writes the cells from `nFirst` (in the edge, not before the row's number) up to, without, `nEnd` as
    /// pFalloff does, and may overwrite CELL_MARGIN more.
    void Fill(uint16_t* pCells, size_t nFirst, size_t nEnd, const TFalloff& falloff) const;

private:
    // Keeps the end of a stretch from row to row.
    struct TLimit {
        int64_t nSquare;  ///< last squared distance
        int64_t nLastRow; ///< the largest squared distance of a row with the end that the stretch now has
    };

    void Append(int64_t nSquare, const TFalloffPiece& piece);

    std::vector<TFalloffStretch> m_vStretches; ///< from the centre outwards
    std::vector<TLimit> m_vLimits;             ///< of each
    size_t m_nFirst = 0;                       ///< the stretches before it end before the row's diagonal
    size_t m_nRow = 0;
};
