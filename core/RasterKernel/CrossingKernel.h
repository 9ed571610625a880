// Crossings of edges with rows of cells, and sums over the crossings in one row of pixels; all forms give
// the same results.
#pragma once

#include <cstddef>
#include <cstdint>

/// Cells per pixel, in each direction.
constexpr int32_t CROSSING_CELLS = 16;
/// Pixels that are summed together.
constexpr int32_t CROSSING_PIXELS = 4;

/// Bits of a crossing's fraction.
constexpr int CROSSING_BITS = 36;

struct TCrossingSums {
    int32_t nMin; ///< the smallest crossing
    int32_t nMax; ///< the largest crossing
    /// In the k-th 16 bits, the cells from the crossings on in the k-th pixel from that of nMin:
    /// the sum of clamp(16 * (k + 1) - (cell - 16 * (nMin >> 4)), 0, 16).
    uint64_t uSums;
};

/// A line that crosses rows of cells, one cell high each. Coordinates are sixteenths of a cell.
struct TCrossingLine {
    int32_t x, y;   ///< the upper end, within 2^27 from 0
    int32_t dx, dy; ///< to the lower end; dy is at least 1, both at most 2^15 + 1 of amount
    int32_t nRow;   ///< the row of the first crossing that is written
    int32_t nStep;  ///< to the row of the next one: 1 or -1
    size_t nCount;

    /// The slope in 2^-SLOPE_BITS, rounded down by less than 3 units: the quotient, of 47 bits, is rounded by
    /// less than one.
    int64_t GetSlope() const {
        return static_cast<int64_t>(dx * static_cast<double>(int64_t{1} << SLOPE_BITS) / dy) - 2;
    }
    /// The first crossing before it is rounded down to a cell, in 2^-CROSSING_BITS cells, for a slope.
    int64_t GetFirst(int64_t nSlope) const {
        const int64_t nX = x * (int64_t{1} << SLOPE_BITS) + nSlope * (nRow * UNIT + UNIT / 2 - y);
        return nX + (int64_t{UNIT / 2} << SLOPE_BITS) - 1; // to the first centre at or right of it
    }
    /// From one crossing to the next.
    int64_t GetStep(int64_t nSlope) const { return nSlope * (UNIT * nStep); }

    static constexpr int32_t UNIT = 16;
    static constexpr int SLOPE_BITS = CROSSING_BITS - 4;
};

struct TCrossingKernels {
    /// Writes the crossings of the lines, one after the other: with the centre of each row of cells, the
    /// first cell whose centre lies at the line or right of it. May overwrite sixteen cells behind.
    void (*pCrossLines)(int32_t* pCells, const TCrossingLine* pLines, size_t nLines);
    /// Sums `nCount` crossings, 1 to 16, whose cells lie within 2^30 from 0.
    TCrossingSums (*pSum)(const int32_t* pCells, size_t nCount);
    /// Sums `nBlocks` times 16 crossings, each block `nStep` cells after the last.
    void (*pSumBlocks)(TCrossingSums* pSums, const int32_t* pCells, ptrdiff_t nStep, size_t nBlocks);
};

/// The reference form.
const TCrossingKernels& PlainCrossingKernels();
/// The vector form, compiled for several instruction sets and selected at run time.
const TCrossingKernels& VectorCrossingKernels();
/// The form in use.
const TCrossingKernels& CrossingKernels();
