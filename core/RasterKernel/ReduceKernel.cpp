#include "core/RasterKernel/ReduceKernel.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

// A floating mean of equal samples can fall slightly below them; the guard keeps flat areas flat.
constexpr float TRUNCATION_GUARD = 1.0f / 1024;
/// Below this number of source pixels threads cost more than they save.
constexpr int64_t PARALLEL_PIXELS = 64 * 64;

// Adds a row to the sums of its columns, without samples of alpha 0, and counts them. Simple loops over
// plain arrays, so that compilers can vectorise them.
template <class T, class Sum>
void AddRow(Sum* pSums, Sum* pCounts, const T* pRow, const uint8_t* pAlpha, size_t nWidth) {
    if (!pAlpha) {
        for (size_t x = 0; x < nWidth; ++x) pSums[x] = static_cast<Sum>(pSums[x] + pRow[x]);
        return;
    }
    for (size_t x = 0; x < nWidth; ++x) {
        const T uSample = pAlpha[x] ? pRow[x] : T{0};
        pSums[x] = static_cast<Sum>(pSums[x] + uSample);
    }
    for (size_t x = 0; x < nWidth; ++x) pCounts[x] = static_cast<Sum>(pCounts[x] + (pAlpha[x] ? 1 : 0));
}

// `Sum` holds the sum of a whole column of a cell.
template <class Sum, class T>
void ReduceWholeBy(T* pDest, CSize szDest, const T* pSource, const uint8_t* pAlpha, CSize szSource) {
    const size_t nX = static_cast<size_t>(szSource.cx / szDest.cx);
    const size_t nY = static_cast<size_t>(szSource.cy / szDest.cy);
    const size_t nWidth = static_cast<size_t>(szSource.cx);
    std::vector<Sum> vSums(nWidth);
    std::vector<Sum> vCounts(nWidth);
    for (int32_t y = 0; y < szDest.cy; ++y) {
        std::fill(vSums.begin(), vSums.end(), Sum{0});
        std::fill(vCounts.begin(), vCounts.end(), pAlpha ? Sum{0} : static_cast<Sum>(nY));
        for (size_t v = 0; v < nY; ++v, pSource += nWidth) {
            AddRow(vSums.data(), vCounts.data(), pSource, pAlpha, nWidth);
            if (pAlpha) pAlpha += nWidth;
        }
        for (size_t x = 0; x < nWidth; x += nX) {
            uint64_t uSum = 0;
            uint64_t uCount = 0;
            for (size_t u = x; u < x + nX; ++u) {
                uSum += vSums[u];
                uCount += vCounts[u];
            }
            *pDest++ = static_cast<T>(uCount ? uSum / uCount : 0);
        }
    }
}

template <class T>
void ReduceWhole(T* pDest, CSize szDest, const T* pSource, const uint8_t* pAlpha, CSize szSource) {
    constexpr int32_t SHORT_COLUMN = 257; // of bytes, whose sum fits 16 bits
    if (sizeof(T) == 1 && szSource.cy / szDest.cy <= SHORT_COLUMN)
        ReduceWholeBy<uint16_t>(pDest, szDest, pSource, pAlpha, szSource);
    else
        ReduceWholeBy<uint64_t>(pDest, szDest, pSource, pAlpha, szSource);
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
    // Every row is written by only one thread, from samples that are not written.
#pragma omp parallel for if (szSource.cx * int64_t{szSource.cy} >= PARALLEL_PIXELS)
    for (int32_t y = 0; y < szDest.cy; ++y) {
        const TSpan spanY(y, fRateY, szSource.cy);
        T* pOut = pDest + static_cast<size_t>(y) * static_cast<size_t>(szDest.cx);
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
            *pOut++ = fWeights > 0 ? static_cast<T>(std::min<float>(std::numeric_limits<T>::max(),
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
