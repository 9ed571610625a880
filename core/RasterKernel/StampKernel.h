// What strokes are made of: the profile of a soft disc, and its accumulation into a coverage plane. 16 bits a
// value; all forms give the same values.
#pragma once

#include <cstddef>
#include <cstdint>

/// A stamp's part of one tile: `nRows` rows of `nWidth` values, each row a stride after the last.
struct TStampRows {
    uint16_t* pDest;
    size_t nDestStride;
    const uint16_t* pSrc;
    size_t nSrcStride;
    size_t nWidth;
    size_t nRows;
};

/// The bell curve of a soft edge: exp(dFactor * (d - dInner)^2) at the distance d, in half cells.
struct TFalloff {
    double dInner;
    double dFactor; ///< negative
};

struct TStampKernels {
    /// With lim = uAlpha * 257, where dst is below lim:
    ///   dst = min(lim, uAlpha * src / 255 + dst - dst * src / 65535), every division truncating
    /// so that overlapping stamps never pass their own opacity and never lower what is there.
    void (*pAccumulate)(const TStampRows& rows, uint8_t uAlpha);
    /// Cells `nFirst` to `nFirst + nCount - 1` of the row `nRow` cells below the centre, taken at the cells'
    /// middles and written to `pCells` on: 0 to 65535, rounded. All distances are at least dInner.
    void (*pFalloff)(uint16_t* pCells, size_t nFirst, size_t nCount, size_t nRow, const TFalloff& falloff);
};

/// The definitions.
const TStampKernels& PlainStampKernels();
/// The vector forms, compiled for several instruction sets and chosen when the program runs.
const TStampKernels& VectorStampKernels();
/// Those in use.
const TStampKernels& StampKernels();

/// A cell's value for a profile's: rounded to 16 bits.
constexpr double CELL_FULL = 65535;
