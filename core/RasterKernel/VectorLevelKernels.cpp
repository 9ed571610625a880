// The vector forms of the level kernels, one source for every instruction set that Highway knows here.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorLevelKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/LevelKernel.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

const TLevelKernels* GetLevelKernels() { return &PlainLevelKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<uint8_t>;
using DI8 = hn::RebindToSigned<D8>;
using D16 = hn::Repartition<uint16_t, D8>;
using V8 = hn::Vec<D8>;
using VI8 = hn::Vec<DI8>;
using V16 = hn::Vec<D16>;

constexpr D8 d8;
constexpr DI8 di8;
constexpr D16 d16;

#if HWY_TARGET == HWY_AVX3

// The table as 128 pairs of bytes, of which an operation looks up among 64. It reads the lower 6 bits of an
// index.
struct TTable {
    __m512i aPairs[4];

    explicit TTable(const TLevelTable& table) {
        for (size_t n = 0; n < 4; ++n) aPairs[n] = _mm512_loadu_si512(table.data() + 64 * n);
    }
    // The pairs of indices; those of the mask lie in the upper half of the table.
    HWY_INLINE __m512i Pairs(__m512i indices, __mmask32 upper) const {
        return _mm512_mask_blend_epi16(upper, _mm512_permutex2var_epi16(aPairs[0], indices, aPairs[1]),
                                       _mm512_permutex2var_epi16(aPairs[2], indices, aPairs[3]));
    }
    HWY_INLINE V8 Get(V8 v) const {
        const auto test = [&](int nBit) HWY_ATTR {
            return _mm512_test_epi16_mask(v.raw, _mm512_set1_epi16(static_cast<int16_t>(1 << nBit)));
        };
        const __m512i even = Pairs(_mm512_srli_epi16(v.raw, 1), test(7));
        const __m512i odd = Pairs(_mm512_srli_epi16(v.raw, 9), test(15));
        // Bit 0 of a value selects the byte of its pair.
        const __m512i evenByte = _mm512_mask_srli_epi16(even, test(0), even, 8);
        const __m512i oddByte = _mm512_mask_slli_epi16(odd, _knot_mask32(test(8)), odd, 8);
        return V8{_mm512_mask_blend_epi8(0xAAAAAAAAAAAAAAAA, evenByte, oddByte)};
    }
};

#else

// A lookup in 16 bytes is one operation; the table is 16 of them. The parts hold what each differs in from
// the part before, so that the results of all parts up to the value's own combine to its entry. An index that
// was lowered below 0 finds nothing.
class TTable {
public:
    explicit TTable(const TLevelTable& table) : m_parts(table) {
        for (size_t i = 0; i < table.size(); ++i)
            if (i % HALF >= PART) m_parts[i] = static_cast<uint8_t>(table[i] ^ table[i - PART]);
    }
    HWY_INLINE V8 Get(V8 v) const {
        const auto index = hn::BitCast(di8, v);
        return hn::Xor(FromHalf(m_parts.data(), index),
                       FromHalf(m_parts.data() + HALF, hn::Xor(index, hn::Set(di8, int8_t{-128}))));
    }

private:
    static constexpr size_t PART = 16;
    static constexpr size_t HALF = 128; // a positive signed byte is an index in it

    static HWY_INLINE V8 FromHalf(const uint8_t* pParts, VI8 index) {
        VI8 sum = hn::Zero(di8);
#pragma GCC unroll 8
        for (size_t n = 0; n < HALF; n += PART) {
            sum = hn::Xor(sum,
                          hn::TableLookupBytesOr0(hn::BitCast(di8, hn::LoadDup128(d8, pParts + n)), index));
            index = hn::SaturatedSub(index, hn::Set(di8, int8_t{PART}));
        }
        return hn::BitCast(d8, sum);
    }

    alignas(16) TLevelTable m_parts;
};

#endif

void LookUp(uint8_t* pDest, const uint8_t* pSource, const TLevelTable& table, size_t nCount) {
    const TTable vectors(table);
    const size_t nLanes = hn::Lanes(d8);
    size_t i = 0;
    for (; i + nLanes <= nCount; i += nLanes)
        hn::StoreU(vectors.Get(hn::LoadU(d8, pSource + i)), d8, pDest + i);
    PlainLevelKernels().pLookUp(pDest + i, pSource + i, table, nCount - i);
}

// The product of bytes in 16-bit lanes over 255, truncated: shifted by 7, exact for all products.
HWY_INLINE V16 Product(V16 a, V16 b) { return hn::MulHigh(hn::Mul(a, b), hn::Set(d16, 0x8081)); }

HWY_INLINE V8 MixVector(V8 old, V8 value, V8 mask) {
    const auto low = hn::Set(d16, 0x00FF);
    const auto distance16 =
        hn::BitCast(d16, hn::Or(hn::SaturatedSub(value, old), hn::SaturatedSub(old, value)));
    const auto mask16 = hn::BitCast(d16, mask);
    const V16 even = hn::ShiftRight<7>(Product(hn::And(distance16, low), hn::And(mask16, low)));
    const V16 odd = Product(hn::ShiftRight<8>(distance16), hn::ShiftRight<8>(mask16));
    const auto change = hn::BitCast(d8, hn::Or(even, hn::AndNot(low, hn::Add(odd, odd))));
    const auto rises = hn::Eq(hn::Max(value, old), value);
    return hn::IfThenElse(rises, hn::Add(old, change), hn::Sub(old, change));
}

void Mix(uint8_t* pDest, const uint8_t* pOld, const uint8_t* pValue, const uint8_t* pMask, size_t nCount) {
    const size_t nLanes = hn::Lanes(d8);
    size_t i = 0;
    for (; i + nLanes <= nCount; i += nLanes)
        hn::StoreU(MixVector(hn::LoadU(d8, pOld + i), hn::LoadU(d8, pValue + i), hn::LoadU(d8, pMask + i)),
                   d8, pDest + i);
    PlainLevelKernels().pMix(pDest + i, pOld + i, pValue + i, pMask + i, nCount - i);
}

const TLevelKernels* GetLevelKernels() {
    static constexpr TLevelKernels kernels{LookUp, Mix};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetLevelKernels);

const TLevelKernels& VectorLevelKernels() { return *HWY_DYNAMIC_DISPATCH(GetLevelKernels)(); }
#endif
