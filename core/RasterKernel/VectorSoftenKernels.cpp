// The vector form of the softening filter, one source for every instruction set that Highway knows here.
//
// The sum, at most 3066, stays in 16-bit lanes; its twelfth is the high half of the product with 2^19 / 12,
// rounded up, shifted by 3. Blocks that are no whole vectors wide are rare.
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

void Soften(const TSoftenBlock& block) {
    const hn::CappedTag<uint16_t, 16> d;
    const hn::Rebind<uint8_t, decltype(d)> d8;
    const hn::RebindToSigned<decltype(d)> dSigned;
    const auto load = [&](const uint8_t* p) { return hn::PromoteTo(d, hn::LoadU(d8, p)); };
    const auto half = hn::Set(d, 6);
    const auto twelfth = hn::Set(d, 43691);
    if (block.nCount % hn::Lanes(d) != 0) {
        PlainSoftenKernels().pSoften(block);
        return;
    }
    for (size_t x = 0; x < block.nCount; x += hn::Lanes(d)) {
        uint8_t* pDest = block.pDest + x;
        auto above = load(block.apRows[0] + x);
        auto row = load(block.apRows[1] + x);
        for (size_t y = 1; y <= block.nRows; ++y, pDest += block.nStride) {
            const uint8_t* pRow = block.apRows[y] + x;
            const auto below = load(block.apRows[y + 1] + x);
            const auto beside = hn::Add(load(pRow - 1), load(pRow + 1));
            const auto centre = hn::Add(hn::ShiftLeft<3>(row), half);
            const auto sum = hn::Add(hn::Add(beside, hn::Add(above, below)), centre);
            const auto value = hn::ShiftRight<3>(hn::MulHigh(sum, twelfth));
            const auto value8 = hn::DemoteTo(d8, hn::BitCast(dSigned, value));
            hn::StoreU(hn::Max(hn::LoadU(d8, pDest), value8), d8, pDest);
            above = row;
            row = below;
        }
    }
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
