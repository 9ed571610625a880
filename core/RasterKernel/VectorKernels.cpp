// The vector forms of the blending kernels, one source for every instruction set that Highway knows here.
//
// All lanes are 16 bits wide: a channel byte, a product of two bytes and x / 255 fit. What does not fit are
// the divisions by the resulting alpha, done in single precision and exact all the same: a quotient n / d
// with d at most 255 lies at least 1 / 255 away from the next integer unless it is one, and the rounding
// errors are below 1e-4.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/Kernels.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A machine without vectors of 16 bytes uses the reference forms.
const TBlendKernels* GetKernels() { return &PlainKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using D16 = hn::ScalableTag<uint16_t>;
using D8 = hn::Half<hn::Repartition<uint8_t, D16>>; // as many bytes as there are 16-bit lanes
using DI16 = hn::RebindToSigned<D16>;
using D32 = hn::Repartition<uint32_t, D16>;
using DI32 = hn::RebindToSigned<D32>;
using DF = hn::RebindToFloat<DI32>;
using V16 = hn::Vec<D16>;
using VF = hn::Vec<DF>;

constexpr D16 d16;
constexpr D8 d8;
constexpr DI16 di16;
constexpr D32 d32;
constexpr DI32 di32;
constexpr DF df;

HWY_INLINE V16 Load(const uint8_t* p) { return hn::PromoteTo(d16, hn::LoadU(d8, p)); }
HWY_INLINE void Store(V16 v, uint8_t* p) { hn::StoreU(hn::DemoteTo(d8, hn::BitCast(di16, v)), d8, p); }

// x / 255 truncated, exact for x up to 65279.
HWY_INLINE V16 Div255(V16 x) {
    return hn::ShiftRight<8>(hn::Add(hn::Add(x, hn::Set(d16, 1)), hn::ShiftRight<8>(x)));
}

// A 16-bit vector as two vectors of floats.
struct TFloats {
    VF lo;
    VF hi;
};

HWY_INLINE TFloats ToFloats(V16 v) {
    return {hn::ConvertTo(df, hn::PromoteTo(di32, hn::LowerHalf(v))),
            hn::ConvertTo(df, hn::PromoteTo(di32, hn::UpperHalf(hn::Half<D16>(), v)))};
}

// Truncates floats of 0 to 65535 back into 16 bits.
HWY_INLINE V16 FromFloats(const TFloats& f) {
    const hn::Half<D16> dHalf;
    const auto narrow = [&](VF v) { return hn::DemoteTo(dHalf, hn::ConvertTo(di32, v)); };
    return hn::Combine(d16, narrow(f.hi), narrow(f.lo));
}

// The fast kernel's alpha and ratio.
struct TRatio {
    V16 alpha;
    V16 ratio;
};

HWY_INLINE TRatio RatioFast(V16 sA, V16 dA) {
    const V16 alpha = hn::Sub(hn::Add(sA, dA), Div255(hn::Mul(sA, dA)));
    const TFloats s = ToFloats(sA);
    const TFloats a = ToFloats(hn::Max(alpha, hn::Set(d16, 1)));
    const VF k = hn::Set(df, 1024.0f);
    return {alpha, FromFloats({hn::Div(hn::Mul(s.lo, k), a.lo), hn::Div(hn::Mul(s.hi, k), a.hi)})};
}

// dC + (((sC - dC) * ratio) >> 10): the high half of a product with 64 times the difference.
HWY_INLINE V16 MixFast(V16 sC, V16 dC, V16 ratio) {
    const auto diff = hn::ShiftLeft<6>(hn::BitCast(di16, hn::Sub(sC, dC)));
    return hn::Add(dC, hn::BitCast(d16, hn::MulHigh(diff, hn::BitCast(di16, ratio))));
}

// The general kernel's coverages and the reciprocal of their sum.
struct TWeights {
    V16 source;
    V16 dest;
    V16 sum;
    TFloats reciprocal;
};

// The general kernel's coverage of the source.
HWY_INLINE V16 CoverGeneral(V16 sA, V16 opacity, const uint8_t* pMask) {
    const V16 a = Div255(hn::Mul(sA, opacity));
    return pMask ? Div255(hn::Mul(a, Load(pMask))) : a;
}

HWY_INLINE TWeights WeighGeneral(V16 a, V16 dA) {
    const V16 d = Div255(hn::Mul(dA, hn::Sub(hn::Set(d16, 255), a)));
    const V16 sum = hn::Add(a, d);
    const TFloats f = ToFloats(hn::Max(sum, hn::Set(d16, 1)));
    const VF one = hn::Set(df, 1.0f);
    return {a, d, sum, {hn::Div(one, f.lo), hn::Div(one, f.hi)}};
}

// (sC * a + dC * d) / sum: the half added to the numerator keeps whole quotients from falling below
// themselves.
HWY_INLINE V16 MixGeneral(V16 sC, V16 dC, const TWeights& w) {
    const V16 n = hn::Add(hn::Mul(sC, w.source), hn::Mul(dC, w.dest));
    const hn::Half<D16> dHalf;
    const auto part = [&](auto v, VF reciprocal) {
        const VF f = hn::ConvertTo(df, hn::BitCast(di32, hn::PromoteTo(d32, v)));
        return hn::Mul(hn::Add(f, hn::Set(df, 0.5f)), reciprocal);
    };
    return FromFloats(
        {part(hn::LowerHalf(n), w.reciprocal.lo), part(hn::UpperHalf(dHalf, n), w.reciprocal.hi)});
}

HWY_INLINE bool IsAll(V16 v, uint16_t u) { return hn::AllTrue(d16, hn::Eq(v, hn::Set(d16, u))); }

// Blends a source of coverage `a` onto pixels of alpha `dA`, which lies at `pAlpha`; `each(mix)` stores
// mix(source, dest) for every channel. Most vectors of a drawing are empty, full or painted for the first
// time, where the formulas come out without a division.
template <class Each>
HWY_INLINE void BlendVector(V16 a, V16 dA, uint8_t* pAlpha, Each each) {
    if (IsAll(a, 0)) {
        each([&](V16, V16 dC) HWY_ATTR { return hn::IfThenZeroElse(hn::Eq(dA, hn::Zero(d16)), dC); });
    } else if (IsAll(a, 255)) {
        Store(a, pAlpha);
        each([&](V16 sC, V16) HWY_ATTR { return sC; });
    } else if (IsAll(dA, 0)) {
        Store(a, pAlpha);
        each([&](V16 sC, V16) HWY_ATTR { return hn::IfThenZeroElse(hn::Eq(a, hn::Zero(d16)), sC); });
    } else {
        const TWeights w = WeighGeneral(a, dA);
        Store(w.sum, pAlpha);
        each([&](V16 sC, V16 dC) HWY_ATTR { return MixGeneral(sC, dC, w); });
    }
}

// The same by the fast kernel.
template <class Each>
HWY_INLINE void BlendVectorFast(V16 sA, V16 dA, uint8_t* pAlpha, Each each) {
    if (IsAll(sA, 0)) return;
    if (IsAll(sA, 255)) {
        Store(sA, pAlpha);
        each([&](V16 sC, V16) HWY_ATTR { return sC; });
    } else if (IsAll(dA, 0)) {
        Store(sA, pAlpha);
        each([&](V16 sC, V16 dC) HWY_ATTR { return hn::IfThenElse(hn::Eq(sA, hn::Zero(d16)), dC, sC); });
    } else {
        const TRatio w = RatioFast(sA, dA);
        Store(w.alpha, pAlpha);
        each([&](V16 sC, V16 dC) HWY_ATTR { return MixFast(sC, dC, w.ratio); });
    }
}

// GreyOf: its weights are thousandths, and the nearest level of a sum that is no whole number is at least a
// thousandth away, far above what single precision loses.
HWY_INLINE V16 Grey(const TConstColorPixels& src, size_t i) {
    const TFloats r = ToFloats(Load(src.pR + i));
    const TFloats g = ToFloats(Load(src.pG + i));
    const TFloats b = ToFloats(Load(src.pB + i));
    const auto sum = [](VF vR, VF vG, VF vB) {
        const VF n = hn::Add(hn::Add(hn::Mul(vR, hn::Set(df, 299.0f)), hn::Mul(vG, hn::Set(df, 587.0f))),
                             hn::Add(hn::Mul(vB, hn::Set(df, 114.0f)), hn::Set(df, 0.5f)));
        return hn::Mul(n, hn::Set(df, 0.001f));
    };
    return FromFloats({sum(r.lo, g.lo, b.lo), sum(r.hi, g.hi, b.hi)});
}

// Pixels beyond the last whole vector use the reference forms.
template <class Pixels>
Pixels Advance(const Pixels& px, size_t n);
template <>
HWY_INLINE TColorPixels Advance(const TColorPixels& px, size_t n) {
    return {px.pR + n, px.pG + n, px.pB + n, px.pA + n};
}
template <>
HWY_INLINE TConstColorPixels Advance(const TConstColorPixels& px, size_t n) {
    return {px.pR + n, px.pG + n, px.pB + n, px.pA + n};
}
template <>
HWY_INLINE TGreyPixels Advance(const TGreyPixels& px, size_t n) {
    return {px.pGrey + n, px.pA + n};
}
template <>
HWY_INLINE TConstGreyPixels Advance(const TConstGreyPixels& px, size_t n) {
    return {px.pGrey + n, px.pA + n};
}

void FastColor(const TColorPixels& dest, const TConstColorPixels& src, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep)
        BlendVectorFast(Load(src.pA + i), Load(dest.pA + i), dest.pA + i, [&](auto mix) HWY_ATTR {
            Store(mix(Load(src.pR + i), Load(dest.pR + i)), dest.pR + i);
            Store(mix(Load(src.pG + i), Load(dest.pG + i)), dest.pG + i);
            Store(mix(Load(src.pB + i), Load(dest.pB + i)), dest.pB + i);
        });
    PlainKernels().pFastColor(Advance(dest, i), Advance(src, i), nCount - i);
}

