#include "core/RasterKernel/SampleKernel.h"

#include "core/Base/StableMath.h"
#include "core/RasterKernel/KernelChoice.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr int LOBES = SAMPLE_TAPS / 2;

// sin(pi * x) / (pi * x), exactly 0 at whole numbers.
double Sinc(double x) {
    if (x == 0) return 1;
    const double dWhole = std::floor(x + 0.5);
    const double dSin = StableSinCos(PI * (x - dWhole)).dSin;
    return (std::fmod(dWhole, 2.0) == 0 ? dSin : -dSin) / (PI * x);
}

// The sinc function in a window of so many of its lobes.
double Lanczos(double x, int nLobes) { return std::abs(x) < nLobes ? Sinc(x) * Sinc(x / nLobes) : 0; }

using TTaps = std::array<int16_t, SAMPLE_TAPS>;

// The weights of a fraction of up to one half. What rounding leaves goes to the nearest tap.
TTaps TapsOf(int nPhase) {
    std::array<double, SAMPLE_TAPS> adTaps;
    double dSum = 0;
    for (int n = 0; n < SAMPLE_TAPS; ++n)
        dSum += adTaps[n] = Lanczos(n - SAMPLE_BEFORE - nPhase / double{SAMPLE_PHASES}, LOBES);
    TTaps aTaps;
    int nRest = TSampleWeights::ONE;
    for (int n = 0; n < SAMPLE_TAPS; ++n) {
        aTaps[n] = static_cast<int16_t>(std::floor(adTaps[n] / dSum * TSampleWeights::ONE + 0.5));
        nRest -= aTaps[n];
    }
    const int nShared = nPhase * 2 == SAMPLE_PHASES ? nRest / 2 : 0; // both taps are nearest
    aTaps[SAMPLE_BEFORE] = static_cast<int16_t>(aTaps[SAMPLE_BEFORE] + nRest - nShared);
    aTaps[SAMPLE_BEFORE + 1] = static_cast<int16_t>(aTaps[SAMPLE_BEFORE + 1] + nShared);
    return aTaps;
}

template <size_t CHANNELS>
void Spread(TSampleWeights::TRows<CHANNELS>& rows, int nPhase, const TTaps& taps) {
    auto& row = rows[static_cast<size_t>(nPhase)];
    row.fill(0);
    for (size_t n = 0; n < taps.size() * CHANNELS; ++n) row[n] = taps[n / CHANNELS];
}

TSampleWeights MakeWeights() {
    TSampleWeights weights;
    for (int n = 0; n < SAMPLE_PHASES; ++n) {
        // Both sides of a pixel are the same, mirrored.
        const bool bMirror = n * 2 > SAMPLE_PHASES;
        TTaps taps = TapsOf(bMirror ? SAMPLE_PHASES - n : n);
        if (bMirror) std::ranges::reverse(taps);
        Spread<1>(weights.one, n, taps);
        Spread<2>(weights.two, n, taps);
        Spread<4>(weights.four, n, taps);
    }
    return weights;
}

int32_t Product(int32_t nValue, int32_t nWeight) { return (nValue * nWeight + (1 << 14)) >> 15; }

void Locate(const TSampleLine& line) {
    const auto fixed = [](double d, double dLow, double dHigh) {
        return static_cast<int32_t>(std::min(std::max(d, dLow), dHigh) * SAMPLE_PHASES + 0.5);
    };
    for (size_t i = 0; i < line.nCount; ++i) {
        const double x = line.dFirst + (static_cast<double>(line.iFirst + i) + 0.5) * line.dStep;
        const double w = std::max(line.w0 + line.w1 * x, LEAST_DIVISOR);
        line.pX[i] = fixed((line.u0 + line.u1 * x) / w + line.dAcross, line.dLow, line.dHigh);
        line.pY[i] = fixed((line.v0 + line.v1 * x) / w + line.dDown, line.dLowDown, line.dHighDown);
    }
}

