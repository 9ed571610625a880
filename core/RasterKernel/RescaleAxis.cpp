#include "core/RasterKernel/RescaleAxis.h"

#include "core/Base/Failure.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct TTap {
    int32_t nIndex;
    float fWeight;
};

float RateOf(int32_t nFrom, int32_t nTo) { return static_cast<float>(nFrom) / static_cast<float>(nTo); }

// Makes the table from the taps of each pixel, which fnTaps(i, vTaps) appends. Taps that weigh nothing in any
// pixel are left out at the front.
template <class Function>
TRescaleAxis MakeAxis(int32_t nFrom, int32_t nTo, const Function& fnTaps) {
    TRescaleAxis axis(nFrom, nTo);
    std::vector<TTap> vTaps;
    std::vector<size_t> vFirst{0};
    size_t nSkip = std::numeric_limits<size_t>::max();
    for (int32_t i = 0; i < nTo; ++i) {
        fnTaps(i, vTaps);
        const auto itFirst = vTaps.begin() + static_cast<ptrdiff_t>(vFirst.back());
        const auto it = std::find_if(itFirst, vTaps.end(), [](const TTap& tap) { return tap.fWeight != 0; });
        nSkip = std::min(nSkip, static_cast<size_t>(it - itFirst));
        axis.nTaps = std::max(axis.nTaps, vTaps.size() - vFirst.back());
        vFirst.push_back(vTaps.size());
    }
    for (size_t t = nSkip; t < axis.nTaps; ++t)
        for (size_t i = 0; i + 1 < vFirst.size(); ++i) {
            const bool bOwn = vFirst[i] + t < vFirst[i + 1];
            const TTap& tap = vTaps[bOwn ? vFirst[i] + t : vFirst[i + 1] - 1];
            axis.vIndex.push_back(tap.nIndex);
            axis.vWeight.push_back(bOwn ? tap.fWeight : 0);
        }
    axis.nTaps -= nSkip;
    std::vector<double> vSums(vFirst.size() - 1);
    for (size_t n = 0; n < axis.vWeight.size(); ++n) vSums[n % vSums.size()] += axis.vWeight[n];
    for (size_t n = 0; n < axis.vWeight.size(); ++n) {
        axis.vShare.push_back(static_cast<float>(axis.vWeight[n] / vSums[n % vSums.size()]));
        axis.bNoneNegative = axis.bNoneNegative && axis.vWeight[n] >= 0;
    }
    return axis;
}

// The kernel of cubic convolution.
float CubicAt(float d) {
    if (d <= 1) return d * d * d - 2 * d * d + 1;
    if (d <= 2) return -d * d * d + 5 * d * d - 8 * d + 4;
    return 0;
}

// Samples from nLow to nHigh beside that left of the pixel's centre; fnWeight(f, n) weighs them, f being the
// centre's distance behind that sample.
template <class Function>
TRescaleAxis MakeCentredAxis(int32_t nFrom, int32_t nTo, int32_t nLow, int32_t nHigh,
                             const Function& fnWeight) {
    const float fRate = RateOf(nFrom, nTo);
    return MakeAxis(nFrom, nTo, [&](int32_t i, std::vector<TTap>& vTaps) {
        const float fAt = (static_cast<float>(i) + 0.5f) * fRate - 0.5f;
        const float fFloor = std::floor(fAt);
        const auto nFloor = static_cast<int32_t>(fFloor);
        for (int32_t n = nLow; n <= nHigh; ++n)
            vTaps.push_back({std::clamp(nFloor + n, 0, nFrom - 1), fnWeight(fAt - fFloor, n)});
    });
}

TRescaleAxis NearestAxis(int32_t nFrom, int32_t nTo) {
    return MakeAxis(nFrom, nTo, [&](int32_t i, std::vector<TTap>& vTaps) {
        vTaps.push_back({static_cast<int32_t>((2 * int64_t{i} + 1) * nFrom / (2 * int64_t{nTo})), 1});
    });
}

// fnCheck(low, high) checks the samples of a pixel.
template <class Check>
TRescaleAxis MeanAxis(int32_t nFrom, int32_t nTo, const Check& fnCheck) {
    return MakeAxis(nFrom, nTo, [&, nFactor = nFrom / nTo](int32_t i, std::vector<TTap>& vTaps) {
        fnCheck(i * nFactor, i * nFactor + nFactor - 1);
        for (int32_t n = 0; n < nFactor; ++n) vTaps.push_back({i * nFactor + n, 1});
    });
}

