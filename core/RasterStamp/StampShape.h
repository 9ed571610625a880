// The size of a round stamp, computed from radius and hardness: the disc and the spacing.
#pragma once

#include <cstddef>
#include <cstdint>

/// Radii of a stamp in 8192ths of a plane pixel, that is 1024ths of a cell, an eighth of a pixel.
struct TStampShape {
    uint32_t uCore;  ///< of the solid core
    uint32_t uOuter; ///< radius of the whole stamp

    /// Half the side of the disc's cells, with room for every subpixel position.
    uint32_t GetHalfCells() const { return (uOuter >> 10) + 32; }
    /// Half the side of the stamp in plane pixels.
    uint32_t GetHalfSize() const { return (GetHalfCells() >> 3) - 2; }
};

/// The shape for a radius (8192ths of a plane pixel), a hardness in percent and `nScale` plane pixels to a
/// canvas pixel. The edge around the core is at least one to two canvas pixels wide.
TStampShape MakeStampShape(uint32_t uRadius, uint32_t uBlurLevel, int nScale);

/// The distance to the next stamp in eighths of a plane pixel.
uint32_t SpacingOf(const TStampShape& shape, uint32_t uBlurLevel, int nScale);

/// Stamps are stored row by row with zeros around every row, at least STAMP_MARGIN before and after it, so
/// that whole vectors can be read beyond its ends.
constexpr size_t STAMP_MARGIN = 8;

/// Values from one row of a stamp to the next.
constexpr size_t StampStride(uint32_t uHalfSize) {
    return (size_t{2} * uHalfSize + STAMP_MARGIN - 1) / STAMP_MARGIN * STAMP_MARGIN + STAMP_MARGIN;
}
/// Values of a stored stamp; its first pixel is the value STAMP_MARGIN.
constexpr size_t StampLength(uint32_t uHalfSize) {
    return STAMP_MARGIN + size_t{2} * uHalfSize * StampStride(uHalfSize);
}
