// The vector form of weighted means, one source for every instruction set that Highway knows here.
//
// A strip has as many columns as a vector has lanes. The samples of a source row are sorted to the columns
// for each tap (CWindow), and kept for all rows of the strip that read them. Each lane sums in the order of
// the definition.
//
// Few results need these sums. Means of a source row, which serve all rows of the strip that read it, and
// their means down give a guess whose error is bounded (TSlack). Only where a guess is so close to an
// integer that the definition may truncate it to another does a row of the strip make the sums.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorWeighKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/aligned_allocator.h>
#include <hwy/highway.h>

#include "core/RasterKernel/RescalePlane.h"
#include "core/RasterKernel/RescaleWindow-inl.h"

#include <algorithm>
#include <vector>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

TRescaleKernel GetWeighKernel() { return PlainRescaleKernel(ERescaleKind::Area); }

#else

// The part of a source row that a strip reads.
struct TStripRow {
    bool bSorted;    ///< pSamples is valid
    bool bSeen;      ///< no sample is transparent
    bool bNone;      ///< all are
    float* pSamples; ///< if bSorted: LANES samples for each tap and channel, the channels side by side
    float* pMeans;   ///< LANES means of each channel's visible samples, and then the part that is visible
};

constexpr size_t STRIPS = 128 / LANES; ///< side by side, so that rows are written in pieces of 128 pixels
struct TSourceRow {
    int32_t y;
    bool bSeen; ///< in all strips
    TStripRow aStrips[STRIPS];
};

// Guesses are added to GUESS_BASE, so that the last 15 bits of the mantissa are the fraction, and the level
// is above.
constexpr float GUESS_BASE = 256;
constexpr int GUESS_BITS = 15;
constexpr float GUESS_UNIT = 1.0F / (1 << GUESS_BITS);
constexpr int32_t GUARD_UNITS = 32; ///< the guard, by which guesses of flat areas are above an integer
constexpr float LEAST_VISIBLE = 1.0F / 1024; ///< of a guess, far from RESCALE_LEAST_WEIGHT

// The most by which a guess can differ from the definition's quotient and guard: half a unit of the last
// place of 255 for each rounding, of which each term of a sum meets as many as there are terms. The
// definition has two sums of all taps; `nMore` counts the roundings of the guess beside one in each direction
// for each tap. This holds where no weight is negative.
struct TSlack {
    int32_t nUnits;  ///< of GUESS_UNIT
    int32_t nUnsure; ///< fractions below are unsure: twice the slack, because it was added
    float fBase;     ///< added to a guess, with the guard and the slack
    bool bUseful;    ///< guesses of flat areas are sure

    TSlack(const TRescaleAxes& axes, size_t nMore) {
        const size_t nTaps = axes.across.nTaps + axes.down.nTaps + 2 * axes.across.nTaps * axes.down.nTaps;
        constexpr float ROUNDING = 255 * 5.9604645e-08F * 1.01F / GUESS_UNIT;
        nUnits = static_cast<int32_t>(static_cast<float>(nTaps + nMore) * ROUNDING + 0.5F) + 1;
        nUnsure = 2 * nUnits;
        fBase = GUESS_BASE + static_cast<float>(GUARD_UNITS + nUnits) * GUESS_UNIT;
        bUseful = axes.across.bNoneNegative && axes.down.bNoneNegative && nUnits < GUARD_UNITS;
    }
};

// With TAPS not 0 both axes have as many taps.
template <size_t CHANNELS, size_t TAPS>
class CWeigher {
public:
    explicit CWeigher(const TRescaleJob& job)
        : m_job(job), m_across(job.axes.across), m_down(job.axes.down), m_seenSlack(job.axes, 5),
          m_mixedSlack(job.axes, m_across.nTaps + m_down.nTaps + 9), m_vRows(m_down.nTaps) {
        const size_t nStripFloats = (m_across.nTaps * CHANNELS + PARTS) * LANES;
        m_spFloats = hwy::AllocateAligned<float>(nStripFloats * STRIPS * m_down.nTaps);
        float* p = m_spFloats.get();
        for (TSourceRow& row : m_vRows)
            for (TStripRow& strip : row.aStrips) {
                strip.pMeans = p;
                strip.pSamples = p + PARTS * LANES;
                p += nStripFloats;
            }
    }

