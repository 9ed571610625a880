#include "core/RasterKernel/RescalePlane.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace {

// The place of a source pixel in the rows of rcFrom.
size_t PlaceOf(const CRect& rcFrom, int32_t x, int32_t y) {
    return static_cast<size_t>(y - rcFrom.top) * static_cast<size_t>(rcFrom.Width()) +
           static_cast<size_t>(x - rcFrom.left);
}

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
void MeanBy(const TPlaneRescale<T>& plane, const TRescaleAxes& axes) {
    const size_t nX = axes.across.nTaps;
    const auto nY = static_cast<int32_t>(axes.down.nTaps);
    const size_t nWidth = static_cast<size_t>(plane.rcTo.Width()) * nX;
    std::vector<Sum> vSums(nWidth);
    std::vector<Sum> vCounts(nWidth);
    T* pTo = plane.pTo;
    for (int32_t y = plane.rcTo.top; y < plane.rcTo.bottom; ++y, pTo += plane.nToStride) {
        std::fill(vSums.begin(), vSums.end(), Sum{0});
        std::fill(vCounts.begin(), vCounts.end(), plane.pAlpha ? Sum{0} : static_cast<Sum>(nY));
        for (int32_t v = axes.down.First(y); v < axes.down.First(y) + nY; ++v) {
            const size_t nPlace = PlaceOf(plane.rcFrom, axes.across.First(plane.rcTo.left), v);
            const uint8_t* pAlpha = plane.pAlpha ? plane.pAlpha + nPlace : nullptr;
            AddRow(vSums.data(), vCounts.data(), plane.pFrom + nPlace, pAlpha, nWidth);
        }
        T* pOut = pTo;
        for (size_t x = 0; x < nWidth; x += nX) {
            uint64_t uSum = 0;
            uint64_t uCount = 0;
            for (size_t u = x; u < x + nX; ++u) {
                uSum += vSums[u];
                uCount += vCounts[u];
            }
            *pOut++ = static_cast<T>(uCount ? uSum / uCount : 0);
        }
    }
}

template <class T>
void Mean(const TPlaneRescale<T>& plane, const TRescaleAxes& axes) {
    constexpr size_t SHORT_COLUMN = 257; // of bytes, whose sum fits 16 bits
    if (sizeof(T) == 1 && axes.down.nTaps <= SHORT_COLUMN)
        MeanBy<uint16_t>(plane, axes);
    else
        MeanBy<uint64_t>(plane, axes);
}

template <class T>
void Weigh(const TPlaneRescale<T>& plane, const TRescaleAxes& axes) {
    const CRect& rcTo = plane.rcTo;
    for (int32_t y = rcTo.top; y < rcTo.bottom; ++y) {
        T* pOut = plane.pTo + (y - rcTo.top) * plane.nToStride;
        for (int32_t x = rcTo.left; x < rcTo.right; ++x) {
            float fSum = 0;
            float fWeights = 0;
            for (size_t v = 0; v < axes.down.nTaps; ++v) {
                const size_t iDown = v * static_cast<size_t>(axes.down.nTo) + static_cast<size_t>(y);
                for (size_t u = 0; u < axes.across.nTaps; ++u) {
                    const size_t iAcross = u * static_cast<size_t>(axes.across.nTo) + static_cast<size_t>(x);
                    const size_t i =
                        PlaceOf(plane.rcFrom, axes.across.vIndex[iAcross], axes.down.vIndex[iDown]);
                    if (plane.pAlpha && plane.pAlpha[i] == 0) continue;
                    const float fWeight = axes.down.vWeight[iDown] * axes.across.vWeight[iAcross];
                    fSum += fWeight * static_cast<float>(plane.pFrom[i]);
                    fWeights += fWeight;
                }
            }
            constexpr float MOST = std::numeric_limits<T>::max();
            *pOut++ = fWeights < RESCALE_LEAST_WEIGHT
                          ? T{0}
                          : static_cast<T>(std::clamp(fSum / fWeights + RESCALE_GUARD, 0.0f, MOST));
        }
    }
}

} // namespace

void MeanPlane(const TPlaneRescale<uint8_t>& plane, const TRescaleAxes& axes) { Mean(plane, axes); }

void MeanPlane(const TPlaneRescale<uint16_t>& plane, const TRescaleAxes& axes) { Mean(plane, axes); }

void WeighPlane(const TPlaneRescale<uint8_t>& plane, const TRescaleAxes& axes) { Weigh(plane, axes); }

void WeighPlane(const TPlaneRescale<uint16_t>& plane, const TRescaleAxes& axes) { Weigh(plane, axes); }