template <size_t CHANNELS>
void Sample(const TSampleRun& run) {
    const TSampleWeights& weights = SampleWeights();
    for (size_t i = 0; i < run.nCount; ++i) {
        const int16_t* pTaps = run.pWindow + (run.pY[i] / SAMPLE_PHASES - SAMPLE_BEFORE) * run.nStride +
                               (run.pX[i] / SAMPLE_PHASES - SAMPLE_BEFORE) * ptrdiff_t{CHANNELS};
        const auto& across = weights.one[static_cast<size_t>(run.pX[i] % SAMPLE_PHASES)];
        const auto& down = weights.one[static_cast<size_t>(run.pY[i] % SAMPLE_PHASES)];
        for (size_t nChannel = 0; nChannel < CHANNELS; ++nChannel) {
            int32_t nSum = 0;
            for (size_t x = 0; x < SAMPLE_TAPS; ++x) {
                int32_t nColumn = 0;
                for (ptrdiff_t y = 0; y < SAMPLE_TAPS; ++y)
                    nColumn += Product(pTaps[y * run.nStride + ptrdiff_t(x * CHANNELS + nChannel)],
                                       down[static_cast<size_t>(y)]);
                nSum += Product(nColumn, across[x]);
            }
            run.pDest[i * CHANNELS + nChannel] = static_cast<int16_t>(nSum);
        }
    }
}

// The product of a channel and its alpha in prepared units: 255 * 255 becomes 255 * PREPARED_LEVEL.
int16_t Prepared(uint32_t uValue, uint32_t uAlpha) {
    return static_cast<int16_t>((uValue * uAlpha * 32896 + 32768) >> 16);
}

template <size_t CHANNELS>
void Prepare(int16_t* pDest, const uint8_t* const* apPlanes, size_t nCount) {
    const uint8_t* pAlpha = apPlanes[CHANNELS - 1];
    for (size_t n = 0; n + 1 < CHANNELS; ++n) {
        const uint8_t* pPlane = apPlanes[n];
        for (size_t i = 0; i < nCount; ++i) pDest[i * CHANNELS + n] = Prepared(pPlane[i], pAlpha[i]);
    }
    for (size_t i = 0; i < nCount; ++i)
        pDest[i * CHANNELS + CHANNELS - 1] = static_cast<int16_t>(pAlpha[i] * PREPARED_LEVEL);
}

template <size_t CHANNELS>
void Finish(const TFinishRow& row) {
    constexpr int FULL = 256;
    for (size_t i = 0; i < row.nCount; ++i) {
        const int16_t* p = row.pSamples + i * CHANNELS;
        const int nAlpha = std::clamp<int>(p[CHANNELS - 1], 0, 255 * SAMPLED_LEVEL);
        const int nCover = row.pCover ? row.pCover[i] : FULL;
        const int nPainted = (nAlpha * nCover + FULL * SAMPLED_LEVEL / 2) / (FULL * SAMPLED_LEVEL);
        row.apPlanes[CHANNELS - 1][i] = static_cast<uint8_t>(nPainted);
        const float fScale = nPainted ? 255.0F / static_cast<float>(nAlpha) : 0.0F;
        for (size_t n = 0; n + 1 < CHANNELS; ++n) {
            const auto fValue = static_cast<float>(std::clamp<int>(p[n], 0, nAlpha));
            row.apPlanes[n][i] = static_cast<uint8_t>(static_cast<int>(fValue * fScale + 0.5F));
        }
    }
}

constexpr int MOST_FACTOR = 64;
constexpr int REDUCE_ROUND = TSampleWeights::ONE / 2;

// The weights of all samples that a reduction by a factor reads: those of the pixel and of REDUCE_REACH on
// each side.
using TReduceTaps = std::vector<int32_t>;

TReduceTaps MakeReduceTaps(int nFactor) {
    const int nCount = (2 * REDUCE_REACH + 1) * nFactor;
    std::vector<double> vTaps;
    for (int n = 0; n < nCount; ++n)
        vTaps.push_back(Lanczos((n + 0.5 - nCount / 2.0) / nFactor, REDUCE_REACH));
    const double dSum = std::accumulate(vTaps.begin(), vTaps.end(), 0.0);
    TReduceTaps vResult;
    int32_t nRest = TSampleWeights::ONE;
    for (const double d : vTaps) {
        vResult.push_back(static_cast<int32_t>(std::floor(d / dSum * TSampleWeights::ONE + 0.5)));
        nRest -= vResult.back();
    }
    // Those in the middle take what rounding leaves; where there is one, both are the same.
    const auto nMiddle = static_cast<size_t>(nCount / 2);
    vResult[nMiddle] += nRest - nRest / 2;
    vResult[nMiddle - (nCount % 2 == 0)] += nRest / 2;
    return vResult;
}

