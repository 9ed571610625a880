// A finished stamp: the disc's cells, box-filtered down to plane pixels at their place within a pixel.
#pragma once

#include "core/RasterStroke/StampShape.h"

#include <cstdint>
#include <vector>

/// Keeps its working memory from stamp to stamp.
class CStampMaker {
public:
    /// Writes StampLength values: coverages 0 to 65535 in rows of StampStride. `fx` and `fy`, 0 to 7, move
    /// the disc right and down by so many cells. Every pixel is the mean, truncated, of 64 cells.
    void Make(uint16_t* pStamp, const TStampShape& shape, int fx, int fy);

private:
    std::vector<uint16_t> m_vCells;
    std::vector<uint32_t> m_vPrefix; ///< sums of the row's cells before each cell
    std::vector<uint32_t> m_vRow;    ///< sums of eight cells each, one a pixel
    std::vector<uint32_t> m_vSums;   ///< the stamp's pixels before division
};