    void Run() {
        const CRect& rcTo = m_job.rcTo;
        for (int32_t x = rcTo.left; x < rcTo.right; x += static_cast<int32_t>(STRIPS * LANES)) {
            // The last strip may overlap the one before.
            for (m_nStrips = 0; m_nStrips < STRIPS && x + Column(m_nStrips) < rcTo.right; ++m_nStrips) {
                m_anX[m_nStrips] = std::min(x + Column(m_nStrips), rcTo.right - Column(1));
                m_aWindows[m_nStrips].Set(m_across, m_anX[m_nStrips], m_job.rcFrom, true);
                for (size_t t = 0; t < TapsOf(m_across); ++t)
                    std::copy_n(m_across.vShare.data() + t * static_cast<size_t>(m_across.nTo) +
                                    m_anX[m_nStrips],
                                LANES, m_aafShares[m_nStrips][t]);
            }
            for (TSourceRow& row : m_vRows) row.y = -1;
            for (int32_t y = rcTo.top; y < rcTo.bottom; ++y) Row(y);
        }
    }

private:
    static constexpr size_t ALPHA = CHANNELS - 1;
    static constexpr size_t PARTS = CHANNELS == 1 ? 1 : CHANNELS + 1;
    using DWord = hn::Rebind<uint32_t, DFloat>;
    static constexpr DWord dWord{};

    // A tap of the current destination row.
    struct TTap {
        float fWeight;
        float fShare;
        TSourceRow* pRow;
    };

    static size_t TapsOf(const TRescaleAxis& axis) { return TAPS ? TAPS : axis.nTaps; }
    static constexpr int32_t Column(size_t nStrip) { return static_cast<int32_t>(nStrip * LANES); }

    void Row(int32_t y) {
        bool bAllSeen = true;
        for (size_t v = 0; v < TapsOf(m_down); ++v) {
            const size_t i = v * static_cast<size_t>(m_down.nTo) + static_cast<size_t>(y);
            const int32_t nRow = m_down.vIndex[i];
            TSourceRow& row = m_vRows[static_cast<size_t>(nRow) % TapsOf(m_down)];
            m_aTaps[v] = {m_down.vWeight[i], m_down.vShare[i], &row};
            if (row.y != nRow) Load(row, nRow);
            bAllSeen = bAllSeen && row.bSeen;
        }
        const ptrdiff_t nTo = (y - m_job.rcTo.top) * m_job.nToStride - m_job.rcTo.left;
        for (size_t n = 0; n < CHANNELS; ++n) m_apTo[n] = m_job.apTo[n] + nTo;
        for (size_t s = 0; s < m_nStrips; ++s) {
            bool bSeen = bAllSeen, bNone = !bAllSeen;
            for (size_t v = 0; !bAllSeen && v < TapsOf(m_down); ++v) {
                const TStripRow& strip = m_aTaps[v].pRow->aStrips[s];
                bSeen = (v == 0 || bSeen) && strip.bSeen, bNone = bNone && strip.bNone;
            }
            if (bNone) {
                for (uint8_t* p : m_apTo) hn::StoreU(hn::Zero(d8), d8, p + m_anX[s]);
                continue;
            }
            if constexpr (CHANNELS > 1)
                if (!bSeen) {
                    Strip<false>(s);
                    continue;
                }
            Strip<true>(s);
        }
    }

    void Load(TSourceRow& row, int32_t y) {
        row.y = y;
        row.bSeen = true;
        const uint8_t* apRows[CHANNELS];
        for (size_t n = 0; n < CHANNELS; ++n) apRows[n] = SourceRow(m_job, n, y);
        for (size_t s = 0; s < m_nStrips; ++s) {
            const auto load = [&]<class Row>() HWY_ATTR { LoadStrip<Row>(apRows, row.aStrips[s], s); };
            if (m_aWindows[s].IsNarrow())
                load.template operator()<TNarrow>();
            else
                m_aWindows[s].WithRow(load);
            row.bSeen = row.bSeen && row.aStrips[s].bSeen;
        }
    }

