// The vector form of the crossing sums, one source for every instruction set that Highway knows here.
//
// Sixteen crossings, the rule, are one vector of bytes once they are counted from their first pixel: what
// saturates lies behind the pixels that are summed. The sum of a pixel is a sum of bytes.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorCrossingKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/CrossingKernel.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

const TCrossingKernels* GetCrossingKernels() { return &PlainCrossingKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using D32 = hn::Full128<int32_t>;
using D16 = hn::Full128<int16_t>;
using D8 = hn::Full128<uint8_t>;
using D64 = hn::Full128<uint64_t>;

// A crossing's whole cells lie in the upper halves of its 64 bits.
void CrossLines(int32_t* pCells, const TCrossingLine* pLines, size_t nLines) {
    const hn::CappedTag<int64_t, 8> d;
    const hn::Repartition<int32_t, decltype(d)> d32;
    const hn::Repartition<uint32_t, decltype(d)> dHalves;
    const size_t nLanes = hn::Lanes(d);
    const auto iota = hn::BitCast(dHalves, hn::Iota(d, 0));
    // A lane's index times `n`, by its halves, because 64-bit products are slow.
    const auto timesLane = [&](int64_t n) HWY_ATTR {
        return hn::BitCast(d, hn::MulEven(iota, hn::BitCast(dHalves, hn::Set(d, n))));
    };
    for (const TCrossingLine* pEnd = pLines + nLines; pLines != pEnd; ++pLines) {
        const int64_t nSlope = pLines->GetSlope();
        const int64_t nStep = pLines->GetStep(nSlope);
        const auto steps = hn::Add(timesLane(nStep), hn::ShiftLeft<32>(timesLane(nStep >> 32)));
        const auto next = hn::Set(d, static_cast<int64_t>(nLanes) * nStep);
        auto first = hn::Add(hn::Set(d, pLines->GetFirst(nSlope)), steps);
        for (size_t n = 0; n < pLines->nCount; n += 2 * nLanes) {
            const auto second = hn::Add(first, next);
            const auto cells = hn::ConcatOdd(d32, hn::BitCast(d32, second), hn::BitCast(d32, first));
            hn::StoreU(hn::ShiftRight<CROSSING_BITS - 32>(cells), d32, pCells + n);
            first = hn::Add(second, next);
        }
        pCells += pLines->nCount;
    }
}

// Adds the cells from the crossings on in pixel `k`.
template <int k>
HWY_INLINE hn::Vec<D64> AddPixel(hn::Vec<D64> sums, hn::Vec<D8> cells) {
    const D8 d8;
    const auto before = hn::Set(d8, static_cast<uint8_t>((k + 1) * CROSSING_CELLS));
    const auto set = hn::Min(hn::SaturatedSub(before, cells), hn::Set(d8, uint8_t{CROSSING_CELLS}));
    return hn::Add(sums, hn::ShiftLeft<16 * k>(hn::SumsOf8(set)));
}

HWY_INLINE TCrossingSums SumSixteen(const int32_t* pCells) {
    const D32 d;
    const D16 d16;
    const D8 d8;
    const D64 d64;
    const hn::Half<D8> d8Half;
    const auto a = hn::LoadU(d, pCells), b = hn::LoadU(d, pCells + 4);
    const auto e = hn::LoadU(d, pCells + 8), f = hn::LoadU(d, pCells + 12);
    TCrossingSums sums;
    sums.nMin = hn::GetLane(hn::MinOfLanes(d, hn::Min(hn::Min(a, b), hn::Min(e, f))));
    sums.nMax = hn::GetLane(hn::MaxOfLanes(d, hn::Max(hn::Max(a, b), hn::Max(e, f))));
    const auto left = hn::Set(d, sums.nMin & -CROSSING_CELLS);
    // The order of lanes does not affect a sum.
    const auto low = hn::ReorderDemote2To(d16, hn::Sub(a, left), hn::Sub(b, left));
    const auto high = hn::ReorderDemote2To(d16, hn::Sub(e, left), hn::Sub(f, left));
    const auto cells = hn::Combine(d8, hn::DemoteTo(d8Half, high), hn::DemoteTo(d8Half, low));
    auto pixels = AddPixel<0>(hn::Zero(d64), cells);
    pixels = AddPixel<1>(pixels, cells);
    pixels = AddPixel<2>(pixels, cells);
    pixels = AddPixel<3>(pixels, cells);
    sums.uSums = hn::GetLane(hn::SumOfLanes(d64, pixels));
    return sums;
}

// Fewer than sixteen are completed by copies of the first, whose share of the sums is then subtracted: no
// 16 bits of the sums become negative.
TCrossingSums Sum(const int32_t* pCells, size_t nCount) {
    if (nCount == 16) return SumSixteen(pCells);
    int32_t anCells[16];
    for (size_t n = 0; n < 16; ++n) anCells[n] = pCells[n < nCount ? n : 0];
    TCrossingSums sums = SumSixteen(anCells);
    const int32_t nFirst = pCells[0] - (sums.nMin & -CROSSING_CELLS);
    uint64_t uFirst = 0;
    for (int32_t k = 0; k < CROSSING_PIXELS; ++k) {
        const int32_t nSet = std::clamp((k + 1) * CROSSING_CELLS - nFirst, 0, CROSSING_CELLS);
        uFirst |= static_cast<uint64_t>(nSet) << (16 * k);
    }
    sums.uSums -= uFirst * (16 - nCount);
    return sums;
}

void SumBlocks(TCrossingSums* pSums, const int32_t* pCells, ptrdiff_t nStep, size_t nBlocks) {
    for (size_t n = 0; n < nBlocks; ++n) pSums[n] = SumSixteen(pCells + static_cast<ptrdiff_t>(n) * nStep);
}

const TCrossingKernels* GetCrossingKernels() {
    static constexpr TCrossingKernels kernels{CrossLines, Sum, SumBlocks};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetCrossingKernels);

const TCrossingKernels& VectorCrossingKernels() { return *HWY_DYNAMIC_DISPATCH(GetCrossingKernels)(); }
#endif
