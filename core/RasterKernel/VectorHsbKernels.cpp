// The vector form of the hue, saturation and brightness kernel, one source for every instruction set that
// Highway knows here.
//
// Differences of channels are computed in 16-bit lanes, colours in single precision, in the same order as in
// the definition; a hue's distances from the corners of the colour circle are exact, so that they may be
// found in any order. The channels are rounded to bytes before each pixel's hue selects among them. A pixel
// without chroma has any hue: its chroma stays below the least that counts.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorHsbKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/HsbKernel.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

const THsbKernels* GetHsbKernels() { return &PlainHsbKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

using D16 = hn::ScalableTag<int16_t>;
using DHalf16 = hn::Half<D16>;
using D8 = hn::Half<hn::Repartition<uint8_t, D16>>;
using D32 = hn::Repartition<int32_t, D16>;
using DF = hn::RebindToFloat<D32>;
using V16 = hn::Vec<D16>;
using V8 = hn::Vec<D8>;
using V32 = hn::Vec<D32>;
using VF = hn::Vec<DF>;

constexpr D16 d16;
constexpr DHalf16 dHalf16;
constexpr D8 d8;
constexpr hn::CappedTag<uint8_t, HWY_MAX(size_t{16}, hn::MaxLanes(d8))> dRoles; // a table needs 16 bytes
constexpr D32 d32;
constexpr DF df;

HWY_INLINE VF Set(float f) { return hn::Set(df, f); }

// As many pixels as a vector holds in 16 bits, or half of them in 32 bits.
template <class V>
struct TPixels {
    V numerator; ///< of the hue's place in its third of the circle, 60 times the channels' difference
    V middle;    ///< of the third, in degrees
    V chroma;    ///< the largest less the smallest channel
    V sum;       ///< of both
};

HWY_INLINE TPixels<V16> LoadPixels(const TConstColorPixels& source, size_t i) {
    const auto load = [&](const uint8_t* p) HWY_ATTR { return hn::PromoteTo(d16, hn::LoadU(d8, p + i)); };
    const V16 r = load(source.pR), g = load(source.pG), b = load(source.pB);
    const V16 least = hn::Min(hn::Min(r, g), b), most = hn::Max(hn::Max(r, g), b);
    const auto leastB = hn::Eq(b, least), leastR = hn::Eq(r, least);
    const auto select = [&](V16 ifB, V16 ifR, V16 ifG) HWY_ATTR {
        return hn::IfThenElse(leastB, ifB, hn::IfThenElse(leastR, ifR, ifG));
    };
    const V16 difference = select(hn::Sub(g, r), hn::Sub(b, g), hn::Sub(r, b));
    return {hn::Mul(difference, hn::Set(d16, 60)),
            select(hn::Set(d16, 60), hn::Set(d16, 180), hn::Set(d16, 300)), hn::Sub(most, least),
            hn::Add(most, least)};
}

HWY_INLINE TPixels<V32> LowerHalf(const TPixels<V16>& p) {
    const auto half = [](V16 v) HWY_ATTR { return hn::PromoteTo(d32, hn::LowerHalf(v)); };
    return {half(p.numerator), half(p.middle), half(p.chroma), half(p.sum)};
}

HWY_INLINE TPixels<V32> UpperHalf(const TPixels<V16>& p) {
    const auto half = [](V16 v) HWY_ATTR { return hn::PromoteTo(d32, hn::UpperHalf(dHalf16, v)); };
    return {half(p.numerator), half(p.middle), half(p.chroma), half(p.sum)};
}

// Levels of the largest, middle and smallest channel, and the sixth of the circle that the hue lies in,
// counted from 180 degrees.
template <class V>
struct TLevels3 {
    V hi, mid, lo, sixth;
};

// f * 255 + 0.5, truncated; limited when it becomes a byte.
HWY_INLINE V32 Level(VF f) { return hn::ConvertTo(d32, hn::Add(hn::Mul(f, Set(255)), Set(0.5F))); }

HWY_INLINE TLevels3<V32> Adjust(const TPixels<V32>& pixels, const THsbTables& tables) {
    // The hue, in degrees from 180.
    const VF divisor = hn::Max(hn::ConvertTo(df, pixels.chroma), Set(1));
    VF h = hn::Div(hn::ConvertTo(df, pixels.numerator), divisor);
    h = hn::Add(h, hn::ConvertTo(df, pixels.middle));
    h = hn::Sub(hn::Add(hn::Add(h, Set(tables.fHue)), Set(3600)), Set(3420));
    // A multiple of 2^-12 of up to 720: the rounded factors are slightly above 1 / 60 and 1 / 120, not enough
    // to reach the next integer. At the odd corners both neighbours are as far.
    const V32 sixth = hn::ConvertTo(d32, hn::Mul(h, Set(1.0F / 60)));
    const VF corner = hn::Mul(hn::Round(hn::Mul(h, Set(1.0F / 120))), Set(120));
    const VF distance = hn::Sub(Set(60), hn::Abs(hn::Sub(h, corner)));

    VF s = hn::GatherIndex(df, tables.afChroma.data(), pixels.chroma);
    VF l = hn::GatherIndex(df, tables.afLight.data(), pixels.sum);
    const VF p = Set(tables.fSatPriority), rest = Set(1 - tables.fSatPriority);
    const auto isLight = hn::Ge(l, Set(0.5F));
    const auto mirror = [&](VF f) HWY_ATTR { return hn::IfThenElse(isLight, hn::Sub(Set(1), f), f); };
    const auto room = [&](VF f) HWY_ATTR {
        const VF half = mirror(f);
        return hn::Add(half, half);
    };
    const auto outside = hn::Gt(s, room(l));
    const VF moved = hn::Add(hn::Mul(l, rest), hn::Mul(mirror(hn::Mul(s, Set(0.5F))), p));
    l = hn::IfThenElse(outside, moved, l);
    s = hn::IfThenElse(outside, hn::Add(hn::Mul(s, p), hn::Mul(rest, room(moved))), s);

    const VF half = hn::Mul(s, Set(0.5F));
    const VF lo = hn::Sub(l, half);
    const VF hi = hn::IfThenElse(hn::Lt(s, Set(1.1920929e-07F)), lo, hn::Add(l, half));
    const VF mid = hn::Add(lo, hn::Div(hn::Mul(distance, hn::Sub(hi, lo)), Set(60)));
    return {Level(hi), Level(mid), Level(lo), sixth};
}

HWY_INLINE TLevels3<V8> ToBytes(const TLevels3<V32>& lower, const TLevels3<V32>& upper) {
    const auto bytes = [](V32 a, V32 b) HWY_ATTR {
        return hn::DemoteTo(d8, hn::Combine(d16, hn::DemoteTo(dHalf16, b), hn::DemoteTo(dHalf16, a)));
    };
    return {bytes(lower.hi, upper.hi), bytes(lower.mid, upper.mid), bytes(lower.lo, upper.lo),
            bytes(lower.sixth, upper.sixth)};
}

// In which sixths, counted as above over two turns, a channel is the largest and the middle one.
struct TRoles {
    alignas(16) uint8_t auHi[16];
    alignas(16) uint8_t auMid[16];
};
constexpr TRoles RolesFrom(int nFirstHi, int nMid) {
    TRoles roles{};
    for (int n = 0; n < 16; ++n) {
        roles.auHi[n] = (n - nFirstHi + 6) % 6 < 2 ? 255 : 0;
        roles.auMid[n] = n % 3 == nMid ? 255 : 0;
    }
    return roles;
}
constexpr TRoles ROLES_R = RolesFrom(2, 1), ROLES_G = RolesFrom(4, 0), ROLES_B = RolesFrom(0, 2);

HWY_INLINE void StoreChannel(uint8_t* pDest, const TRoles& roles, const TLevels3<V8>& levels) {
    const auto is = [&](const uint8_t* pRoles) HWY_ATTR {
        return hn::TableLookupBytes(hn::LoadDup128(dRoles, pRoles), levels.sixth);
    };
    hn::StoreU(hn::IfVecThenElse(is(roles.auHi), levels.hi,
                                 hn::IfVecThenElse(is(roles.auMid), levels.mid, levels.lo)),
               d8, pDest);
}

void Adjust(const TColorPixels& dest, const TConstColorPixels& source, const THsbTables& tables,
            size_t nCount) {
    const size_t nLanes = hn::Lanes(d16);
    size_t i = 0;
    for (; i + nLanes <= nCount; i += nLanes) {
        const TPixels<V16> pixels = LoadPixels(source, i);
        const TLevels3<V8> levels =
            ToBytes(Adjust(LowerHalf(pixels), tables), Adjust(UpperHalf(pixels), tables));
        StoreChannel(dest.pR + i, ROLES_R, levels);
        StoreChannel(dest.pG + i, ROLES_G, levels);
        StoreChannel(dest.pB + i, ROLES_B, levels);
    }
    PlainHsbKernels().pAdjust({dest.pR + i, dest.pG + i, dest.pB + i, nullptr},
                              {source.pR + i, source.pG + i, source.pB + i, nullptr}, tables, nCount - i);
}

const THsbKernels* GetHsbKernels() {
    static constexpr THsbKernels kernels{Adjust};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetHsbKernels);

const THsbKernels& VectorHsbKernels() { return *HWY_DYNAMIC_DISPATCH(GetHsbKernels)(); }
#endif
