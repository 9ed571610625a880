// The vector forms of the level kernels, one source for every instruction set that Highway knows here.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorLevelKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/LevelKernel.h"

#include <cstring>

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

// Fewer bytes than a vector has are copied to a whole one.
struct TPart {
    alignas(64) uint8_t au[hn::MaxLanes(d8)] = {};

    HWY_INLINE TPart(const uint8_t* p, size_t nCount) { std::memcpy(au, p, nCount); }
    HWY_INLINE V8 Get() const { return hn::Load(d8, au); }
};

HWY_INLINE void StorePart(V8 v, uint8_t* pDest, size_t nCount) {
    alignas(64) uint8_t au[hn::MaxLanes(d8)];
    hn::Store(v, d8, au);
    std::memcpy(pDest, au, nCount);
}

#if HWY_TARGET == HWY_AVX3

// The table as 128 pairs of bytes, of which an operation looks up among 64. It reads the lower 6 bits of an
// index.
class CTable {
public:
    explicit CTable(const TLevelTable& table) {
        for (size_t n = 0; n < 4; ++n) m_aPairs[n] = _mm512_loadu_si512(table.data() + 64 * n);
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
    HWY_INLINE void Get(V8& a, V8& b) const { a = Get(a), b = Get(b); }

private:
    // The pairs of indices; those of the mask lie in the upper half of the table.
    HWY_INLINE __m512i Pairs(__m512i indices, __mmask32 upper) const {
        return _mm512_mask_blend_epi16(upper, _mm512_permutex2var_epi16(m_aPairs[0], indices, m_aPairs[1]),
                                       _mm512_permutex2var_epi16(m_aPairs[2], indices, m_aPairs[3]));
    }

    __m512i m_aPairs[4];
};

#else

// A lookup in 16 bytes is one operation; the table is 16 of them. The parts hold what each differs in from
// the part before, so that the results of all parts up to the value's own combine to its entry. An index that
// was lowered below 0 finds nothing.
class CTable {
public:
    explicit CTable(const TLevelTable& table) {
        const hn::CappedTag<uint8_t, PART> d;
        auto before = hn::Zero(d);
        for (size_t i = 0; i < table.size(); i += PART) {
            const auto part = hn::LoadU(d, table.data() + i);
            hn::Store(i == HALF ? part : hn::Xor(part, before), d, m_parts.data() + i);
            before = part;
        }
    }
    // Two vectors at once need each part only once.
    HWY_INLINE void Get(V8& a, V8& b) const {
        VI8 a0 = hn::BitCast(di8, a), b0 = hn::BitCast(di8, b);
        VI8 a1 = hn::Xor(a0, hn::Set(di8, int8_t{-128})), b1 = hn::Xor(b0, hn::Set(di8, int8_t{-128}));
        VI8 sumA = hn::Zero(di8), sumB = hn::Zero(di8);
        FromHalf(m_parts.data(), a0, b0, sumA, sumB);
        FromHalf(m_parts.data() + HALF, a1, b1, sumA, sumB);
        a = hn::BitCast(d8, sumA);
        b = hn::BitCast(d8, sumB);
    }
    HWY_INLINE V8 Get(V8 v) const {
        V8 other = v;
        Get(v, other);
        return v;
    }

private:
    static constexpr size_t PART = 16;
    static constexpr size_t HALF = 128; // a positive signed byte is an index in it

    static HWY_INLINE void FromHalf(const uint8_t* pParts, VI8 a, VI8 b, VI8& sumA, VI8& sumB) {
        const auto step = hn::Set(di8, int8_t{PART});
#pragma GCC unroll 8
        for (size_t n = 0; n < HALF; n += PART) {
            const auto part = hn::BitCast(di8, hn::LoadDup128(d8, pParts + n));
            sumA = hn::Xor(sumA, hn::TableLookupBytesOr0(part, a));
            sumB = hn::Xor(sumB, hn::TableLookupBytesOr0(part, b));
            a = hn::SaturatedSub(a, step);
            b = hn::SaturatedSub(b, step);
        }
    }

    alignas(16) TLevelTable m_parts;
};

#endif

void LookUp(uint8_t* pDest, const uint8_t* pSource, const TLevelTable& table, size_t nCount) {
    const CTable vectors(table);
    const size_t nLanes = hn::Lanes(d8);
    size_t i = 0;
    for (; i + 2 * nLanes <= nCount; i += 2 * nLanes) {
        V8 a = hn::LoadU(d8, pSource + i), b = hn::LoadU(d8, pSource + i + nLanes);
        vectors.Get(a, b);
        hn::StoreU(a, d8, pDest + i);
        hn::StoreU(b, d8, pDest + i + nLanes);
    }
    if (i + nLanes <= nCount) {
        hn::StoreU(vectors.Get(hn::LoadU(d8, pSource + i)), d8, pDest + i);
        i += nLanes;
    }
    if (i < nCount) StorePart(vectors.Get(TPart(pSource + i, nCount - i).Get()), pDest + i, nCount - i);
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
    const size_t nRest = nCount - i;
    const auto part = [&](const uint8_t* p) HWY_ATTR { return TPart(p + i, nRest).Get(); };
    if (nRest) StorePart(MixVector(part(pOld), part(pValue), part(pMask)), pDest + i, nRest);
}

const TLevelKernels* GetLevelKernels() {
    // Vectors of 16 bytes look up no faster than the definition.
    static constexpr TLevelKernels kernels{LookUp, Mix};
    static const TLevelKernels narrow{PlainLevelKernels().pLookUp, Mix};
    return hn::Lanes(d8) > 16 ? &kernels : &narrow;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetLevelKernels);

const TLevelKernels& VectorLevelKernels() { return *HWY_DYNAMIC_DISPATCH(GetLevelKernels)(); }
#endif
