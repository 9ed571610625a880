// A disc from which stamps are cut at any subpixel position, by a box filter over its cells.
#pragma once

#include "core/RasterStamp/StampShape.h"

#include <cstdint>
#include <vector>

class CStampDisc {
public:
    /// For subpixel positions whose `nLostBits` (0 to 3) low bits are 0.
    CStampDisc(const TStampShape& shape, int nLostBits);

    /// Writes StampLength values: coverages 0 to 65535 in rows of StampStride. `fx` and `fy`, 0 to 7, move
    /// the disc right and down by so many cells. Every pixel is the mean, truncated, of 64 cells.
    void Cut(uint16_t* pStamp, int fx, int fy) const;
    /// Number of stored values.
    size_t GetLength() const { return m_vSums.size(); }

private:
    struct TCorner {
        size_t nAt;
        uint32_t uSign; ///< 1, or all ones for minus 1
    };
    TCorner CornerAt(int32_t nCell) const;
    void MakeSums();
    void CutCentred(uint16_t* pStamp) const;

    TStampShape m_shape;
    int32_t m_nStep;               ///< cells between stored sums
    int32_t m_nFirst;              ///< cells from the centre to the first one
    size_t m_nSide = 0;            ///< stored sums in each direction
    std::vector<uint32_t> m_vSums; ///< of all cells between the centre and a corner, modulo 2^32
};
