// The vector form of integer means, one source for every instruction set that Highway knows here.
//
// In cells of two columns the bytes of each pair are summed in 16 bits, in which the division is a
// multiplication, too. Otherwise the columns of a row of cells are summed in 16 bits, then the columns of
// each cell in 32. A sum plus a half times the reciprocal of the count gives the exact quotient after
// truncation: for counts up to MOST_SAMPLES the error of the product is less than half of 1 / count.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorMeanKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "core/RasterKernel/RescaleKernel.h"

#include <algorithm>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

TRescaleKernel GetMeanKernel() { return PlainRescaleKernel(ERescaleKind::Mean); }

#else

namespace hn = hwy::HWY_NAMESPACE;

constexpr hn::CappedTag<uint16_t, 32> d16;
constexpr hn::RepartitionToWide<decltype(d16)> d32;
constexpr hn::Rebind<uint8_t, decltype(d16)> dHalf8;
constexpr hn::Rebind<uint8_t, decltype(d32)> d8;
constexpr hn::Rebind<int32_t, decltype(d32)> dInt;
constexpr hn::Rebind<float, decltype(d32)> dFloat;
constexpr size_t LANES = hn::MaxLanes(d32);
constexpr size_t MOST_ROWS = 257; ///< of bytes, whose sum fits 16 bits
constexpr size_t MOST_SAMPLES = 4096;
constexpr size_t COLUMNS = 1536; ///< columns at once
constexpr size_t CELLS = 256;    ///< cells at once

constexpr hn::Repartition<uint8_t, decltype(d16)> dBytes;
constexpr int32_t AHEAD = 12;   ///< rows that are fetched before they are read
constexpr size_t PAIR_ROWS = 3; ///< of cells of two columns, whose counts a table of 8 reciprocals covers

// In units of 1 / 2^15, rounded up: for counts c below 8 the error of a product is less than 1 / c.
constexpr uint16_t ReciprocalOf(size_t nCount) {
    return static_cast<uint16_t>(nCount ? (32768 + nCount - 1) / nCount : 0);
}
HWY_INLINE hn::Vec<decltype(d16)> Divided(hn::Vec<decltype(d16)> sum, hn::Vec<decltype(d16)> reciprocal) {
    return hn::MulHigh(hn::Add(sum, sum), reciprocal);
}

// As many cells of two columns and nRows rows as d16 has lanes.
template <size_t CHANNELS, bool SEEN>
HWY_INLINE void MeanPairs(uint8_t* const* apTo, ptrdiff_t nTo, const uint8_t* const* apFrom, ptrdiff_t nFrom,
                          ptrdiff_t nStride, size_t nRows) {
    constexpr size_t ALPHA = CHANNELS - 1;
    const auto zero = hn::Zero(d16);
    auto s0 = zero, s1 = zero, s2 = zero, alpha = zero, count = zero;
    for (size_t v = 0; v < nRows; ++v, nFrom += nStride) {
        const auto a = hn::LoadU(dBytes, apFrom[ALPHA] + nFrom);
        const auto seen = hn::Ne(a, hn::Zero(dBytes));
        const auto add = [&](auto& sum, hn::Vec<decltype(dBytes)> bytes) HWY_ATTR {
            const auto pairs = hn::BitCast(d16, bytes);
            sum = hn::Add(sum, hn::Add(hn::And(pairs, hn::Set(d16, 0xFF)), hn::ShiftRight<8>(pairs)));
        };
        const auto color = [&](size_t n) HWY_ATTR {
            const auto bytes = hn::LoadU(dBytes, apFrom[n] + nFrom);
            return SEEN ? bytes : hn::IfThenElseZero(seen, bytes);
        };
        add(alpha, a);
        if constexpr (!SEEN) add(count, hn::IfThenElseZero(seen, hn::Set(dBytes, 1)));
        if constexpr (CHANNELS > 1) add(s0, color(0));
        if constexpr (CHANNELS > 2) add(s1, color(1)), add(s2, color(2));
    }
    const auto all = hn::Set(d16, ReciprocalOf(2 * nRows));
    auto reciprocal = all;
    if constexpr (!SEEN) {
        alignas(16) static constexpr uint16_t RECIPROCALS[8] = {
            ReciprocalOf(0), ReciprocalOf(1), ReciprocalOf(2), ReciprocalOf(3),
            ReciprocalOf(4), ReciprocalOf(5), ReciprocalOf(6), ReciprocalOf(7)};
        const auto index = hn::Add(hn::Mul(count, hn::Set(d16, 0x0202)), hn::Set(d16, 0x0100));
        reciprocal = hn::TableLookupBytes(hn::LoadDup128(d16, RECIPROCALS), index);
    }
    const auto store = [&](size_t n, hn::Vec<decltype(d16)> sum, hn::Vec<decltype(d16)> by) HWY_ATTR {
        const hn::RebindToSigned<decltype(d16)> dSigned;
        hn::StoreU(hn::DemoteTo(dHalf8, hn::BitCast(dSigned, Divided(sum, by))), dHalf8, apTo[n] + nTo);
    };
    if constexpr (CHANNELS > 1) store(0, s0, reciprocal);
    if constexpr (CHANNELS > 2) store(1, s1, reciprocal), store(2, s2, reciprocal);
    store(ALPHA, alpha, all);
}

