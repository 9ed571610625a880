// Layer blending on flat runs of planar straight-alpha pixels. All arithmetic is integer; every division
// truncates. Documents depend on the exact results: repainting a block must give the same bytes, so neither
// kernel may be changed.
#pragma once

#include "core/RasterKernel/Pixels.h"

#include <cstddef>
#include <cstdint>

/// x / 255, truncated.
constexpr uint32_t Div255(uint32_t x) { return x / 255; }

/// Fast kernel: source over destination of the same kind at full opacity without a mask, `nCount` pixels.
/// dA' = sA + dA - sA * dA / 255,  r = (sA << 10) / max(dA', 1),  dC' = dC + (((sC - dC) * r) >> 10)
/// Its colours differ from the general kernel's by rounding. Runs must not overlap.
void BlendFast(const TColorPixels& dest, const TConstColorPixels& src, size_t nCount);
void BlendFast(const TGreyPixels& dest, const TConstGreyPixels& src, size_t nCount);

/// General kernel: plane opacity `uOpacity` and an optional mask byte a pixel (null: none).
///   a = sA * opacity / 255, a = a * mask / 255,  d = dA * (255 - a) / 255,  dA' = a + d,
///   dC' = (sC * a + dC * d) / dA', or 0 where dA' is 0
/// A colour source on grey is reduced by GreyOf first; a grey source on colour serves all three channels.
void BlendGeneral(const TColorPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount);
void BlendGeneral(const TColorPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount);
void BlendGeneral(const TGreyPixels& dest, const TConstColorPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount);
void BlendGeneral(const TGreyPixels& dest, const TConstGreyPixels& src, uint8_t uOpacity,
                  const uint8_t* pMask, size_t nCount);

/// Coverage kernels: `pCover` is one byte a pixel, s = cover, with a mask s = s * mask / 255.
/// Ink on pixels with alpha: d = dA * (255 - s) / 255, dA' = s + d, dC' = (s * ink + d * dC) / dA', or 0
/// where dA' is 0.
void BlendInk(const TColorPixels& dest, const TInk& ink, const uint8_t* pCover, const uint8_t* pMask,
              size_t nCount);
void BlendInk(const TGreyPixels& dest, uint8_t uGrey, const uint8_t* pCover, const uint8_t* pMask,
              size_t nCount);
/// Takes coverage away: dA' = dA * (255 - s) / 255; colours stay.
void EraseCoverage(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount);
/// Adds coverage: dA' = s + dA * (255 - s) / 255.
void AddCoverage(uint8_t* pAlpha, const uint8_t* pCover, const uint8_t* pMask, size_t nCount);