void FastGrey(const TGreyPixels& dest, const TConstGreyPixels& src, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep)
        BlendVectorFast(Load(src.pA + i), Load(dest.pA + i), dest.pA + i, [&](auto mix) HWY_ATTR {
            Store(mix(Load(src.pGrey + i), Load(dest.pGrey + i)), dest.pGrey + i);
        });
    PlainKernels().pFastGrey(Advance(dest, i), Advance(src, i), nCount - i);
}

void GeneralColorOnColor(const TColorPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                         const uint8_t* pMask, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    const V16 opacity = hn::Set(d16, uOpacity);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep) {
        const V16 a = CoverGeneral(Load(src.pA + i), opacity, pMask ? pMask + i : nullptr);
        BlendVector(a, Load(dest.pA + i), dest.pA + i, [&](auto mix) HWY_ATTR {
            Store(mix(Load(src.pR + i), Load(dest.pR + i)), dest.pR + i);
            Store(mix(Load(src.pG + i), Load(dest.pG + i)), dest.pG + i);
            Store(mix(Load(src.pB + i), Load(dest.pB + i)), dest.pB + i);
        });
    }
    PlainKernels().pGeneralColorOnColor(Advance(dest, i), Advance(src, i), uOpacity,
                                        pMask ? pMask + i : nullptr, nCount - i);
}

