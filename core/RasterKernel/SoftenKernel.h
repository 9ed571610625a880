// The softening filter for filled outlines, on rows of 8-bit coverage; all forms give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

/// A block of `nRows` rows of `nCount` values. `apRows[0]` lies above the first row, apRows[1] is the first,
/// and apRows[nRows + 1] lies below the last; rows are read one value beyond either end.
struct TSoftenBlock {
    uint8_t* pDest;
    size_t nStride; ///< from row to row of `pDest`
    const uint8_t* const* apRows;
    size_t nRows;
    size_t nCount;
};

struct TSoftenKernels {
    /// dest[x] = max(dest[x], (8 * row[x] + row[x - 1] + row[x + 1] + above[x] + below[x] + 6) / 12)
    void (*pSoften)(const TSoftenBlock& block);
};

/// The reference form.
const TSoftenKernels& PlainSoftenKernels();
/// The vector form, compiled for several instruction sets and selected at run time.
const TSoftenKernels& VectorSoftenKernels();
/// The form in use.
const TSoftenKernels& SoftenKernels();

/// The reference form for one value.
constexpr uint8_t SoftenedValue(uint32_t uCentre, uint32_t uNeighbours) {
    return static_cast<uint8_t>((8 * uCentre + uNeighbours + 6) / 12);
}