template <size_t CHANNELS>
void MeanPairRows(const TRescaleJob& job) {
    constexpr auto STEP = static_cast<ptrdiff_t>(hn::MaxLanes(d16));
    const ptrdiff_t nStride = job.rcFrom.Width(), nWidth = job.rcTo.Width();
    const size_t nRows = job.axes.down.nTaps;
    for (int32_t y = job.rcTo.top; y < job.rcTo.bottom; ++y) {
        const ptrdiff_t nRow = (job.axes.down.First(y) - job.rcFrom.top) * nStride +
                               job.axes.across.First(job.rcTo.left) - job.rcFrom.left;
        for (ptrdiff_t i = 0; i < nWidth; i += STEP) {
            const ptrdiff_t x = std::min(i, nWidth - STEP), nFrom = nRow + 2 * x;
            const ptrdiff_t nTo = (y - job.rcTo.top) * job.nToStride + x;
            // The rows of a tile's planes are too short for the machine to foresee all of them.
            const ptrdiff_t nAhead = std::min(AHEAD, job.rcFrom.bottom - job.axes.down.Last(y) - 1) * nStride;
            for (size_t n = 0; n < CHANNELS; ++n)
                for (size_t v = 0; v < nRows; ++v)
                    hwy::Prefetch(job.apFrom[n] + nFrom + nAhead + static_cast<ptrdiff_t>(v) * nStride);
            auto least = hn::Set(dBytes, 255);
            for (size_t v = 0; CHANNELS > 1 && v < nRows; ++v) {
                const uint8_t* pAlpha =
                    job.apFrom[CHANNELS - 1] + nFrom + static_cast<ptrdiff_t>(v) * nStride;
                least = hn::Min(least, hn::LoadU(dBytes, pAlpha));
            }
            if (CHANNELS == 1 || hn::AllTrue(dBytes, hn::Ne(least, hn::Zero(dBytes))))
                MeanPairs<CHANNELS, true>(job.apTo, nTo, job.apFrom, nFrom, nStride, nRows);
            else
                MeanPairs<CHANNELS, CHANNELS == 1>(job.apTo, nTo, job.apFrom, nFrom, nStride, nRows);
        }
    }
}

// Sums of a row of cells. The channels are followed by the count of samples whose alpha is not 0.
template <size_t CHANNELS>
struct TCellRow {
    static constexpr size_t SUMS = CHANNELS == 1 ? 1 : CHANNELS + 1;
    alignas(64) uint16_t aauColumns[SUMS][COLUMNS];
    alignas(64) uint32_t aauCells[SUMS][CELLS + 2 * LANES];
};

// Sums nRows rows of nColumns columns, which is not less than a vector of d16 holds.
template <size_t CHANNELS>
HWY_INLINE void SumColumns(TCellRow<CHANNELS>& cells, const uint8_t* const* apFrom, ptrdiff_t nStride,
                           size_t nRows, size_t nColumns) {
    constexpr size_t STEP = hn::MaxLanes(d16), ALPHA = CHANNELS - 1;
    const auto one = hn::Set(d16, 1);
    for (size_t i = 0; i < nColumns; i += STEP) {
        const size_t x = std::min(i, nColumns - STEP);
        auto s0 = hn::Zero(d16), s1 = s0, s2 = s0, alpha = s0, count = s0;
        const uint8_t* ap[CHANNELS];
        for (size_t n = 0; n < CHANNELS; ++n) ap[n] = apFrom[n] + x;
        for (size_t v = 0; v < nRows; ++v) {
            const auto load = [&](size_t n) HWY_ATTR {
                const auto values = hn::PromoteTo(d16, hn::LoadU(dHalf8, ap[n]));
                ap[n] += nStride;
                return values;
            };
            const auto a = load(ALPHA);
            alpha = hn::Add(alpha, a);
            const auto seen = hn::Ne(a, hn::Zero(d16));
            if constexpr (CHANNELS > 1) {
                count = hn::Add(count, hn::IfThenElseZero(seen, one));
                s0 = hn::Add(s0, hn::IfThenElseZero(seen, load(0)));
            }
            if constexpr (CHANNELS > 2) {
                s1 = hn::Add(s1, hn::IfThenElseZero(seen, load(1)));
                s2 = hn::Add(s2, hn::IfThenElseZero(seen, load(2)));
            }
        }
        hn::StoreU(alpha, d16, cells.aauColumns[ALPHA] + x);
        if constexpr (CHANNELS > 1) {
            hn::StoreU(s0, d16, cells.aauColumns[0] + x);
            hn::StoreU(count, d16, cells.aauColumns[CHANNELS] + x);
        }
        if constexpr (CHANNELS > 2) {
            hn::StoreU(s1, d16, cells.aauColumns[1] + x);
            hn::StoreU(s2, d16, cells.aauColumns[2] + x);
        }
    }
}