// `source(i)` returns the grey levels of the source's pixels from i on.
template <class GreySource>
HWY_INLINE size_t BlendOnGrey(const TGreyPixels& dest, const uint8_t* pAlpha, GreySource source,
                              uint8_t uOpacity, const uint8_t* pMask, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    const V16 opacity = hn::Set(d16, uOpacity);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep) {
        const V16 a = CoverGeneral(Load(pAlpha + i), opacity, pMask ? pMask + i : nullptr);
        BlendVector(a, Load(dest.pA + i), dest.pA + i,
                    [&](auto mix) HWY_ATTR { Store(mix(source(i), Load(dest.pGrey + i)), dest.pGrey + i); });
    }
    return i;
}

void GeneralColorOnGrey(const TGreyPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                        const uint8_t* pMask, size_t nCount) {
    const size_t i = BlendOnGrey(
        dest, src.pA, [&](size_t n) HWY_ATTR { return Grey(src, n); }, uOpacity, pMask, nCount);
    PlainKernels().pGeneralColorOnGrey(Advance(dest, i), Advance(src, i), uOpacity,
                                       pMask ? pMask + i : nullptr, nCount - i);
}

void GeneralGreyOnGrey(const TGreyPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                       const uint8_t* pMask, size_t nCount) {
    const size_t i = BlendOnGrey(
        dest, src.pA, [&](size_t n) HWY_ATTR { return Load(src.pGrey + n); }, uOpacity, pMask, nCount);
    PlainKernels().pGeneralGreyOnGrey(Advance(dest, i), Advance(src, i), uOpacity,
                                      pMask ? pMask + i : nullptr, nCount - i);
}

