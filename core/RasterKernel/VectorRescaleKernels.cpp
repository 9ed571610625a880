// The vector form of weighted resampling, one source for every instruction set that Highway knows here.
//
// A strip of as many columns as a vector holds is resampled from top to bottom. A source row's samples are
// sorted to the strip's columns once for each tap, by shuffling the bytes of a window, and kept for all rows
// of the strip that read them. Each lane sums in the order of the definition. Where no sample of a row is
// transparent, one sum of weights serves all channels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorRescaleKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/aligned_allocator.h>
#include <hwy/highway.h>

#include "core/RasterKernel/RescaleKernel.h"
#include "core/RasterKernel/RescalePlane.h"

#include <algorithm>
#include <vector>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

TRescaleKernel GetNearestKernel() { return PlainRescaleKernel(ERescaleKind::Nearest); }
TRescaleKernel GetWeighKernel() { return PlainRescaleKernel(ERescaleKind::Area); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using DByte = hn::Full128<uint8_t>;
constexpr DByte dByte;
constexpr int32_t TABLE = 16;     ///< bytes that one shuffle reads
constexpr size_t MOST_TABLES = 4; ///< of a window
constexpr size_t MOST_TAPS = 20;  ///< in each direction

// Sorts the samples of a source row to the columns of a strip of `LANES`.
template <size_t LANES>
class CWindow {
public:
    // The columns from x on.
    void Set(const TRescaleAxis& across, int32_t x, const CRect& rcFrom) {
        const auto nFirst = across.First(x);
        const int32_t nSpan = across.Last(x + static_cast<int32_t>(LANES) - 1) + 1 - nFirst;
        m_nTables = static_cast<size_t>((nSpan + TABLE - 1) / TABLE);
        const auto nRead = static_cast<int32_t>(m_nTables) * TABLE;
        m_bShuffles = m_nTables <= MOST_TABLES && nRead <= rcFrom.Width();
        const int32_t nStart = m_bShuffles ? std::min(nFirst, rcFrom.right - nRead) : nFirst;
        m_nOffset = nStart - rcFrom.left;
        for (size_t t = 0; t < across.nTaps; ++t)
            for (size_t i = 0; i < LANES; ++i) {
                const size_t iTap = t * static_cast<size_t>(across.nTo) + static_cast<size_t>(x) + i;
                const int32_t n = across.vIndex[iTap] - nStart;
                m_anIndex[t][i] = n;
                // Shuffles give 0 for an index that is not in their table.
                for (size_t k = 0; m_bShuffles && k < m_nTables; ++k)
                    m_auShuffle[t][k][i] = n / TABLE == static_cast<int32_t>(k)
                                               ? static_cast<uint8_t>(n % TABLE)
                                               : uint8_t{0x80};
            }
    }

    // Calls fnTap(t, samples) for each tap.
    template <class D8, class Function>
    HWY_INLINE void ForEachTap(D8 d8, const uint8_t* pRow, size_t nTaps, const Function& fnTap) const {
        pRow += m_nOffset;
        if (!m_bShuffles)
            Gather(d8, pRow, nTaps, fnTap);
        else if (m_nTables == 1)
            Shuffle<1>(d8, pRow, nTaps, fnTap);
        else if (m_nTables == 2)
            Shuffle<2>(d8, pRow, nTaps, fnTap);
        else if (m_nTables == 3)
            Shuffle<3>(d8, pRow, nTaps, fnTap);
        else
            Shuffle<4>(d8, pRow, nTaps, fnTap);
    }

private:
    template <class D8, class Function>
    HWY_INLINE void Gather(D8 d8, const uint8_t* pRow, size_t nTaps, const Function& fnTap) const {
        alignas(16) uint8_t au[TABLE] = {};
        for (size_t t = 0; t < nTaps; ++t) {
            for (size_t i = 0; i < LANES; ++i) au[i] = pRow[m_anIndex[t][i]];
            fnTap(t, hn::Load(d8, au));
        }
    }

    template <size_t TABLES, class D8, class Function>
    HWY_INLINE void Shuffle(D8 d8, const uint8_t* pRow, size_t nTaps, const Function& fnTap) const {
        hn::Vec<DByte> av[MOST_TABLES] = {hn::LoadU(dByte, pRow),
                                          hn::LoadU(dByte, pRow + (TABLES - 1) * TABLE), hn::Zero(dByte),
                                          hn::Zero(dByte)};
        for (size_t k = 1; k < TABLES; ++k) av[k] = hn::LoadU(dByte, pRow + k * TABLE);
        for (size_t t = 0; t < nTaps; ++t) {
            auto v = hn::TableLookupBytesOr0(av[0], hn::Load(d8, m_auShuffle[t][0]));
            for (size_t k = 1; k < TABLES; ++k)
                v = hn::Or(v, hn::TableLookupBytesOr0(av[k], hn::Load(d8, m_auShuffle[t][k])));
            fnTap(t, v);
        }
    }

    size_t m_nTables = 0;
    bool m_bShuffles = false;
    ptrdiff_t m_nOffset = 0; // of the window in the rows
    int32_t m_anIndex[MOST_TAPS][LANES];
    alignas(16) uint8_t m_auShuffle[MOST_TAPS][MOST_TABLES][TABLE];
};

const uint8_t* SourceRow(const TRescaleJob& job, size_t nChannel, int32_t y) {
    return job.apFrom[nChannel] + ptrdiff_t{y - job.rcFrom.top} * job.rcFrom.Width();
}

// Calls fnStrip(x) for strips of LANES columns that cover the destination; the last may overlap the one
// before.
template <size_t LANES, class Function>
HWY_INLINE void ForEachStrip(const TRescaleJob& job, const Function& fnStrip) {
    constexpr auto STEP = static_cast<int32_t>(LANES);
    for (int32_t x = job.rcTo.left; x < job.rcTo.right; x += STEP)
        fnStrip(std::min(x, job.rcTo.right - STEP));
}

void Nearest(const TRescaleJob& job) {
    if (job.rcTo.Width() < TABLE) return PlainRescaleKernel(ERescaleKind::Nearest)(job);
    CWindow<TABLE> window;
    const size_t nLast = job.nChannels - 1;
    ForEachStrip<TABLE>(job, [&](int32_t x) HWY_ATTR {
        window.Set(job.axes.across, x, job.rcFrom);
        ptrdiff_t nTo = x - job.rcTo.left;
        for (int32_t y = job.rcTo.top; y < job.rcTo.bottom; ++y, nTo += job.nToStride) {
            auto seen = hn::Zero(dByte);
            for (size_t n = job.nChannels; n-- > 0;)
                window.ForEachTap(dByte, SourceRow(job, n, job.axes.down.First(y)), 1,
                                  [&](size_t, hn::Vec<DByte> v) HWY_ATTR {
                                      if (n == nLast)
                                          seen = hn::VecFromMask(dByte, hn::Ne(v, hn::Zero(dByte)));
                                      else
                                          v = hn::And(v, seen);
                                      hn::StoreU(v, dByte, job.apTo[n] + nTo);
                                  });
        }
    });
}

using DFloat = hn::CappedTag<float, 16>;
constexpr DFloat dFloat;
constexpr size_t LANES = hn::MaxLanes(dFloat);
using V = hn::Vec<DFloat>;
using D32 = hn::Rebind<int32_t, DFloat>;
using D8 = hn::Rebind<uint8_t, DFloat>;
constexpr D32 d32;
constexpr D8 d8;

// A source row of a strip: `LANES` samples for each tap and channel, the channels of a tap beside each other.
struct TStripRow {
    int32_t y = -1;
    bool bSeen; ///< no sample is transparent
    bool bNone; ///< all are
    float* pSamples;
};

template <size_t CHANNELS>
HWY_INLINE void SortRow(const TRescaleJob& job, const CWindow<LANES>& window, int32_t y, TStripRow& row) {
    row.y = y;
    auto least = hn::Set(d8, 255), any = hn::Zero(d8);
    for (size_t n = 0; n < CHANNELS; ++n)
        window.ForEachTap(d8, SourceRow(job, n, y), job.axes.across.nTaps,
                          [&](size_t t, hn::Vec<D8> v) HWY_ATTR {
                              if (n == CHANNELS - 1) least = hn::Min(least, v), any = hn::Or(any, v);
                              hn::Store(hn::ConvertTo(dFloat, hn::PromoteTo(d32, v)), dFloat,
                                        row.pSamples + (t * CHANNELS + n) * LANES);
                          });
    row.bSeen = CHANNELS == 1 || hn::AllTrue(d8, hn::Ne(least, hn::Zero(d8)));
    row.bNone = hn::AllTrue(d8, hn::Eq(any, hn::Zero(d8)));
}

HWY_INLINE hn::Vec<D8> Quotient(V sum, V weights) {
    const auto quotient = hn::Add(hn::Div(sum, weights), hn::Set(dFloat, RESCALE_GUARD));
    const auto limited = hn::Min(hn::Max(quotient, hn::Zero(dFloat)), hn::Set(dFloat, 255.0F));
    const auto some = hn::Ge(weights, hn::Set(dFloat, RESCALE_LEAST_WEIGHT));
    return hn::DemoteTo(d8, hn::ConvertTo(d32, hn::IfThenElseZero(some, limited)));
}

// One row of a strip; apRows are the source rows of its taps, pAcross the weights of the strip's columns.
template <size_t CHANNELS, bool SEEN>
HWY_INLINE void WeighRow(const TRescaleJob& job, const TStripRow* const* apRows, const float* pAcross,
                         int32_t y, ptrdiff_t nTo) {
    const TRescaleAxis &across = job.axes.across, &down = job.axes.down;
    constexpr size_t ALPHA = CHANNELS - 1;
    V s0 = hn::Zero(dFloat), s1 = s0, s2 = s0, alpha = s0, weights = s0, seen = s0;
    for (size_t v = 0; v < down.nTaps; ++v) {
        const float* p = apRows[v]->pSamples;
        const float* pWeight = pAcross;
        const V wy =
            hn::Set(dFloat, down.vWeight[v * static_cast<size_t>(down.nTo) + static_cast<size_t>(y)]);
        for (size_t u = 0; u < across.nTaps; ++u, p += CHANNELS * LANES, pWeight += across.nTo) {
            V w = hn::Mul(wy, hn::LoadU(dFloat, pWeight));
            const V a = hn::Load(dFloat, p + ALPHA * LANES);
            alpha = hn::Add(alpha, hn::Mul(w, a));
            weights = hn::Add(weights, w);
            if constexpr (CHANNELS > 1 && !SEEN) {
                w = hn::IfThenElseZero(hn::Ne(a, hn::Zero(dFloat)), w);
                seen = hn::Add(seen, w);
            }
            if constexpr (CHANNELS > 1) s0 = hn::Add(s0, hn::Mul(w, hn::Load(dFloat, p)));
            if constexpr (CHANNELS > 2) {
                s1 = hn::Add(s1, hn::Mul(w, hn::Load(dFloat, p + LANES)));
                s2 = hn::Add(s2, hn::Mul(w, hn::Load(dFloat, p + 2 * LANES)));
            }
        }
    }
    hn::StoreU(Quotient(alpha, weights), d8, job.apTo[ALPHA] + nTo);
    if constexpr (SEEN) seen = weights;
    if constexpr (CHANNELS > 1) hn::StoreU(Quotient(s0, seen), d8, job.apTo[0] + nTo);
    if constexpr (CHANNELS > 2) {
        hn::StoreU(Quotient(s1, seen), d8, job.apTo[1] + nTo);
        hn::StoreU(Quotient(s2, seen), d8, job.apTo[2] + nTo);
    }
}

template <size_t CHANNELS>
void WeighStrips(const TRescaleJob& job) {
    const TRescaleAxis &across = job.axes.across, &down = job.axes.down;
    const size_t nRowFloats = across.nTaps * CHANNELS * LANES;
    const auto spSamples = hwy::AllocateAligned<float>(nRowFloats * down.nTaps);
    std::vector<TStripRow> vRows(down.nTaps);
    std::vector<const TStripRow*> vpTaps(down.nTaps);
    CWindow<LANES> window;
    ForEachStrip<LANES>(job, [&](int32_t x) HWY_ATTR {
        window.Set(across, x, job.rcFrom);
        for (size_t n = 0; n < down.nTaps; ++n)
            vRows[n].y = -1, vRows[n].pSamples = spSamples.get() + n * nRowFloats;
        ptrdiff_t nTo = x - job.rcTo.left;
        for (int32_t y = job.rcTo.top; y < job.rcTo.bottom; ++y, nTo += job.nToStride) {
            bool bSeen = true, bNone = true;
            for (size_t v = 0; v < down.nTaps; ++v) {
                const int32_t nRow = down.vIndex[v * static_cast<size_t>(down.nTo) + static_cast<size_t>(y)];
                TStripRow& row = vRows[static_cast<size_t>(nRow) % down.nTaps];
                if (row.y != nRow) SortRow<CHANNELS>(job, window, nRow, row);
                vpTaps[v] = &row;
                bSeen = bSeen && row.bSeen, bNone = bNone && row.bNone;
            }
            const float* pAcross = across.vWeight.data() + x;
            if (bNone)
                for (size_t n = 0; n < CHANNELS; ++n) hn::StoreU(hn::Zero(d8), d8, job.apTo[n] + nTo);
            else if (bSeen)
                WeighRow<CHANNELS, true>(job, vpTaps.data(), pAcross, y, nTo);
            else
                WeighRow<CHANNELS, false>(job, vpTaps.data(), pAcross, y, nTo);
        }
    });
}

void Weigh(const TRescaleJob& job) {
    if (job.rcTo.Width() < static_cast<int32_t>(LANES) ||
        std::max(job.axes.across.nTaps, job.axes.down.nTaps) > MOST_TAPS)
        return PlainRescaleKernel(ERescaleKind::Area)(job);
    (job.nChannels == 1 ? WeighStrips<1> : job.nChannels == 2 ? WeighStrips<2> : WeighStrips<4>)(job);
}

TRescaleKernel GetNearestKernel() { return Nearest; }
TRescaleKernel GetWeighKernel() { return Weigh; }

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetNearestKernel);
HWY_EXPORT(GetWeighKernel);

TRescaleKernel VectorNearestKernel() { return HWY_DYNAMIC_DISPATCH(GetNearestKernel)(); }
TRescaleKernel VectorWeighKernel() { return HWY_DYNAMIC_DISPATCH(GetWeighKernel)(); }
#endif
