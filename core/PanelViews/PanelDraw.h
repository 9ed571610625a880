// Antialiased lines and discs for the views of panels, in a screen bitmap.
#pragma once

#include "core/Base/Color.h"
#include "core/GDIBuffer/GDIBuffer.h"

/// A position with fractions; the centre of the first pixel is (0.5, 0.5).
struct TDrawPoint {
    double x = 0;
    double y = 0;
};

/// A colour between two: 0 gives the first, 1 the second.
TColor MixColors(TColor from, TColor to, double dPart);
void FillColor(CGDIBuffer& target, const CRect& rc, TColor color);
/// Draws a frame, one pixel wide, along the inside of a rectangle.
void FrameColor(CGDIBuffer& target, const CRect& rc, TColor color);
/// Blends a colour over a pixel; `dCoverage` 0 to 1. Positions outside are ignored.
void BlendPixel(CGDIBuffer& target, CPoint pt, TColor color, double dCoverage);
void DrawLine(CGDIBuffer& target, TDrawPoint from, TDrawPoint to, double dWidth, TColor color);
/// Draws a filled disc, or with `dWidth` above 0 a ring of that width.
void DrawDisc(CGDIBuffer& target, TDrawPoint ptCentre, double dRadius, double dWidth, TColor color);
