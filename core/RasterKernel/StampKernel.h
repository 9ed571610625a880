// The kernels of strokes: the profile of a soft disc, and its accumulation into a coverage plane. 16 bits a
// value; all forms give the same values.
#pragma once

#include <array>
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

/// A piece of a bell curve over the squared distance s, in squares of half cells: with t = (s - nCentre) *
/// fScale, of -1 to 1, the cells are nBase plus the terms' sum (term k times t^k), accurate to
/// MAX_PIECE_ERROR while the terms' sum is at most MAX_PIECE_SPAN.
struct TFalloffPiece {
    static constexpr size_t TERMS = 5;
    int32_t nCentre = 0;
    float fScale = 0;
    int32_t nBase = 0;
    std::array<float, TERMS> afTerms{};
};
constexpr double MAX_PIECE_SPAN = 1024;
constexpr float MAX_PIECE_ERROR = 0x1p-10f;
/// The cells of a row from the end of the stretch before up to, without, nEnd, which may lie before it.
struct TFalloffStretch {
    size_t nEnd;
    TFalloffPiece piece; ///< fScale 0: none is accurate enough
};

/// Cells behind the last one that pFalloffRow may overwrite.
constexpr size_t CELL_MARGIN = 16;

struct TStampKernels {
    /// With lim = uAlpha * 257, where dst is below lim:
    ///   dst = min(lim, uAlpha * src / 255 + dst - dst * src / 65535), every division truncating
    /// so that overlapping stamps never pass their own opacity and never lower what is there.
    void (*pAccumulate)(const TStampRows& rows, uint8_t uAlpha);
    /// Computes the cells `nFirst` to `nFirst + nCount - 1` of the row `nRow` cells below the centre,
    /// sampled at the cells' centres, into `pCells`: 0 to 65535, rounded. All distances are at least
    /// dInner.
    void (*pFalloff)(uint16_t* pCells, size_t nFirst, size_t nCount, size_t nRow, const TFalloff& falloff);
    /// The same cells from `nFirst` to before `nEnd`, stretch by stretch; those behind the last stretch as
    /// those of one without a piece. May overwrite CELL_MARGIN cells behind them.
    void (*pFalloffRow)(uint16_t* pCells, size_t nFirst, size_t nEnd, size_t nRow, const TFalloff& falloff,
                        const TFalloffStretch* pStretches, size_t nStretches);
    /// Adds cells to sums.
    void (*pAddCells)(uint32_t* pSums, const uint16_t* pCells, size_t nCount);
    /// Writes the upper bytes of values: the coverage that pixels are blended with.
    void (*pUpperBytes)(uint8_t* pBytes, const uint16_t* pValues, size_t nCount);
};

/// The reference forms.
const TStampKernels& PlainStampKernels();
/// The vector forms, compiled for several instruction sets and selected at run time.
const TStampKernels& VectorStampKernels();
/// The forms in use.
const TStampKernels& StampKernels();

/// The cell value of a full profile, 16 bits.
constexpr double CELL_FULL = 65535;
