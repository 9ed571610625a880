// The blending kernels as a table, so that one call site serves the reference and the vector forms.
#pragma once

#include "core/RasterKernel/Pixels.h"

#include <cstddef>
#include <cstdint>

/// One form of every kernel, as defined in BlendKernel.h and ResolveKernel.h; all forms give the same
/// bytes.
struct TBlendKernels {
    void (*pFastColor)(const TColorPixels& dest, const TConstColorPixels& src, size_t nCount);
    void (*pFastGrey)(const TGreyPixels& dest, const TConstGreyPixels& src, size_t nCount);
    void (*pGeneralColorOnColor)(const TColorPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                                 const uint8_t* pMask, size_t nCount);
    void (*pGeneralColorOnGrey)(const TGreyPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                                const uint8_t* pMask, size_t nCount);
    void (*pGeneralGreyOnGrey)(const TGreyPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                               const uint8_t* pMask, size_t nCount);
    void (*pInkOnColor)(const TColorPixels& dest, const TInk& ink, const uint8_t* pCover,
                        const uint8_t* pMask, size_t nCount);
    void (*pInkOnGrey)(const TGreyPixels& dest, uint8_t uGrey, const uint8_t* pCover, const uint8_t* pMask,
                       size_t nCount);
    void (*pErase)(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount);
    void (*pCover)(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount);
    void (*pResolveColor)(uint8_t* pScreen, const TConstColorPixels& src, size_t nCount);
    void (*pResolveGrey)(uint8_t* pScreen, const TConstGreyPixels& src, size_t nCount);
};

/// The reference forms: pixel by pixel, readable, the same on every machine.
const TBlendKernels& PlainKernels();

/// The vector forms, compiled for several instruction sets and selected at run time.
const TBlendKernels& VectorKernels();
