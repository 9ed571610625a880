// Smooth lines and discs for the views of panels, in a screen bitmap.
#pragma once

#include "core/Base/Color.h"
#include "core/GDIBuffer/GDIBuffer.h"

/// A position with fractions; the middle of the first pixel is (0.5, 0.5).
struct TDrawPoint {
    double x = 0;
    double y = 0;
};

void FillColor(CGDIBuffer& target, const CRect& rc, TColor color);
/// One pixel of lines around the inside of a rectangle.
void FrameColor(CGDIBuffer& target, const CRect& rc, TColor color);
/// Lays a colour over a pixel; `dCoverage` 0 to 1. Outside nothing happens.
void BlendPixel(CGDIBuffer& target, CPoint pt, TColor color, double dCoverage);
void DrawLine(CGDIBuffer& target, TDrawPoint from, TDrawPoint to, double dWidth, TColor color);
/// A filled disc; with `dWidth` above 0 only its rim of that width.
void DrawDisc(CGDIBuffer& target, TDrawPoint ptCentre, double dRadius, double dWidth, TColor color);
