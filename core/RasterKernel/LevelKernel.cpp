#include "core/RasterKernel/LevelKernel.h"

#include "core/Base/Failure.h"
#include "core/Base/StableMath.h"
#include "core/RasterKernel/KernelChoice.h"

#include <algorithm>

namespace {

void LookUp(uint8_t* pDest, const uint8_t* pSource, const TLevelTable& table, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) pDest[i] = table[pSource[i]];
}

void Mix(uint8_t* pDest, const uint8_t* pOld, const uint8_t* pValue, const uint8_t* pMask, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i)
        pDest[i] = static_cast<uint8_t>(pOld[i] + (pValue[i] - pOld[i]) * pMask[i] / 255);
}

} // namespace

const TLevelKernels& PlainLevelKernels() {
    static constexpr TLevelKernels kernels{LookUp, Mix};
    return kernels;
}

const TLevelKernels& LevelKernels() {
    return UsesVectorKernels() ? VectorLevelKernels() : PlainLevelKernels();
}

TLevelTable MakeLevelTable(const TLevels& levels) {
    SELF_CHECK(invalid_argument, levels.byLow < levels.byHigh);
    SELF_CHECK(invalid_argument, levels.fGamma >= LEAST_GAMMA && levels.fGamma <= MOST_GAMMA);
    // Products that rounding leaves just below an integer count as that integer.
    constexpr float GUARD = 0.0005F;
    const int nLow = levels.byLow, nHigh = levels.byHigh;
    const auto fRange = static_cast<float>(nHigh - nLow);
    const float fExponent = 1 / levels.fGamma;
    TLevelTable table{};
    for (int i = nLow + 1; i < nHigh; ++i) {
        const float f = static_cast<float>(i - nLow) / fRange;
        const auto fPower = static_cast<float>(StablePow(f, fExponent));
        const int nValue = static_cast<int>(fPower * fRange + GUARD) + nLow;
        table[static_cast<size_t>(i)] = static_cast<uint8_t>(std::clamp(nValue, nLow, nHigh));
    }
    std::fill(table.begin() + nHigh, table.end(), uint8_t{255});
    return table;
}

void ApplyLevels(uint8_t* pDest, const uint8_t* pSource, const uint8_t* pMask, const TLevelTable& table,
                 size_t nCount) {
    const TLevelKernels& kernels = LevelKernels();
    if (!pMask) {
        kernels.pLookUp(pDest, pSource, table, nCount);
        return;
    }
    std::array<uint8_t, MIX_SPAN> aValues;
    for (size_t i = 0; i < nCount; i += MIX_SPAN) {
        const size_t nPart = std::min(MIX_SPAN, nCount - i);
        kernels.pLookUp(aValues.data(), pSource + i, table, nPart);
        kernels.pMix(pDest + i, pSource + i, aValues.data(), pMask + i, nPart);
    }
}

void CountLevels(TLevelCounts& aCounts, const uint8_t* const* apPlanes, size_t nPlanes, const uint8_t* pAlpha,
                 const uint8_t* pMask, size_t nCount) {
    constexpr size_t APART = 4; // pixels beside each other, often alike, have counters of their own
    static_assert(MIX_SPAN % APART == 0);
    std::array<TLevelCounts, APART> aaApart{};
    std::array<uint8_t, MIX_SPAN> aLargest, aCounted;
    const uint8_t* pVisible = pMask ? pMask : pAlpha;
    for (size_t nFirst = 0; nFirst < nCount; nFirst += MIX_SPAN) {
        const size_t nPart = std::min(MIX_SPAN, nCount - nFirst);
        aLargest.fill(0);
        aCounted.fill(0);
        for (size_t n = 0; n < nPlanes; ++n) {
            const uint8_t* p = apPlanes[n] + nFirst;
            for (size_t i = 0; i < nPart; ++i) aLargest[i] = aLargest[i] > p[i] ? aLargest[i] : p[i];
        }
        for (size_t i = 0; i < nPart; ++i)
            aCounted[i] = (pAlpha[nFirst + i] != 0) & (pVisible[nFirst + i] != 0);
        for (size_t i = 0; i < nPart; i += APART)
            for (size_t n = 0; n < APART; ++n) aaApart[n][aLargest[i + n]] += aCounted[i + n];
    }
    for (const auto& aApart : aaApart)
        for (size_t i = 0; i < aCounts.size(); ++i) aCounts[i] += aApart[i];
}

double PlaceOfGamma(float fGamma) { return StablePow(0.5, fGamma); }

float GammaOfPlace(double dPlace) {
    const double dPositive = std::max(dPlace, 0x1p-5); // less is limited all the same
    return std::clamp(static_cast<float>(StableLog(dPositive) / -0.6931472), LEAST_GAMMA, MOST_GAMMA);
}
