// The filter that brings coverage of twice the resolution down to pixels; all forms give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

/// Input of one row of pixels: three rows of `2 * nCount` values, and the value behind the end of
/// each.
struct THalveRows {
    const uint16_t* apRows[3];
    uint16_t auNext[3];
};

struct THalveKernels {
    /// Writes the upper byte of the weighted mean of 3 by 3 values around (2 * x + 1, 1), the weights 1, 2, 1
    /// in both directions.
    void (*pHalve)(uint8_t* pDest, const THalveRows& rows, size_t nCount);
};

/// The definition.
const THalveKernels& PlainHalveKernels();
/// The vector form, compiled for several instruction sets and chosen when the program runs.
const THalveKernels& VectorHalveKernels();
/// The one in use.
const THalveKernels& HalveKernels();
