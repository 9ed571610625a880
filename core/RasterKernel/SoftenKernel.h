// The filter that softens filled outlines, on rows of 8-bit coverage; all forms give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

/// `nCount` values of a row, the rows above and below it. `pRow` is read one value beyond either end.
struct TSoftenRows {
    const uint8_t* pAbove;
    const uint8_t* pRow;
    const uint8_t* pBelow;
    size_t nCount;
};

struct TSoftenKernels {
    /// dest[x] = max(dest[x], (8 * row[x] + row[x - 1] + row[x + 1] + above[x] + below[x] + 6) / 12)
    void (*pSoften)(uint8_t* pDest, const TSoftenRows& rows);
};

/// The definition.
const TSoftenKernels& PlainSoftenKernels();
/// The vector form, compiled for several instruction sets and chosen when the program runs.
const TSoftenKernels& VectorSoftenKernels();
/// The one in use.
const TSoftenKernels& SoftenKernels();

/// The definition for one value.
constexpr uint8_t SoftenedValue(uint32_t uCentre, uint32_t uNeighbours) {
    return static_cast<uint8_t>((8 * uCentre + uNeighbours + 6) / 12);
}
