// The vector form of the halving filter, one source for every instruction set that Highway knows here.
//
// Upper and lower bytes are summed apart, so that 16-bit lanes hold each sum, at most 4080. The upper byte of
// a sixteenth of upper * 256 + lower is (upper + lower / 256) / 16.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorHalveKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/HalveKernel.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

const THalveKernels* GetHalveKernels() { return &PlainHalveKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using D16 = hn::CappedTag<uint16_t, 16>;
using D8 = hn::Rebind<uint8_t, D16>;
constexpr D16 d16;
constexpr D8 d8;

template <class V>
HWY_INLINE V Weigh(V first, V middle, V last) {
    return hn::Add(hn::Add(first, last), hn::Add(middle, middle));
}

// The columns' sums of both bytes over the three rows; the value behind the end included.
struct TColumns {
    static constexpr size_t SPAN = 128; ///< pixels at once
    HWY_ALIGN uint16_t auUpper[2 * SPAN + 2];
    HWY_ALIGN uint16_t auLower[2 * SPAN + 2];

    HWY_ATTR void Sum(const THalveRows& rows, size_t nFirst, size_t nPixels, bool bEnd) {
        const auto lowerByte = hn::Set(d16, 255);
        size_t i = 0;
        for (; i < 2 * nPixels; i += hn::Lanes(d16)) {
            const auto a = hn::LoadU(d16, rows.apRows[0] + 2 * nFirst + i);
            const auto b = hn::LoadU(d16, rows.apRows[1] + 2 * nFirst + i);
            const auto c = hn::LoadU(d16, rows.apRows[2] + 2 * nFirst + i);
            hn::StoreU(Weigh(hn::ShiftRight<8>(a), hn::ShiftRight<8>(b), hn::ShiftRight<8>(c)), d16,
                       auUpper + i);
            hn::StoreU(Weigh(hn::And(a, lowerByte), hn::And(b, lowerByte), hn::And(c, lowerByte)), d16,
                       auLower + i);
        }
        const auto next = [&](size_t n) -> uint32_t {
            return bEnd ? rows.auNext[n] : rows.apRows[n][2 * (nFirst + nPixels)];
        };
        const uint32_t a = next(0), b = next(1), c = next(2);
        auUpper[i] = static_cast<uint16_t>((a >> 8) + 2 * (b >> 8) + (c >> 8));
        auLower[i] = static_cast<uint16_t>((a & 255) + 2 * (b & 255) + (c & 255));
    }

    // The sums of three columns for the pixels from `i` on.
    static HWY_INLINE hn::Vec<D16> Row(const uint16_t* pColumns, size_t i) {
        hn::Vec<D16> even, odd, next;
        hn::LoadInterleaved2(d16, pColumns + 2 * i, even, odd);
        hn::LoadInterleaved2(d16, pColumns + 2 * i + 1, odd, next);
        return Weigh(even, odd, next);
    }
};

void Halve(uint8_t* pDest, const THalveRows& rows, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    if (nCount % nStep != 0) {
        PlainHalveKernels().pHalve(pDest, rows, nCount);
        return;
    }
    TColumns columns;
    for (size_t nFirst = 0; nFirst < nCount; nFirst += TColumns::SPAN) {
        const size_t nPixels = HWY_MIN(TColumns::SPAN, nCount - nFirst);
        columns.Sum(rows, nFirst, nPixels, nFirst + nPixels == nCount);
        for (size_t i = 0; i < nPixels; i += nStep) {
            const auto upper = TColumns::Row(columns.auUpper, i);
            const auto lower = TColumns::Row(columns.auLower, i);
            const auto value = hn::ShiftRight<4>(hn::Add(upper, hn::ShiftRight<8>(lower)));
            hn::StoreU(hn::DemoteTo(d8, hn::BitCast(hn::RebindToSigned<D16>(), value)), d8,
                       pDest + nFirst + i);
        }
    }
}

const THalveKernels* GetHalveKernels() {
    static constexpr THalveKernels kernels{Halve};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetHalveKernels);

const THalveKernels& VectorHalveKernels() { return *HWY_DYNAMIC_DISPATCH(GetHalveKernels)(); }
#endif
