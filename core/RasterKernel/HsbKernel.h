// Hue, saturation and brightness of rows of pixels, in a space of hue, chroma and lightness. All forms give
// the same bytes.
#pragma once

#include "core/RasterKernel/LevelKernel.h"
#include "core/RasterKernel/Pixels.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// The changes that a user asks for. Those of saturation and brightness act where their band has weight: low,
/// middle and high chroma; black, middle and white. The master value acts in all bands.
struct THsbValues {
    float fHue = 0;            ///< degrees, -180 to 180
    float fSatPriority = 0.5F; ///< for a colour that does not exist: 0 keeps its lightness, 1 its chroma
    float fSat = 0;            ///< -1 to 1
    std::array<float, 3> afSatBand{};    ///< -0.5 to 0.5
    float fBright = 0;                   ///< -1 to 1
    std::array<float, 3> afBrightBand{}; ///< -0.5 to 0.5
};

/// Everything that depends on the values only.
struct THsbTables {
    std::array<float, 256> afChroma; ///< the new chroma, 0 to 1, by the largest less the smallest channel
    std::array<float, 512> afLight;  ///< the new lightness, 0 to 1, by the sum of both; the last is idle
    TLevelTable grey;                ///< the new level of a pixel without chroma
    float fHue;
    float fSatPriority;
};

/// Raises a self-check on a hue or priority out of its range.
THsbTables MakeHsbTables(const THsbValues& values);

struct THsbKernels {
    /// The new colours. The planes of `dest` may equal those of `source`; alpha is neither read nor written.
    void (*pAdjust)(const TColorPixels& dest, const TConstColorPixels& source, const THsbTables& tables,
                    size_t nCount);
};

/// The definition.
const THsbKernels& PlainHsbKernels();
/// The vector form, compiled for several instruction sets and selected at run time.
const THsbKernels& VectorHsbKernels();
/// The form in use.
const THsbKernels& HsbKernels();

/// Changes colours; with a mask (null: full) the new ones are mixed with the old ones as levels are. The
/// planes of `dest` may equal those of `source`; alpha is neither read nor written.
void AdjustHsb(const TColorPixels& dest, const TConstColorPixels& source, const uint8_t* pMask,
               const THsbTables& tables, size_t nCount);
/// The same for grey pixels, which have no chroma.
void AdjustHsb(uint8_t* pDest, const uint8_t* pSource, const uint8_t* pMask, const THsbTables& tables,
               size_t nCount);

/// The value of a slider's position, 0 to 512: -1 to 1, fine near the middle.
float HsbCurve(int nPosition);
