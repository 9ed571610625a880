// Level correction: planes through a table of 256 levels, blended by a mask, and the counts of a histogram.
// All forms give the same bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

using TLevelTable = std::array<uint8_t, 256>;

constexpr float LEAST_GAMMA = 0.1F;
constexpr float MOST_GAMMA = 4;

/// Levels up to byLow become 0 and those from byHigh on 255; those between keep their range.
struct TLevels {
    uint8_t byLow = 0; ///< less than byHigh
    uint8_t byHigh = 255;
    float fGamma = 1; ///< LEAST_GAMMA to MOST_GAMMA
};

/// Raises a self-check on levels out of their ranges. With gamma 1 the levels between low and high stay.
TLevelTable MakeLevelTable(const TLevels& levels);

struct TLevelKernels {
    /// Each value v becomes table[v]. `pDest` may equal `pSource`.
    void (*pLookUp)(uint8_t* pDest, const uint8_t* pSource, const TLevelTable& table, size_t nCount);
    /// old + (value - old) * mask / 255, the division truncating towards 0. `pDest` may equal any of them.
    void (*pMix)(uint8_t* pDest, const uint8_t* pOld, const uint8_t* pValue, const uint8_t* pMask,
                 size_t nCount);
};

/// The definition.
const TLevelKernels& PlainLevelKernels();
/// The vector form, compiled for several instruction sets and selected at run time.
const TLevelKernels& VectorLevelKernels();
/// The form in use.
const TLevelKernels& LevelKernels();

/// Each value v becomes table[v]; with a mask (null: full) it is mixed with it. `pDest` may equal `pSource`.
void ApplyLevels(uint8_t* pDest, const uint8_t* pSource, const uint8_t* pMask, const TLevelTable& table,
                 size_t nCount);

/// Values that are computed at once before a mask mixes them.
constexpr size_t MIX_SPAN = 1024;

using TLevelCounts = std::array<uint32_t, 256>;
/// Counts each pixel whose alpha and mask (null: full) are not 0 under the largest value of the given planes
/// (0 without any).
void CountLevels(TLevelCounts& aCounts, const uint8_t* const* apPlanes, size_t nPlanes, const uint8_t* pAlpha,
                 const uint8_t* pMask, size_t nCount);

/// The place of the gamma pin between the low and the high pin, 0 to 1: 2 to the power of -gamma.
double PlaceOfGamma(float fGamma);
/// The opposite, limited to LEAST_GAMMA and MOST_GAMMA.
float GammaOfPlace(double dPlace);
