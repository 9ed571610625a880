// Generates round stamps: a disc with a soft edge at eight times the plane's resolution.
#pragma once

#include "core/RasterStamp/FalloffPieces.h"
#include "core/RasterStamp/StampShape.h"

#include <cstddef>
#include <cstdint>

/// One quarter of the symmetric disc, row by row from the centre outwards. Cells from GetEnd() on are empty.
class CStampGenerator {
public:
    explicit CStampGenerator(const TStampShape& shape);

    /// Selects row `nRow`; rows must be selected in ascending order.
    void SetRow(size_t nRow);
    size_t GetEnd() const { return m_nEnd; }
    /// Writes the cells from `nFirst` (not before the row's number) up to, without, `nEnd` (not beyond
    /// GetEnd()) to `pCells`, and may overwrite CELL_MARGIN more.
    void Fill(uint16_t* pCells, size_t nFirst, size_t nEnd) const;

private:
    uint16_t FineCell(size_t nCell) const;
    double Profile(uint64_t uSquare) const;

    bool m_bFine;      ///< four samples a cell instead of one
    uint32_t m_uHalf;  ///< sample units to half a cell
    uint64_t m_uInner; ///< squared radius of the core, in sample units
    uint64_t m_uOuter; ///< squared radius of the disc
    TFalloff m_falloff;
    CFalloffPieces m_pieces;
    size_t m_nRow = 0;
    size_t m_nSolid;
    size_t m_nEnd;
};
