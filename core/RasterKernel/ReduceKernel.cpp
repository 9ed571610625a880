#include "core/RasterKernel/ReduceKernel.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// A floating mean of equal samples can fall a hair below them; the guard keeps flat areas flat.
constexpr float TRUNCATION_GUARD = 1.0f / 1024;

template <class T>
void ReduceWhole(T* pDest, CSize szDest, const T* pSource, const uint8_t* pAlpha, CSize szSource) {
    const int32_t nX = szSource.cx / szDest.cx;
    const int32_t nY = szSource.cy / szDest.cy;
    for (int32_t y = 0; y < szDest.cy; ++y) {
        for (int32_t x = 0; x < szDest.cx; ++x) {
            uint64_t uSum = 0;
            uint64_t uCount = 0;
            for (int32_t v = y * nY; v < (y + 1) * nY; ++v) {
                for (int32_t u = x * nX; u < (x + 1) * nX; ++u) {
                    const size_t i =
                        static_cast<size_t>(v) * static_cast<size_t>(szSource.cx) + static_cast<size_t>(u);
                    if (pAlpha && pAlpha[i] == 0) continue;
                    uSum += pSource[i];
                    ++uCount;
                }
            }
            *pDest++ = static_cast<T>(uCount ? uSum / uCount : 0);
        }
    }
}

// The samples that one target pixel covers on an axis, and the weights of the first and the last.
struct TSpan {
    int32_t nLow;
    int32_t nHigh;
    float fFirst;
    float fLast;

    TSpan(int32_t i, float fRate, int32_t nLimit) {
        const float fStart = static_cast<float>(i) * fRate;
        const float fEnd = static_cast<float>(i + 1) * fRate;
        nLow = std::clamp(static_cast<int32_t>(std::floor(fStart)), 0, nLimit - 1);
        nHigh = std::clamp(static_cast<int32_t>(std::ceil(fEnd)) - 1, nLow, nLimit - 1);
        fFirst = 1 - (fStart - std::floor(fStart));
        fLast = fEnd + 1 - std::ceil(fEnd);
    }
    float WeightAt(int32_t n) const { return n == nLow ? fFirst : n == nHigh ? fLast : 1.0f; }
};

template <class T>
void ReduceFraction(T* pDest, CSize szDest, const T* pSource, const uint8_t* pAlpha, CSize szSource) {
    const float fRateX = static_cast<float>(szSource.cx) / static_cast<float>(szDest.cx);
    const float fRateY = static_cast<float>(szSource.cy) / static_cast<float>(szDest.cy);
    for (int32_t y = 0; y < szDest.cy; ++y) {
        const TSpan spanY(y, fRateY, szSource.cy);
        for (int32_t x = 0; x < szDest.cx; ++x) {
            const TSpan spanX(x, fRateX, szSource.cx);
            float fSum = 0;
            float fWeights = 0;
            for (int32_t v = spanY.nLow; v <= spanY.nHigh; ++v) {
                for (int32_t u = spanX.nLow; u <= spanX.nHigh; ++u) {
                    const size_t i =
                        static_cast<size_t>(v) * static_cast<size_t>(szSource.cx) + static_cast<size_t>(u);
                    if (pAlpha && pAlpha[i] == 0) continue;
                    const float fWeight = spanX.WeightAt(u) * spanY.WeightAt(v);
                    fSum += fWeight * static_cast<float>(pSource[i]);
                    fWeights += fWeight;
                }
            }
            *pDest++ = fWeights > 0 ? static_cast<T>(std::min<float>(std::numeric_limits<T>::max(),
                                                                     fSum / fWeights + TRUNCATION_GUARD))
                                    : 0;
        }
    }
}

template <class T>
void Reduce(T* pDest, CSize destSize, const T* pSource, const uint8_t* pAlpha, CSize srcSize) {
    SELF_CHECK(defect_logic, srcSize.cx >= destSize.cx && srcSize.cy >= destSize.cy);
    const bool bWhole = srcSize.cx % destSize.cx == 0 && srcSize.cy % destSize.cy == 0;
    (bWhole ? ReduceWhole<T> : ReduceFraction<T>)(pDest, destSize, pSource, pAlpha, srcSize);
}

} // namespace

void ReducePlane(uint8_t* pDest, CSize szDest, const uint8_t* pSource, const uint8_t* pAlpha,
                 CSize szSource) {
    Reduce(pDest, szDest, pSource, pAlpha, szSource);
}

void ReducePlane(uint16_t* pDest, CSize szDest, const uint16_t* pSource, const uint8_t* pAlpha,
                 CSize szSource) {
    Reduce(pDest, szDest, pSource, pAlpha, szSource);
}
