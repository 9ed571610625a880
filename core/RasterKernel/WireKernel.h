// Conversion between byte planes and the interleaved pixels of files.
#pragma once

#include "core/RasterKernel/Pixels.h"

#include <cstddef>
#include <cstdint>

/// Converts `nCount` pixels to and from B, G, R, A bytes. Vector loops for every instruction set, the rest
/// of a row pixel by pixel; planes and bytes must not overlap.
void Interleave(uint8_t* pBgra, const TConstColorPixels& src, size_t nCount);
void Deinterleave(const TColorPixels& dest, const uint8_t* pBgra, size_t nCount);
/// The same for grey, A bytes.
void Interleave(uint8_t* pGreyA, const TConstGreyPixels& src, size_t nCount);
void Deinterleave(const TGreyPixels& dest, const uint8_t* pGreyA, size_t nCount);
