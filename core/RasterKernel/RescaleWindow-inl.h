// Samples of source rows, sorted to the columns of a strip; included once for each instruction set.
#if defined(VELLUM_RESCALE_WINDOW_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELLUM_RESCALE_WINDOW_INL_H
#undef VELLUM_RESCALE_WINDOW_INL_H
#else
#define VELLUM_RESCALE_WINDOW_INL_H
#endif

#include "core/RasterKernel/RescaleKernel.h"

#include <hwy/highway.h>

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

namespace hn = hwy::HWY_NAMESPACE;

using DByte = hn::Full128<uint8_t>;
constexpr DByte dByte;
constexpr int32_t TABLE = 16;     ///< bytes that one shuffle reads
constexpr size_t MOST_TABLES = 4; ///< that are shuffled for a window
constexpr size_t MOST_TAPS = 20;  ///< in each direction

// Sorts the samples of a source row to the columns of a strip of `LANES`.
template <size_t LANES>
class CWindow {
public:
    // The columns from x on. If `bLanes` and the samples are not more than the columns, IsNarrow tells to
    // sort lanes.
    void Set(const TRescaleAxis& across, int32_t x, const CRect& rcFrom, bool bLanes) {
        const auto nFirst = across.First(x);
        const int32_t nSpan = across.Last(x + static_cast<int32_t>(LANES) - 1) + 1 - nFirst;
        constexpr auto COLUMNS = static_cast<int32_t>(LANES);
        m_bNarrow = bLanes && nSpan <= COLUMNS && COLUMNS <= rcFrom.Width();
        m_nTables = static_cast<size_t>((nSpan + TABLE - 1) / TABLE);
        const int32_t nRead = m_bNarrow ? COLUMNS : static_cast<int32_t>(m_nTables) * TABLE;
        m_bShuffles = m_nTables <= MOST_TABLES && nRead <= rcFrom.Width();
        const int32_t nStart = m_bShuffles ? std::min(nFirst, rcFrom.right - nRead) : nFirst;
        m_nOffset = nStart - rcFrom.left;
        for (size_t t = 0; t < across.nTaps; ++t)
            for (size_t i = 0; i < LANES; ++i) {
                const size_t iTap = t * static_cast<size_t>(across.nTo) + static_cast<size_t>(x) + i;
                const int32_t n = across.vIndex[iTap] - nStart;
                m_anIndex[t][i] = n;
                // Shuffles give 0 for an index that is not in their table.
                for (size_t k = 0; m_bShuffles && !m_bNarrow && k < m_nTables; ++k)
                    m_auShuffle[t][k][i] = n / TABLE == static_cast<int32_t>(k)
                                               ? static_cast<uint8_t>(n % TABLE)
                                               : uint8_t{0x80};
            }
    }

    bool IsNarrow() const { return m_bNarrow; }
    // The first sample of a row that a narrow window reads, and the lanes of a tap.
    const uint8_t* First(const uint8_t* pRow) const { return pRow + m_nOffset; }
    const int32_t* GetLanes(size_t t) const { return m_anIndex[t]; }

    // Calls fnTap(t, samples) for each tap, unless the window is narrow.
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
    bool m_bNarrow = false;
    ptrdiff_t m_nOffset = 0; // of the window in the rows
    alignas(64) int32_t m_anIndex[MOST_TAPS][LANES];
    alignas(16) uint8_t m_auShuffle[MOST_TAPS][MOST_TABLES][TABLE];
};

HWY_INLINE const uint8_t* SourceRow(const TRescaleJob& job, size_t nChannel, int32_t y) {
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

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
