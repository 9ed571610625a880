// Straight-alpha pixels flattened on white paper.
#pragma once

#include "core/RasterKernel/Pixels.h"

#include <cstddef>
#include <cstdint>

/// The coverage factor of an alpha byte in 1024ths: 0 for 0, 1024 for 255.
constexpr uint32_t CoverageOf(uint8_t uAlpha) { return uAlpha * 1024u / 255u; }

/// A channel byte over white under a coverage factor: 255 - (((255 - C) * k) >> 10).
constexpr uint8_t ResolveOnWhite(uint8_t uChannel, uint32_t uCoverage) {
    return static_cast<uint8_t>(255u - (((255u - uChannel) * uCoverage) >> 10));
}

/// Resolves `nCount` pixels into screen pixels, 4 bytes each: B, G, R and 255.
void ResolveRow(uint8_t* pScreen, const TConstColorPixels& src, size_t nCount);
void ResolveRow(uint8_t* pScreen, const TConstGreyPixels& src, size_t nCount);