    template <class Row>
    HWY_INLINE void LoadStrip(const uint8_t* const* apRows, TStripRow& row, size_t s) {
        const CFloatRow<Row> alpha(apRows[ALPHA], m_aWindows[s]);
        row.bSorted = false;
        row.bNone = alpha.IsNone();
        row.bSeen = CHANNELS == 1 || alpha.IsSeen();
        if (row.bSeen ? m_seenSlack.bUseful : m_mixedSlack.bUseful)
            row.bSeen ? MakeMeans<true>(alpha, apRows, row, s) : MakeMeans<false>(alpha, apRows, row, s);
    }

    // Makes the taps of all samples of a strip.
    HWY_NOINLINE void Sort(TSourceRow& source, size_t s) {
        const CWindow<LANES>& window = m_aWindows[s];
        const auto sort = [&]<class Row>() HWY_ATTR {
            for (size_t n = 0; n < CHANNELS; ++n) {
                const CFloatRow<Row> row(SourceRow(m_job, n, source.y), window);
                for (size_t t = 0; t < TapsOf(m_across); ++t)
                    hn::Store(row.Get(window, t), dFloat,
                              source.aStrips[s].pSamples + (t * CHANNELS + n) * LANES);
            }
        };
        if (window.IsNarrow())
            sort.template operator()<TNarrow>();
        else
            window.WithRow(sort);
        source.aStrips[s].bSorted = true;
    }

    template <bool SEEN, class Row>
    HWY_INLINE void MakeMeans(const CFloatRow<Row>& alpha, const uint8_t* const* apRows, TStripRow& row,
                              size_t s) {
        const CWindow<LANES>& window = m_aWindows[s];
        const CFloatRow<Row> c0(apRows[0], window), c1(apRows[CHANNELS / 4], window),
            c2(apRows[CHANNELS / 2], window);
        V s0 = hn::Zero(dFloat), s1 = s0, s2 = s0, mean = s0, visible = s0;
        for (size_t t = 0; t < TapsOf(m_across); ++t) {
            V share = hn::Load(dFloat, m_aafShares[s][t]);
            const V a = alpha.Get(window, t);
            mean = hn::MulAdd(share, a, mean);
            if constexpr (!SEEN) {
                share = hn::IfThenElseZero(hn::Ne(a, hn::Zero(dFloat)), share);
                visible = hn::Add(visible, share);
            }
            if constexpr (CHANNELS > 1) s0 = hn::MulAdd(share, c0.Get(window, t), s0);
            if constexpr (CHANNELS > 2) {
                s1 = hn::MulAdd(share, c1.Get(window, t), s1);
                s2 = hn::MulAdd(share, c2.Get(window, t), s2);
            }
        }
        float* p = row.pMeans;
        hn::Store(mean, dFloat, p + ALPHA * LANES);
        if constexpr (CHANNELS > 1) {
            hn::Store(s0, dFloat, p);
            hn::Store(SEEN ? hn::Set(dFloat, 1) : visible, dFloat, p + CHANNELS * LANES);
        }
        if constexpr (CHANNELS > 2) {
            hn::Store(s1, dFloat, p + LANES);
            hn::Store(s2, dFloat, p + 2 * LANES);
        }
    }

    template <bool SEEN>
    HWY_INLINE void Strip(size_t s) {
        const TSlack& slack = SEEN ? m_seenSlack : m_mixedSlack;
        if (!slack.bUseful || !Guess<SEEN>(s, slack)) Weigh<SEEN>(s);
    }

