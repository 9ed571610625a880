// The reference forms, which define the kernels.
#include "core/Base/Color.h"
#include "core/RasterKernel/BlendKernel.h"
#include "core/RasterKernel/Kernels.h"
#include "core/RasterKernel/ResolveKernel.h"

#include <algorithm>

namespace {

// One pixel's coverages, shared by its channels.
struct TWeights {
    uint32_t uSource;
    uint32_t uDest;
    uint32_t uSum;
};

TWeights WeighGeneral(uint32_t sA, uint32_t dA, uint32_t uOpacity, const uint8_t* pMask, size_t i) {
    uint32_t a = Div255(sA * uOpacity);
    if (pMask) a = Div255(a * pMask[i]);
    const uint32_t d = Div255(dA * (255 - a));
    return {a, d, a + d};
}

uint8_t MixGeneral(uint32_t sC, uint32_t dC, const TWeights& w) {
    return static_cast<uint8_t>((sC * w.uSource + dC * w.uDest) / w.uSum);
}

struct TRatio {
    uint8_t uAlpha;
    int32_t nRatio;
};

TRatio RatioFast(uint32_t sA, uint32_t dA) {
    const uint32_t uAlpha = sA + dA - Div255(sA * dA);
    return {static_cast<uint8_t>(uAlpha), static_cast<int32_t>((sA << 10) / std::max(uAlpha, 1u))};
}

uint8_t MixFast(int32_t sC, int32_t dC, int32_t nRatio) {
    return static_cast<uint8_t>(dC + (((sC - dC) * nRatio) >> 10));
}

// `source(i)` returns the grey level of source pixel i.
template <class GreySource>
void BlendOnGrey(const TGreyPixels& dest, const uint8_t* pAlpha, GreySource source, uint8_t uOpacity,
                 const uint8_t* pMask, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        const TWeights w = WeighGeneral(pAlpha[i], dest.pA[i], uOpacity, pMask, i);
        dest.pA[i] = static_cast<uint8_t>(w.uSum);
        dest.pGrey[i] = w.uSum ? MixGeneral(source(i), dest.pGrey[i], w) : 0;
    }
}

void FastColor(const TColorPixels& dest, const TConstColorPixels& src, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        const TRatio ratio = RatioFast(src.pA[i], dest.pA[i]);
        dest.pA[i] = ratio.uAlpha;
        dest.pR[i] = MixFast(src.pR[i], dest.pR[i], ratio.nRatio);
        dest.pG[i] = MixFast(src.pG[i], dest.pG[i], ratio.nRatio);
        dest.pB[i] = MixFast(src.pB[i], dest.pB[i], ratio.nRatio);
    }
}

void FastGrey(const TGreyPixels& dest, const TConstGreyPixels& src, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        const TRatio ratio = RatioFast(src.pA[i], dest.pA[i]);
        dest.pA[i] = ratio.uAlpha;
        dest.pGrey[i] = MixFast(src.pGrey[i], dest.pGrey[i], ratio.nRatio);
    }
}

void GeneralColorOnColor(const TColorPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                         const uint8_t* pMask, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        const TWeights w = WeighGeneral(src.pA[i], dest.pA[i], uOpacity, pMask, i);
        dest.pA[i] = static_cast<uint8_t>(w.uSum);
        dest.pR[i] = w.uSum ? MixGeneral(src.pR[i], dest.pR[i], w) : 0;
        dest.pG[i] = w.uSum ? MixGeneral(src.pG[i], dest.pG[i], w) : 0;
        dest.pB[i] = w.uSum ? MixGeneral(src.pB[i], dest.pB[i], w) : 0;
    }
}

void GeneralColorOnGrey(const TGreyPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                        const uint8_t* pMask, size_t nCount) {
    const auto grey = [&](size_t i) { return GreyOf(src.pR[i], src.pG[i], src.pB[i]); };
    BlendOnGrey(dest, src.pA, grey, uOpacity, pMask, nCount);
}

void GeneralGreyOnGrey(const TGreyPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                       const uint8_t* pMask, size_t nCount) {
    BlendOnGrey(
        dest, src.pA, [&](size_t i) { return src.pGrey[i]; }, uOpacity, pMask, nCount);
}

void InkOnColor(const TColorPixels& dest, const TInk& ink, const uint8_t* pCover, const uint8_t* pMask,
                size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        // Ink is a source of one colour whose alpha is the coverage.
        const TWeights w = WeighGeneral(pCover[i], dest.pA[i], 255, pMask, i);
        dest.pA[i] = static_cast<uint8_t>(w.uSum);
        dest.pR[i] = w.uSum ? MixGeneral(ink.uR, dest.pR[i], w) : 0;
        dest.pG[i] = w.uSum ? MixGeneral(ink.uG, dest.pG[i], w) : 0;
        dest.pB[i] = w.uSum ? MixGeneral(ink.uB, dest.pB[i], w) : 0;
    }
}

void InkOnGrey(const TGreyPixels& dest, uint8_t uGrey, const uint8_t* pCover, const uint8_t* pMask,
               size_t nCount) {
    BlendOnGrey(
        dest, pCover, [&](size_t) { return uGrey; }, 255, pMask, nCount);
}

void Erase(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i)
        pAlpha[i] = static_cast<uint8_t>(WeighGeneral(pCover[i], pAlpha[i], 255, pMask, i).uDest);
}

void Cover(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i)
        pAlpha[i] = static_cast<uint8_t>(WeighGeneral(pCover[i], pAlpha[i], 255, pMask, i).uSum);
}

void ResolveColor(uint8_t* pScreen, const TConstColorPixels& src, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i, pScreen += 4) {
        const uint32_t k = CoverageOf(src.pA[i]);
        pScreen[0] = ResolveOnWhite(src.pB[i], k);
        pScreen[1] = ResolveOnWhite(src.pG[i], k);
        pScreen[2] = ResolveOnWhite(src.pR[i], k);
        pScreen[3] = 255;
    }
}

void ResolveGrey(uint8_t* pScreen, const TConstGreyPixels& src, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i, pScreen += 4) {
        pScreen[0] = pScreen[1] = pScreen[2] = ResolveOnWhite(src.pGrey[i], CoverageOf(src.pA[i]));
        pScreen[3] = 255;
    }
}

} // namespace

const TBlendKernels& PlainKernels() {
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
    return kernels;
}
