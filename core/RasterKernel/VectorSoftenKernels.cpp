// The vector form of the softening filter, one source for every instruction set that Highway knows here.
//
// The sum, at most 3066, stays in 16-bit lanes; its twelfth is the high half of the product with 2^19 / 12,
// rounded up, shifted by 3.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorSoftenKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/SoftenKernel.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

const TSoftenKernels* GetSoftenKernels() { return &PlainSoftenKernels(); }

#else

namespace hn = hwy::HWY_NAMESPACE;

// As many whole vectors as fit from the value `x` on. Returns the values done.
template <class D>
HWY_INLINE size_t SoftenFrom(D d, size_t x, uint8_t* pDest, const TSoftenRows& rows) {
    const hn::Rebind<uint8_t, D> d8;
    const hn::RebindToSigned<D> dSigned;
    const auto load = [&](const uint8_t* p) { return hn::PromoteTo(d, hn::LoadU(d8, p)); };
    const auto half = hn::Set(d, 6);
    const auto twelfth = hn::Set(d, 43691);
    for (; x + hn::Lanes(d) <= rows.nCount; x += hn::Lanes(d)) {
        const uint8_t* pRow = rows.pRow + x;
        const auto beside = hn::Add(load(pRow - 1), load(pRow + 1));
        const auto over = hn::Add(load(rows.pAbove + x), load(rows.pBelow + x));
        const auto centre = hn::Add(hn::ShiftLeft<3>(load(pRow)), half);
        const auto sum = hn::Add(hn::Add(beside, over), centre);
        const auto value = hn::ShiftRight<3>(hn::MulHigh(sum, twelfth));
        const auto value8 = hn::DemoteTo(d8, hn::BitCast(dSigned, value));
        hn::StoreU(hn::Max(hn::LoadU(d8, pDest + x), value8), d8, pDest + x);
    }
    return x;
}

void Soften(uint8_t* pDest, const TSoftenRows& rows) {
    // Sixteen values are the rule: what lies around one edge.
    size_t x = rows.nCount >= 32 ? SoftenFrom(hn::ScalableTag<uint16_t>(), 0, pDest, rows) : 0;
    x = SoftenFrom(hn::CappedTag<uint16_t, 16>(), x, pDest, rows);
    if (x < rows.nCount)
        PlainSoftenKernels().pSoften(pDest + x,
                                     {rows.pAbove + x, rows.pRow + x, rows.pBelow + x, rows.nCount - x});
}

const TSoftenKernels* GetSoftenKernels() {
    static constexpr TSoftenKernels kernels{Soften};
    return &kernels;
}

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetSoftenKernels);

const TSoftenKernels& VectorSoftenKernels() { return *HWY_DYNAMIC_DISPATCH(GetSoftenKernels)(); }
#endif