    // False if one of the results could be another than the definition's.
    template <bool SEEN>
    HWY_INLINE bool Guess(size_t s, const TSlack& slack) {
        constexpr size_t SUMS = SEEN ? CHANNELS : PARTS;
        V av[SUMS];
        for (size_t n = 0; n < SUMS; ++n)
            av[n] = hn::Mul(hn::Set(dFloat, m_aTaps[0].fShare),
                            hn::Load(dFloat, m_aTaps[0].pRow->aStrips[s].pMeans + n * LANES));
        for (size_t v = 1; v < TapsOf(m_down); ++v) {
            const V share = hn::Set(dFloat, m_aTaps[v].fShare);
            const float* pMeans = m_aTaps[v].pRow->aStrips[s].pMeans;
            for (size_t n = 0; n < SUMS; ++n)
                av[n] = hn::MulAdd(share, hn::Load(dFloat, pMeans + n * LANES), av[n]);
        }
        bool bSure = true;
        if constexpr (!SEEN) {
            const V visible = av[CHANNELS];
            const auto some = hn::Gt(visible, hn::Zero(dFloat));
            bSure = hn::AllFalse(dFloat, hn::And(some, hn::Lt(visible, hn::Set(dFloat, LEAST_VISIBLE))));
            const V reciprocal = hn::IfThenElseZero(some, hn::Div(hn::Set(dFloat, 1), visible));
            for (size_t n = 0; n < ALPHA; ++n) av[n] = hn::Mul(av[n], reciprocal);
        }
        const V base = hn::Set(dFloat, slack.fBase);
        const auto fraction = hn::Set(dWord, (1 << GUESS_BITS) - 1);
        hn::Vec<DWord> au[CHANNELS];
        auto least = fraction;
        for (size_t n = 0; n < CHANNELS; ++n) {
            au[n] = hn::BitCast(dWord, hn::Add(av[n], base));
            least = hn::Min(least, hn::And(au[n], fraction));
        }
        const auto unsure = hn::Set(d32, slack.nUnsure);
        if (!bSure || !hn::AllFalse(d32, hn::Lt(hn::BitCast(d32, least), unsure))) return false;
        Store<GUESS_BITS>(au, m_anX[s]);
        return true;
    }

    template <bool SEEN>
    HWY_NOINLINE void Weigh(size_t s) {
        V av[CHANNELS];
        for (V& v : av) v = hn::Zero(dFloat);
        V weights = hn::Zero(dFloat), visible = weights;
        for (size_t v = 0; v < TapsOf(m_down); ++v) {
            const TTap& tap = m_aTaps[v];
            if (!tap.pRow->aStrips[s].bSorted) Sort(*tap.pRow, s);
            const float* p = tap.pRow->aStrips[s].pSamples;
            const float* pWeight = m_across.vWeight.data() + m_anX[s];
            const V wy = hn::Set(dFloat, tap.fWeight);
            for (size_t u = 0; u < TapsOf(m_across); ++u, p += CHANNELS * LANES, pWeight += m_across.nTo) {
                V w = hn::Mul(wy, hn::LoadU(dFloat, pWeight));
                const V alpha = hn::Load(dFloat, p + ALPHA * LANES);
                av[ALPHA] = hn::Add(av[ALPHA], hn::Mul(w, alpha));
                weights = hn::Add(weights, w);
                if constexpr (!SEEN) {
                    w = hn::IfThenElseZero(hn::Ne(alpha, hn::Zero(dFloat)), w);
                    visible = hn::Add(visible, w);
                }
                for (size_t n = 0; n < ALPHA; ++n)
                    av[n] = hn::Add(av[n], hn::Mul(w, hn::Load(dFloat, p + n * LANES)));
            }
        }
        hn::Vec<DWord> au[CHANNELS];
        au[ALPHA] = Quotient(av[ALPHA], weights);
        for (size_t n = 0; n < ALPHA; ++n) au[n] = Quotient(av[n], SEEN ? weights : visible);
        Store<0>(au, m_anX[s]);
    }

    static HWY_INLINE hn::Vec<DWord> Quotient(V sum, V weights) {
        const auto quotient = hn::Add(hn::Div(sum, weights), hn::Set(dFloat, RESCALE_GUARD));
        const auto limited = hn::Min(hn::Max(quotient, hn::Zero(dFloat)), hn::Set(dFloat, 255.0F));
        const auto some = hn::Ge(weights, hn::Set(dFloat, RESCALE_LEAST_WEIGHT));
        return hn::BitCast(dWord, hn::ConvertTo(d32, hn::IfThenElseZero(some, limited)));
    }