// Sums the nX columns of each of nCells cells.
HWY_INLINE void SumCells(uint32_t* pCells, const uint16_t* pColumns, size_t nX, size_t nCells) {
    for (size_t i = 0; i < nCells; ++i, pColumns += nX) {
        uint32_t uSum = 0;
        for (size_t u = 0; u < nX; ++u) uSum += pColumns[u];
        pCells[i] = uSum;
    }
}

template <size_t CHANNELS>
HWY_INLINE void Divide(const TCellRow<CHANNELS>& cells, uint8_t* const* apTo, ptrdiff_t nTo, size_t nSamples,
                       size_t nCells) {
    constexpr size_t ALPHA = CHANNELS - 1;
    const auto whole = hn::Set(dFloat, 1 / static_cast<float>(nSamples));
    uint8_t aauOut[CHANNELS][CELLS + LANES];
    const auto values = [&](size_t n, size_t i) HWY_ATTR {
        return hn::ConvertTo(dFloat, hn::BitCast(dInt, hn::Load(d32, cells.aauCells[n] + i)));
    };
    for (size_t i = 0; i < nCells; i += LANES) {
        const auto divide = [&](size_t n, hn::Vec<decltype(dFloat)> reciprocal) HWY_ATTR {
            const auto result = hn::Mul(hn::Add(values(n, i), hn::Set(dFloat, 0.5F)), reciprocal);
            hn::StoreU(hn::DemoteTo(d8, hn::ConvertTo(dInt, result)), d8, aauOut[n] + i);
        };
        divide(ALPHA, whole);
        if constexpr (CHANNELS > 1) {
            const auto count = values(CHANNELS, i);
            const auto reciprocal =
                hn::IfThenElseZero(hn::Gt(count, hn::Zero(dFloat)), hn::Div(hn::Set(dFloat, 1), count));
            for (size_t n = 0; n < ALPHA; ++n) divide(n, reciprocal);
        }
    }
    for (size_t n = 0; n < CHANNELS; ++n) std::memcpy(apTo[n] + nTo, aauOut[n], nCells);
}

template <size_t CHANNELS>
void MeanRows(const TRescaleJob& job) {
    const size_t nX = job.axes.across.nTaps, nY = job.axes.down.nTaps;
    const auto nWidth = static_cast<size_t>(job.rcTo.Width());
    const size_t nCells = std::min({nWidth, CELLS, COLUMNS / nX});
    TCellRow<CHANNELS> cells{};
    const ptrdiff_t nStride = job.rcFrom.Width();
    for (int32_t y = job.rcTo.top; y < job.rcTo.bottom; ++y)
        for (size_t i = 0; i < nWidth; i += nCells) {
            const size_t x = std::min(i, nWidth - nCells); // the last cells may overlap those before
            const auto nColumn = static_cast<ptrdiff_t>(x * nX);
            const ptrdiff_t nFrom = (job.axes.down.First(y) - job.rcFrom.top) * nStride + nColumn +
                                    job.axes.across.First(job.rcTo.left) - job.rcFrom.left;
            const uint8_t* ap[CHANNELS];
            for (size_t n = 0; n < CHANNELS; ++n) ap[n] = job.apFrom[n] + nFrom;
            SumColumns<CHANNELS>(cells, ap, nStride, nY, nCells * nX);
            for (size_t n = 0; n < cells.SUMS; ++n)
                SumCells(cells.aauCells[n], cells.aauColumns[n], nX, nCells);
            const ptrdiff_t nTo = (y - job.rcTo.top) * job.nToStride + static_cast<ptrdiff_t>(x);
            Divide<CHANNELS>(cells, job.apTo, nTo, nX * nY, nCells);
        }
}

void Mean(const TRescaleJob& job) {
    const size_t nX = job.axes.across.nTaps, nY = job.axes.down.nTaps;
    const size_t nColumns = nX * static_cast<size_t>(job.rcTo.Width());
    if (nColumns < hn::MaxLanes(d16) || nX > COLUMNS / 2 || nY > MOST_ROWS || nX * nY > MOST_SAMPLES)
        return PlainRescaleKernel(ERescaleKind::Mean)(job);
    if (nX == 2 && nY <= PAIR_ROWS && job.rcTo.Width() >= static_cast<int32_t>(hn::MaxLanes(d16)))
        (job.nChannels == 1 ? MeanPairRows<1> : job.nChannels == 2 ? MeanPairRows<2> : MeanPairRows<4>)(job);
    else
        (job.nChannels == 1 ? MeanRows<1> : job.nChannels == 2 ? MeanRows<2> : MeanRows<4>)(job);
}

TRescaleKernel GetMeanKernel() { return Mean; }

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetMeanKernel);

TRescaleKernel VectorMeanKernel() { return HWY_DYNAMIC_DISPATCH(GetMeanKernel)(); }
#endif
