// The vector form of the sampling kernels, one source for every instruction set that Highway knows here.
//
// The taps of a row lie beside each other, so vectors of 8 values hold 2, 4 or 8 of them by the number of
// channels. The rows are summed first, then the taps of the sum: 16-bit lanes suffice, because the weights'
// absolute values sum to less than 1.3 and each product is halved.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorSampleKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/SampleKernel.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

const TSampleKernels* GetSampleKernels() { return &PlainSampleKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

// Adds the halves of a vector until `CHANNELS` values are left, and stores them.
template <size_t CHANNELS, class D>
HWY_INLINE void StoreSum(D d, hn::Vec<D> v, int16_t* pDest) {
    if constexpr (hn::MaxLanes(d) == CHANNELS) {
        hn::StoreU(v, d, pDest);
    } else if constexpr (hn::MaxLanes(d) > 8) {
        const hn::Half<D> half;
        StoreSum<CHANNELS>(half, hn::Add(hn::UpperHalf(half, v), hn::LowerHalf(half, v)), pDest);
    } else {
        alignas(16) int16_t an[8];
        const hn::Repartition<int64_t, D> d64;
        const hn::Repartition<int32_t, D> d32;
        auto sum = hn::Add(v, hn::BitCast(d, hn::Shuffle01(hn::BitCast(d64, v))));
        if constexpr (CHANNELS < 4)
            sum = hn::Add(sum, hn::BitCast(d, hn::Shuffle2301(hn::BitCast(d32, sum))));
        hn::Store(sum, d, an);
        if constexpr (CHANNELS == 1) an[0] = static_cast<int16_t>(an[0] + an[1]);
        for (size_t n = 0; n < CHANNELS; ++n) pDest[n] = an[n];
    }
}

template <size_t CHANNELS>
void Sample(const TSampleRun& run) {
    using D = hn::CappedTag<int16_t, 8 * CHANNELS>;
    constexpr D d;
    constexpr size_t LANES = hn::MaxLanes(d);
    constexpr size_t VECTORS = (SAMPLE_TAPS * CHANNELS + LANES - 1) / LANES;
    const TSampleWeights& weights = SampleWeights();
    const auto& across = weights.Get<CHANNELS>();
    const ptrdiff_t nStride = run.nStride;
    for (size_t i = 0; i < run.nCount; ++i) {
        const int32_t x = run.pX[i], y = run.pY[i];
        const int16_t* pTaps = run.pWindow + (y / SAMPLE_PHASES - SAMPLE_BEFORE) * nStride +
                               (x / SAMPLE_PHASES - SAMPLE_BEFORE) * ptrdiff_t{CHANNELS};
        const int16_t* pDown = weights.one[static_cast<size_t>(y % SAMPLE_PHASES)].data();
        const int16_t* pAcross = across[static_cast<size_t>(x % SAMPLE_PHASES)].data();
        hn::Vec<D> a0 = hn::Zero(d), a1 = hn::Zero(d), a2 = hn::Zero(d);
        for (size_t n = 0; n < SAMPLE_TAPS; ++n, pTaps += nStride) {
            const auto weight = hn::Set(d, pDown[n]);
            a0 = hn::Add(a0, hn::MulFixedPoint15(hn::LoadU(d, pTaps), weight));
            if constexpr (VECTORS > 1)
                a1 = hn::Add(a1, hn::MulFixedPoint15(hn::LoadU(d, pTaps + LANES), weight));
            if constexpr (VECTORS > 2)
                a2 = hn::Add(a2, hn::MulFixedPoint15(hn::LoadU(d, pTaps + 2 * LANES), weight));
        }
        auto sum = hn::MulFixedPoint15(a0, hn::Load(d, pAcross));
        if constexpr (VECTORS > 1) sum = hn::Add(sum, hn::MulFixedPoint15(a1, hn::Load(d, pAcross + LANES)));
        if constexpr (VECTORS > 2)
            sum = hn::Add(sum, hn::MulFixedPoint15(a2, hn::Load(d, pAcross + 2 * LANES)));
        StoreSum<CHANNELS>(d, sum, run.pDest + i * CHANNELS);
    }
}

#if HWY_HAVE_FLOAT64

using DDouble = hn::CappedTag<double, 8>;
constexpr DDouble dDouble;
using DInt = hn::Rebind<int32_t, DDouble>;
constexpr DInt dInt;

void Locate(const TSampleLine& line) {
    const auto set = [](double d) HWY_ATTR { return hn::Set(dDouble, d); };
    const auto fixed = [&](hn::Vec<DDouble> v, double dLow, double dHigh) HWY_ATTR {
        const auto in = hn::Min(hn::Max(v, set(dLow)), set(dHigh));
        return hn::DemoteTo(dInt, hn::Add(hn::Mul(in, set(SAMPLE_PHASES)), set(0.5)));
    };
    const auto linear = [&](double d0, double d1, hn::Vec<DDouble> x)
                            HWY_ATTR { return hn::Add(set(d0), hn::Mul(set(d1), x)); };
    const size_t nStep = hn::Lanes(dDouble);
    size_t i = 0;
    for (; i + nStep <= line.nCount; i += nStep) {
        const auto index = hn::Add(hn::Iota(dDouble, static_cast<double>(line.iFirst + i)), set(0.5));
        const auto x = hn::Add(set(line.dFirst), hn::Mul(index, set(line.dStep)));
        const auto w = hn::Max(linear(line.w0, line.w1, x), set(LEAST_DIVISOR));
        const auto u = hn::Add(hn::Div(linear(line.u0, line.u1, x), w), set(line.dAcross));
        const auto v = hn::Add(hn::Div(linear(line.v0, line.v1, x), w), set(line.dDown));
        hn::StoreU(fixed(u, line.dLow, line.dHigh), dInt, line.pX + i);
        hn::StoreU(fixed(v, line.dLowDown, line.dHighDown), dInt, line.pY + i);
    }
    TSampleLine rest = line;
    rest.pX += i;
    rest.pY += i;
    rest.nCount -= i;
    rest.iFirst += i;
    PlainSampleKernels().pLocate(rest);
}

#else

void Locate(const TSampleLine& line) { PlainSampleKernels().pLocate(line); }

#endif

// Finishes as many pixels as a vector holds.
template <size_t CHANNELS, class DF>
HWY_INLINE void FinishVector(DF dFloat, const TFinishRow& row, size_t i) {
    const hn::Rebind<int16_t, DF> d16;
    const hn::Rebind<int32_t, DF> d32;
    const hn::Rebind<uint8_t, DF> d8;
    using V = hn::Vec<decltype(d16)>;
    V av[4] = {hn::Zero(d16), hn::Zero(d16), hn::Zero(d16), hn::Zero(d16)};
    const int16_t* p = row.pSamples + i * CHANNELS;
    if constexpr (CHANNELS == 4) hn::LoadInterleaved4(d16, p, av[0], av[1], av[2], av[3]);
    if constexpr (CHANNELS == 2) hn::LoadInterleaved2(d16, p, av[0], av[1]);
    if constexpr (CHANNELS == 1) av[0] = hn::LoadU(d16, p);
    const auto zero = hn::Zero(d16);
    const auto alpha = hn::Min(hn::Max(av[CHANNELS - 1], zero), hn::Set(d16, 255 * SAMPLED_LEVEL));
    const auto painted =
        hn::PromoteTo(d32, hn::ShiftRight<5>(hn::Add(alpha, hn::Set(d16, SAMPLED_LEVEL / 2))));
    hn::StoreU(hn::DemoteTo(d8, painted), d8, row.apPlanes[CHANNELS - 1] + i);
    if constexpr (CHANNELS > 1) {
        const auto quotient =
            hn::Div(hn::Set(dFloat, 255.0F), hn::ConvertTo(dFloat, hn::PromoteTo(d32, alpha)));
        const auto scale =
            hn::IfThenElseZero(hn::RebindMask(dFloat, hn::Gt(painted, hn::Zero(d32))), quotient);
        for (size_t n = 0; n + 1 < CHANNELS; ++n) {
            const auto value = hn::PromoteTo(d32, hn::Min(hn::Max(av[n], zero), alpha));
            const auto result = hn::Add(hn::Mul(hn::ConvertTo(dFloat, value), scale), hn::Set(dFloat, 0.5F));
            hn::StoreU(hn::DemoteTo(d8, hn::ConvertTo(d32, result)), d8, row.apPlanes[n] + i);
        }
    }
}

template <size_t CHANNELS>
void Finish(const TFinishRow& row) {
    static_assert(SAMPLED_LEVEL == 1 << 5);
    const hn::CappedTag<float, 16> dFloat;
    const size_t nStep = hn::Lanes(dFloat);
    size_t i = 0;
    if (!row.pCover)
        for (; i + nStep <= row.nCount; i += nStep) FinishVector<CHANNELS>(dFloat, row, i);
    uint8_t* apRest[CHANNELS];
    for (size_t n = 0; n < CHANNELS; ++n) apRest[n] = row.apPlanes[n] + i;
    const TFinishRow rest{apRest, row.pSamples + i * CHANNELS, row.pCover, row.nCount - i};
    const TSampleKernels& plain = PlainSampleKernels();
    (CHANNELS == 1 ? plain.pFinish1 : CHANNELS == 2 ? plain.pFinish2 : plain.pFinish4)(rest);
}

const TSampleKernels* GetSampleKernels() {
    static constexpr TSampleKernels kernels{Locate,    Sample<1>, Sample<2>, Sample<4>,
                                            Finish<1>, Finish<2>, Finish<4>};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetSampleKernels);

const TSampleKernels& VectorSampleKernels() { return *HWY_DYNAMIC_DISPATCH(GetSampleKernels)(); }
#endif
