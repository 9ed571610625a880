// One source for every instruction set that Highway knows here; it only moves bytes, so all forms give the
// same results.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/WireKernel.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/WireKernel.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<uint8_t>;
constexpr D8 d8;

void InterleaveColor(uint8_t* pBgra, const TConstColorPixels& src, size_t nCount) {
    size_t i = 0;
    for (; i + hn::Lanes(d8) <= nCount; i += hn::Lanes(d8))
        hn::StoreInterleaved4(hn::LoadU(d8, src.pB + i), hn::LoadU(d8, src.pG + i), hn::LoadU(d8, src.pR + i),
                              hn::LoadU(d8, src.pA + i), d8, pBgra + i * 4);
    for (; i < nCount; ++i) {
        pBgra[i * 4] = src.pB[i];
        pBgra[i * 4 + 1] = src.pG[i];
        pBgra[i * 4 + 2] = src.pR[i];
        pBgra[i * 4 + 3] = src.pA[i];
    }
}

void DeinterleaveColor(const TColorPixels& dest, const uint8_t* pBgra, size_t nCount) {
    size_t i = 0;
    hn::Vec<D8> b, g, r, a;
    for (; i + hn::Lanes(d8) <= nCount; i += hn::Lanes(d8)) {
        hn::LoadInterleaved4(d8, pBgra + i * 4, b, g, r, a);
        hn::StoreU(b, d8, dest.pB + i);
        hn::StoreU(g, d8, dest.pG + i);
        hn::StoreU(r, d8, dest.pR + i);
        hn::StoreU(a, d8, dest.pA + i);
    }
    for (; i < nCount; ++i) {
        dest.pB[i] = pBgra[i * 4];
        dest.pG[i] = pBgra[i * 4 + 1];
        dest.pR[i] = pBgra[i * 4 + 2];
        dest.pA[i] = pBgra[i * 4 + 3];
    }
}

void InterleaveGrey(uint8_t* pGreyA, const TConstGreyPixels& src, size_t nCount) {
    size_t i = 0;
    for (; i + hn::Lanes(d8) <= nCount; i += hn::Lanes(d8))
        hn::StoreInterleaved2(hn::LoadU(d8, src.pGrey + i), hn::LoadU(d8, src.pA + i), d8, pGreyA + i * 2);
    for (; i < nCount; ++i) {
        pGreyA[i * 2] = src.pGrey[i];
        pGreyA[i * 2 + 1] = src.pA[i];
    }
}

void DeinterleaveGrey(const TGreyPixels& dest, const uint8_t* pGreyA, size_t nCount) {
    size_t i = 0;
    hn::Vec<D8> grey, a;
    for (; i + hn::Lanes(d8) <= nCount; i += hn::Lanes(d8)) {
        hn::LoadInterleaved2(d8, pGreyA + i * 2, grey, a);
        hn::StoreU(grey, d8, dest.pGrey + i);
        hn::StoreU(a, d8, dest.pA + i);
    }
    for (; i < nCount; ++i) {
        dest.pGrey[i] = pGreyA[i * 2];
        dest.pA[i] = pGreyA[i * 2 + 1];
    }
}

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(InterleaveColor);
HWY_EXPORT(DeinterleaveColor);
HWY_EXPORT(InterleaveGrey);
HWY_EXPORT(DeinterleaveGrey);

void Interleave(uint8_t* pBgra, const TConstColorPixels& src, size_t nCount) {
    HWY_DYNAMIC_DISPATCH(InterleaveColor)(pBgra, src, nCount);
}

void Deinterleave(const TColorPixels& dest, const uint8_t* pBgra, size_t nCount) {
    HWY_DYNAMIC_DISPATCH(DeinterleaveColor)(dest, pBgra, nCount);
}

void Interleave(uint8_t* pGreyA, const TConstGreyPixels& src, size_t nCount) {
    HWY_DYNAMIC_DISPATCH(InterleaveGrey)(pGreyA, src, nCount);
}

void Deinterleave(const TGreyPixels& dest, const uint8_t* pGreyA, size_t nCount) {
    HWY_DYNAMIC_DISPATCH(DeinterleaveGrey)(dest, pGreyA, nCount);
}
#endif
