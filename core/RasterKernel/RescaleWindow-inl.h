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

// The window of a source row in 16-byte tables.
template <size_t TABLES>
class CShuffledRow {
public:
    HWY_INLINE explicit CShuffledRow(const uint8_t* p) {
        for (size_t k = 0; k < TABLES; ++k) m_av[k] = hn::LoadU(dByte, p + k * TABLE);
    }
    // The samples of a tap.
    template <class D8>
    HWY_INLINE hn::Vec<D8> Get(D8 d8, const uint8_t (*pShuffles)[TABLE], const int32_t*) const {
        auto v = hn::TableLookupBytesOr0(m_av[0], hn::Load(d8, pShuffles[0]));
        for (size_t k = 1; k < TABLES; ++k)
            v = hn::Or(v, hn::TableLookupBytesOr0(m_av[k], hn::Load(d8, pShuffles[k])));
        return v;
    }
    // True if no byte is 0; if all are.
    HWY_INLINE bool IsSeen() const {
        auto least = m_av[0];
        for (size_t k = 1; k < TABLES; ++k) least = hn::Min(least, m_av[k]);
        return hn::AllTrue(dByte, hn::Ne(least, hn::Zero(dByte)));
    }
    HWY_INLINE bool IsNone() const {
        auto any = m_av[0];
        for (size_t k = 1; k < TABLES; ++k) any = hn::Or(any, m_av[k]);
        return hn::AllTrue(dByte, hn::Eq(any, hn::Zero(dByte)));
    }

private:
    hn::Vec<DByte> m_av[TABLES];
};

// A window that is too wide for shuffles, of which nothing is known.
class CGatheredRow {
public:
    HWY_INLINE explicit CGatheredRow(const uint8_t* p) : m_p(p) {}
    template <class D8>
    HWY_INLINE hn::Vec<D8> Get(D8 d8, const uint8_t (*)[TABLE], const int32_t* pIndex) const {
        alignas(16) uint8_t au[TABLE];
        for (size_t i = 0; i < hn::MaxLanes(d8); ++i) au[i] = m_p[pIndex[i]];
        return hn::Load(d8, au);
    }
    HWY_INLINE bool IsSeen() const { return false; }
    HWY_INLINE bool IsNone() const { return false; }

private:
    const uint8_t* m_p;
};

// The samples of source rows that a strip of `LANES` columns reads, and their order for each tap.
template <size_t LANES>
class CWindow {
public:
    // The columns from x on. If the samples are not more than the columns and `bLanes`, the window is narrow:
    // its indices are lanes of a vector that is loaded at GetOffset().
    void Set(const TRescaleAxis& across, int32_t x, const CRect& rcFrom, bool bLanes) {
        const auto nFirst = across.First(x);
        const int32_t nSpan = across.Last(x + static_cast<int32_t>(LANES) - 1) + 1 - nFirst;
        constexpr auto COLUMNS = static_cast<int32_t>(LANES);
        m_bNarrow = bLanes && nSpan <= COLUMNS && COLUMNS <= rcFrom.Width();
        m_nTables = static_cast<size_t>((nSpan + TABLE - 1) / TABLE);
        const int32_t nRead = m_bNarrow ? COLUMNS : static_cast<int32_t>(m_nTables) * TABLE;
        if (m_nTables > MOST_TABLES || nRead > rcFrom.Width()) m_nTables = 0;
        const int32_t nStart = m_bNarrow || m_nTables > 0 ? std::min(nFirst, rcFrom.right - nRead) : nFirst;
        m_nOffset = nStart - rcFrom.left;
        for (size_t t = 0; t < across.nTaps; ++t)
            for (size_t i = 0; i < LANES; ++i) {
                const size_t iTap = t * static_cast<size_t>(across.nTo) + static_cast<size_t>(x) + i;
                const int32_t n = across.vIndex[iTap] - nStart;
                m_anIndex[t][i] = n;
                // Shuffles give 0 for an index that is not in their table.
                for (size_t k = 0; !m_bNarrow && k < m_nTables; ++k)
                    m_auShuffles[t][k][i] = n / TABLE == static_cast<int32_t>(k)
                                                ? static_cast<uint8_t>(n % TABLE)
                                                : uint8_t{0x80};
            }
    }

    bool IsNarrow() const { return m_bNarrow; }
    ptrdiff_t GetOffset() const { return m_nOffset; }
    const int32_t* GetIndices(size_t t) const { return m_anIndex[t]; }
    const uint8_t (*GetShuffles(size_t t) const)[TABLE] { return m_auShuffles[t]; }

    // Calls fnRow<Row>(), Row being the class for rows of the window if it is not narrow.
    template <class Function>
    HWY_INLINE void WithRow(const Function& fnRow) const {
        switch (m_nTables) {
        case 1:
            return fnRow.template operator()<CShuffledRow<1>>();
        case 2:
            return fnRow.template operator()<CShuffledRow<2>>();
        case 3:
            return fnRow.template operator()<CShuffledRow<3>>();
        case 4:
            return fnRow.template operator()<CShuffledRow<4>>();
        default:
            return fnRow.template operator()<CGatheredRow>();
        }
    }

private:
    size_t m_nTables = 0; ///< 0 without shuffles
    bool m_bNarrow = false;
    ptrdiff_t m_nOffset = 0; ///< of the window in the rows
    alignas(64) int32_t m_anIndex[MOST_TAPS][LANES];
    alignas(16) uint8_t m_auShuffles[MOST_TAPS][MOST_TABLES][TABLE];
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

using DFloat = hn::CappedTag<float, 16>;
constexpr DFloat dFloat;
constexpr size_t LANES = hn::MaxLanes(dFloat);
using V = hn::Vec<DFloat>;
using D32 = hn::Rebind<int32_t, DFloat>;
using D8 = hn::Rebind<uint8_t, DFloat>;
constexpr D32 d32;
constexpr D8 d8;

// The rows of a window, as floats.
template <class Row>
class CFloatRow {
public:
    HWY_INLINE CFloatRow(const uint8_t* pRow, const CWindow<LANES>& window)
        : m_row(pRow + window.GetOffset()) {}
    HWY_INLINE V Get(const CWindow<LANES>& window, size_t t) const {
        const auto v = m_row.Get(d8, window.GetShuffles(t), window.GetIndices(t));
        return hn::ConvertTo(dFloat, hn::PromoteTo(d32, v));
    }
    HWY_INLINE bool IsSeen() const { return m_row.IsSeen(); }
    HWY_INLINE bool IsNone() const { return m_row.IsNone(); }

private:
    Row m_row;
};

// The same of a narrow window.
struct TNarrow {};
template <>
class CFloatRow<TNarrow> {
public:
    HWY_INLINE CFloatRow(const uint8_t* pRow, const CWindow<LANES>& window)
        : m_v(hn::ConvertTo(dFloat, hn::PromoteTo(d32, hn::LoadU(d8, pRow + window.GetOffset())))) {}
    HWY_INLINE V Get(const CWindow<LANES>& window, size_t t) const {
        return hn::TableLookupLanes(m_v, hn::SetTableIndices(dFloat, window.GetIndices(t)));
    }
    HWY_INLINE bool IsSeen() const { return hn::AllTrue(dFloat, hn::Ne(m_v, hn::Zero(dFloat))); }
    HWY_INLINE bool IsNone() const { return hn::AllFalse(dFloat, hn::Ne(m_v, hn::Zero(dFloat))); }

private:
    V m_v;
};

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
