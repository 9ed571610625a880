#include "core/RasterKernel/BlendKernel.h"

#include "core/RasterKernel/KernelChoice.h"
#include "core/RasterKernel/Kernels.h"
#include "core/RasterKernel/ResolveKernel.h"

namespace {

const TBlendKernels& Kernels() { return UsesVectorKernels() ? VectorKernels() : PlainKernels(); }

} // namespace

void BlendFast(const TColorPixels& dest, const TConstColorPixels& src, size_t nCount) {
    Kernels().pFastColor(dest, src, nCount);
}

void BlendFast(const TGreyPixels& dest, const TConstGreyPixels& src, size_t nCount) {
    Kernels().pFastGrey(dest, src, nCount);
}

void BlendGeneral(const TColorPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount) {
    Kernels().pGeneralColorOnColor(dest, src, uOpacity, pMask, nCount);
}

void BlendGeneral(const TColorPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount) {
    const TConstColorPixels asColor{src.pGrey, src.pGrey, src.pGrey, src.pA};
    Kernels().pGeneralColorOnColor(dest, asColor, uOpacity, pMask, nCount);
}

void BlendGeneral(const TGreyPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount) {
    Kernels().pGeneralColorOnGrey(dest, src, uOpacity, pMask, nCount);
}

void BlendGeneral(const TGreyPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount) {
    Kernels().pGeneralGreyOnGrey(dest, src, uOpacity, pMask, nCount);
}

void BlendInk(const TColorPixels& dest, const TInk& ink, const uint8_t* pCover, const uint8_t* pMask,
              size_t nCount) {
    Kernels().pInkOnColor(dest, ink, pCover, pMask, nCount);
}

void BlendInk(const TGreyPixels& dest, uint8_t uGrey, const uint8_t* pCover, const uint8_t* pMask,
              size_t nCount) {
    Kernels().pInkOnGrey(dest, uGrey, pCover, pMask, nCount);
}

void EraseCoverage(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    Kernels().pErase(pAlpha, pCover, pMask, nCount);
}

void AddCoverage(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount) {
    Kernels().pCover(pAlpha, pCover, pMask, nCount);
}

void ResolveRow(uint8_t* pScreen, const TConstColorPixels& src, size_t nCount) {
    Kernels().pResolveColor(pScreen, src, nCount);
}

void ResolveRow(uint8_t* pScreen, const TConstGreyPixels& src, size_t nCount) {
    Kernels().pResolveGrey(pScreen, src, nCount);
}