    // Stores the levels that are above BITS bits; more bits may be above them. The channels of a pixel become
    // the bytes of one integer, which are then sorted by channels.
    template <int BITS>
    HWY_INLINE void Store(const hn::Vec<DWord>* au, ptrdiff_t x) {
        constexpr hn::Repartition<uint8_t, DWord> dBytes;
        constexpr hn::Repartition<uint16_t, DWord> dPairs;
        const auto byteAt = [&](size_t n) HWY_ATTR {
            const int nShift = static_cast<int>(n) * 8 - BITS;
            return hn::BitCast(dBytes, nShift > 0 ? hn::ShiftLeftSame(au[n], nShift)
                                                  : hn::ShiftRightSame(au[n], -nShift));
        };
        auto pixels = byteAt(0);
        if constexpr (CHANNELS > 1) pixels = hn::OddEven(byteAt(1), pixels);
        if constexpr (CHANNELS > 2)
            pixels = hn::BitCast(dBytes, hn::OddEven(hn::BitCast(dPairs, hn::OddEven(byteAt(3), byteAt(2))),
                                                     hn::BitCast(dPairs, pixels)));
        alignas(16) static constexpr uint8_t SORTED[16] = {0, 4, 8,  12, 1, 5, 9,  13,
                                                           2, 6, 10, 14, 3, 7, 11, 15};
        pixels = hn::TableLookupBytes(pixels, hn::LoadDup128(dBytes, SORTED));
        if constexpr (LANES > 4) {
            alignas(64) int32_t anBlocks[LANES];
            for (size_t i = 0; i < LANES; ++i)
                anBlocks[i] = static_cast<int32_t>(i % (LANES / 4) * 4 + i / (LANES / 4));
            pixels = hn::BitCast(dBytes, hn::TableLookupLanes(hn::BitCast(dWord, pixels),
                                                              hn::SetTableIndices(dWord, anBlocks)));
        }
        alignas(64) uint8_t auBytes[4 * LANES];
        hn::Store(pixels, dBytes, auBytes);
        for (size_t n = 0; n < CHANNELS; ++n)
            hn::StoreU(hn::Load(d8, auBytes + n * LANES), d8, m_apTo[n] + x);
    }

    const TRescaleJob& m_job;
    const TRescaleAxis& m_across;
    const TRescaleAxis& m_down;
    const TSlack m_seenSlack;        ///< of rows without transparent samples
    const TSlack m_mixedSlack;       ///< of others
    std::vector<TSourceRow> m_vRows; ///< that of y is at y modulo their count
    TTap m_aTaps[MOST_TAPS];
    uint8_t* m_apTo[CHANNELS]; ///< column 0 of the current destination row, which may be before its first
    size_t m_nStrips = 0;
    int32_t m_anX[STRIPS]; ///< the first columns of the strips
    CWindow<LANES> m_aWindows[STRIPS];
    alignas(64) float m_aafShares[STRIPS][MOST_TAPS][LANES]; ///< of the taps across
    hwy::AlignedFreeUniquePtr<float[]> m_spFloats;
};

template <size_t CHANNELS>
void WeighWith(const TRescaleJob& job) {
    if (job.axes.across.nTaps == 2 && job.axes.down.nTaps == 2)
        CWeigher<CHANNELS, 2>(job).Run();
    else
        CWeigher<CHANNELS, 0>(job).Run();
}

void Weigh(const TRescaleJob& job) {
    if (job.rcTo.Width() < static_cast<int32_t>(LANES) ||
        std::max(job.axes.across.nTaps, job.axes.down.nTaps) > MOST_TAPS)
        return PlainRescaleKernel(ERescaleKind::Area)(job);
    (job.nChannels == 1 ? WeighWith<1> : job.nChannels == 2 ? WeighWith<2> : WeighWith<4>)(job);
}

TRescaleKernel GetWeighKernel() { return Weigh; }

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetWeighKernel);

TRescaleKernel VectorWeighKernel() { return HWY_DYNAMIC_DISPATCH(GetWeighKernel)(); }
#endif