void InkOnColor(const TColorPixels& dest, const TInk& ink, const uint8_t* pCover, const uint8_t* pMask,
                size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    const V16 opaque = hn::Set(d16, 255);
    const V16 inkR = hn::Set(d16, ink.uR);
    const V16 inkG = hn::Set(d16, ink.uG);
    const V16 inkB = hn::Set(d16, ink.uB);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep) {
        const V16 a = CoverGeneral(Load(pCover + i), opaque, pMask ? pMask + i : nullptr);
        BlendVector(a, Load(dest.pA + i), dest.pA + i, [&](auto mix) HWY_ATTR {
            Store(mix(inkR, Load(dest.pR + i)), dest.pR + i);
            Store(mix(inkG, Load(dest.pG + i)), dest.pG + i);
            Store(mix(inkB, Load(dest.pB + i)), dest.pB + i);
        });
    }
    PlainKernels().pInkOnColor(Advance(dest, i), ink, pCover + i, pMask ? pMask + i : nullptr, nCount - i);
}

void InkOnGrey(const TGreyPixels& dest, uint8_t uGrey, const uint8_t* pCover, const uint8_t* pMask,
               size_t nCount) {
    const V16 ink = hn::Set(d16, uGrey);
    const size_t i = BlendOnGrey(
        dest, pCover, [&](size_t) HWY_ATTR { return ink; }, 255, pMask, nCount);
    PlainKernels().pInkOnGrey(Advance(dest, i), uGrey, pCover + i, pMask ? pMask + i : nullptr, nCount - i);
}

// The part of `pAlpha` that a run of coverage leaves, and with `bAdd` the coverage added. Returns the
// number of pixels done.
template <bool bAdd>
HWY_INLINE size_t ChangeAlpha(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep) {
        V16 s = Load(pCover + i);
        if (pMask) s = Div255(hn::Mul(s, Load(pMask + i)));
        const V16 rest = Div255(hn::Mul(Load(pAlpha + i), hn::Sub(hn::Set(d16, 255), s)));
        Store(bAdd ? hn::Add(s, rest) : rest, pAlpha + i);
    }
    return i;
}

void Erase(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    const size_t i = ChangeAlpha<false>(pAlpha, pCover, pMask, nCount);
    PlainKernels().pErase(pAlpha + i, pCover + i, pMask ? pMask + i : nullptr, nCount - i);
}

void Cover(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    const size_t i = ChangeAlpha<true>(pAlpha, pCover, pMask, nCount);
    PlainKernels().pCover(pAlpha + i, pCover + i, pMask ? pMask + i : nullptr, nCount - i);
}

// The coverage factor in 1024ths: A * 1024 / 255 is 4 * A + 4 * A / 255.
HWY_INLINE V16 Coverage(V16 alpha) {
    const V16 alpha4 = hn::ShiftLeft<2>(alpha);
    return hn::Add(alpha4, Div255(alpha4));
}

// 255 - (((255 - C) * k) >> 10) as bytes.
HWY_INLINE hn::Vec<D8> Resolve(V16 c, V16 coverage) {
    const V16 white = hn::Set(d16, 255);
    const auto dark = hn::BitCast(di16, hn::ShiftLeft<6>(hn::Sub(white, c)));
    const auto shade = hn::MulHigh(dark, hn::BitCast(di16, coverage));
    return hn::DemoteTo(d8, hn::Sub(hn::BitCast(di16, white), shade));
}

void ResolveColor(uint8_t* pScreen, const TConstColorPixels& src, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep) {
        const V16 k = Coverage(Load(src.pA + i));
        hn::StoreInterleaved4(Resolve(Load(src.pB + i), k), Resolve(Load(src.pG + i), k),
                              Resolve(Load(src.pR + i), k), hn::Set(d8, 255), d8, pScreen + i * 4);
    }
    PlainKernels().pResolveColor(pScreen + i * 4, Advance(src, i), nCount - i);
}

void ResolveGrey(uint8_t* pScreen, const TConstGreyPixels& src, size_t nCount) {
    const size_t nStep = hn::Lanes(d16);
    size_t i = 0;
    for (; i + nStep <= nCount; i += nStep) {
        const auto v = Resolve(Load(src.pGrey + i), Coverage(Load(src.pA + i)));
        hn::StoreInterleaved4(v, v, v, hn::Set(d8, 255), d8, pScreen + i * 4);
    }
    PlainKernels().pResolveGrey(pScreen + i * 4, Advance(src, i), nCount - i);
}

const TBlendKernels* GetKernels() {
    static constexpr TBlendKernels kernels{FastColor,
                                           FastGrey,
                                           GeneralColorOnColor,
                                           GeneralColorOnGrey,
                                           GeneralGreyOnGrey,
                                           InkOnColor,
                                           InkOnGrey,
                                           Erase,
                                           Cover,
                                           ResolveColor,
                                           ResolveGrey};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetKernels);

const TBlendKernels& VectorKernels() { return *HWY_DYNAMIC_DISPATCH(GetKernels)(); }
#endif
