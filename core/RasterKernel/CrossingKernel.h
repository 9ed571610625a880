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

struct TCrossingKernels {
    /// Writes the cells (nX + n * nStep) >> CROSSING_BITS, n from 0 to before `nCount`, which lie within
    /// 2^27 from 0; may overwrite up to the next multiple of sixteen.
    void (*pCross)(int32_t* pCells, int64_t nX, int64_t nStep, size_t nCount);
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