template <class Check>
TRescaleAxis AreaAxis(int32_t nFrom, int32_t nTo, const Check& fnCheck) {
    const float fRate = RateOf(nFrom, nTo);
    return MakeAxis(nFrom, nTo, [&](int32_t i, std::vector<TTap>& vTaps) {
        const float fStart = static_cast<float>(i) * fRate;
        // The end of the last pixel can be rounded up to more than the source has.
        const float fEnd = std::min(static_cast<float>(i + 1) * fRate, static_cast<float>(nFrom));
        const auto nLow = static_cast<int32_t>(std::floor(fStart));
        const auto nHigh = static_cast<int32_t>(std::ceil(fEnd)) - 1;
        fnCheck(nLow, nHigh);
        for (int32_t n = nLow; n <= nHigh; ++n)
            vTaps.push_back({n, n == nLow    ? 1 - (fStart - std::floor(fStart))
                                : n == nHigh ? fEnd + 1 - std::ceil(fEnd)
                                             : 1.0f});
    });
}

bool AreMultiples(CSize srcSize, CSize destSize) {
    return (srcSize.cx % destSize.cx) == 0 && (srcSize.cy % destSize.cy) == 0;
}

TRescaleAxes MakeMeanAxes(CSize srcSize, CSize destSize) {
    SELF_CHECK(defect_logic, srcSize.cx >= destSize.cx && srcSize.cy >= destSize.cy);
    SELF_CHECK(defect_logic, (srcSize.cx % destSize.cx) == 0 && (srcSize.cy % destSize.cy) == 0);
    return {MeanAxis(srcSize.cx, destSize.cx,
                     [&](int32_t xl, int32_t xh) {
                         SELF_CHECK(defect_logic, 0 <= xl && xl < srcSize.cx);
                         SELF_CHECK(defect_logic, xl <= xh && xh < srcSize.cx);
                     }),
            MeanAxis(srcSize.cy, destSize.cy, [&](int32_t yl, int32_t yh) {
                SELF_CHECK(defect_logic, 0 <= yl && yl < srcSize.cy);
                SELF_CHECK(defect_logic, yl <= yh && yh < srcSize.cy);
            })};
}

TRescaleAxes MakeAreaAxes(CSize srcSize, CSize destSize) {
    const float rateX = RateOf(srcSize.cx, destSize.cx);
    const float rateY = RateOf(srcSize.cy, destSize.cy);
    SELF_CHECK(defect_logic, rateX >= 1.0f && rateY >= 1.0f);
    return {
        AreaAxis(srcSize.cx, destSize.cx, [](int32_t xl, int32_t xh) { SELF_CHECK(defect_logic, xl <= xh); }),
        AreaAxis(srcSize.cy, destSize.cy,
                 [](int32_t yl, int32_t yh) { SELF_CHECK(defect_logic, yl <= yh); })};
}

TRescaleAxis BilinearAxis(int32_t nFrom, int32_t nTo) {
    return MakeCentredAxis(nFrom, nTo, 0, 1, [](float f, int32_t n) { return n == 0 ? 1 - f : f; });
}

TRescaleAxis BicubicAxis(int32_t nFrom, int32_t nTo) {
    return MakeCentredAxis(nFrom, nTo, -2, 1,
                           [](float f, int32_t n) { return CubicAt(std::abs(f - static_cast<float>(n))); });
}

} // namespace

ERescaleKind AverageKind(CSize srcSize, CSize destSize) {
    return AreMultiples(srcSize, destSize) ? ERescaleKind::Mean : ERescaleKind::Area;
}

TRescaleAxes MakeRescaleAxes(ERescaleKind kind, CSize srcSize, CSize destSize) {
    const auto both = [&](const auto& fnAxis) {
        return TRescaleAxes{fnAxis(srcSize.cx, destSize.cx), fnAxis(srcSize.cy, destSize.cy)};
    };
    switch (kind) {
    case ERescaleKind::Nearest:
        return both(NearestAxis);
    case ERescaleKind::Mean:
        return MakeMeanAxes(srcSize, destSize);
    case ERescaleKind::Area:
        return MakeAreaAxes(srcSize, destSize);
    case ERescaleKind::Bilinear:
        return both(BilinearAxis);
    case ERescaleKind::Bicubic:
        break;
    }
    return both(BicubicAxis);
}