const TReduceTaps& ReduceTaps(int nFactor) {
    static const std::vector<TReduceTaps> vAll = [] {
        std::vector<TReduceTaps> v(2);
        for (int n = 2; n <= MOST_FACTOR; ++n) v.push_back(MakeReduceTaps(n));
        return v;
    }();
    return vAll[static_cast<size_t>(nFactor)];
}

template <size_t CHANNELS>
void Reduce(int16_t* pDest, const int16_t* pSamples, int nFactor, size_t nCount) {
    const TReduceTaps& vTaps = ReduceTaps(nFactor);
    for (size_t i = 0; i < nCount; ++i) {
        const int16_t* p = pSamples + i * static_cast<size_t>(nFactor) * CHANNELS;
        std::array<int32_t, CHANNELS> anSums;
        anSums.fill(REDUCE_ROUND);
        for (const int32_t nTap : vTaps)
            for (size_t n = 0; n < CHANNELS; ++n) anSums[n] += nTap * *p++;
        for (size_t n = 0; n < CHANNELS; ++n) pDest[i * CHANNELS + n] = static_cast<int16_t>(anSums[n] >> 14);
    }
}

} // namespace

const TSampleWeights& SampleWeights() {
    static const TSampleWeights weights = MakeWeights();
    return weights;
}

const TSampleKernels& PlainSampleKernels() {
    static constexpr TSampleKernels kernels{Locate,    Sample<1>, Sample<2>, Sample<4>,
                                            Finish<1>, Finish<2>, Finish<4>};
    return kernels;
}

const TSampleKernels& SampleKernels() {
    return UsesVectorKernels() ? VectorSampleKernels() : PlainSampleKernels();
}

void SampleRow(const TSampleRun& run, size_t nChannels) {
    const TSampleKernels& kernels = SampleKernels();
    (nChannels == 1 ? kernels.pSample1 : nChannels == 2 ? kernels.pSample2 : kernels.pSample4)(run);
}

void PrepareRow(int16_t* pDest, const uint8_t* const* apPlanes, size_t nChannels, size_t nCount) {
    (nChannels == 1 ? Prepare<1> : nChannels == 2 ? Prepare<2> : Prepare<4>)(pDest, apPlanes, nCount);
}

void FinishRow(const TFinishRow& row, size_t nChannels) {
    const TSampleKernels& kernels = SampleKernels();
    (nChannels == 1 ? kernels.pFinish1 : nChannels == 2 ? kernels.pFinish2 : kernels.pFinish4)(row);
}

void ReduceAcross(int16_t* pDest, const int16_t* pSamples, int nFactor, size_t nChannels, size_t nCount) {
    (nChannels == 1 ? Reduce<1> : nChannels == 2 ? Reduce<2> : Reduce<4>)(pDest, pSamples, nFactor, nCount);
}

void ReduceDown(int16_t* pDest, const int16_t* pRows, int nFactor, size_t nCount) {
    const TReduceTaps& vTaps = ReduceTaps(nFactor);
    constexpr size_t SPAN = 64; // sums at once
    for (size_t nFirst = 0; nFirst < nCount; nFirst += SPAN) {
        const size_t nPart = std::min(SPAN, nCount - nFirst);
        std::array<int32_t, SPAN> anSums;
        anSums.fill(REDUCE_ROUND);
        const int16_t* p = pRows + nFirst;
        for (const int32_t nTap : vTaps) {
            for (size_t i = 0; i < nPart; ++i) anSums[i] += nTap * p[i];
            p += nCount;
        }
        for (size_t i = 0; i < nPart; ++i) pDest[nFirst + i] = static_cast<int16_t>(anSums[i] >> 14);
    }
}
