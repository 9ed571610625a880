// The pixels that outlines can touch, and how many rows of them are filled at once.
#pragma once

#include "core/Base/Geometry.h"

#include <span>

/// Raises an invalid_argument violation for lists that are no closed outline in PolyBezier order.
void CheckOutline(std::span<const CPoint> points);

/// The pixels of a plane, whose top left pixel is `ptOrigin` on the canvas, that an outline's hull and the
/// filter around it can touch. Points are eighths of a canvas pixel.
CRect ReachOf(std::span<const CPoint> points, CPoint ptOrigin, CSize szPlane);

/// Counting a band of rows needs memory for each crossing: tall outlines of many segments are cut into bands.
/// The height of bands of `rcTarget` (in the plane), a multiple of `nStep`.
int32_t BandHeight(std::span<const std::span<const CPoint>> outlines, CPoint ptOrigin, CSize szPlane,
                   const CRect& rcTarget, int32_t nStep);

/// `n`, which is not negative, rounded up to a multiple of `nStep`.
inline int32_t RoundUp(int32_t n, int32_t nStep) { return (n + nStep - 1) / nStep * nStep; }
