// Rasterises thin lines to pixels, before a pen gives them width and colour.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <span>
#include <vector>

/// Subpixel steps of a TFinePoint.
constexpr int64_t FINE = 16;

/// A position in 1 / FINE of a pixel. Whole pixels are pixel positions.
struct TFinePoint {
    int64_t x;
    int64_t y;
};

/// Collects the pixels of one shape. Parts outside the clip cost nothing; the clip does not change the
/// pixels inside it.
class CShapePixels {
public:
    struct TPixel {
        CPoint pt;
        int64_t nAlong; ///< distance from the shape's beginning in pixels
    };

    explicit CShapePixels(const CRect& rcClip) : m_rcClip(rcClip) {}

    /// Lines from point to point, both ends included, with one pixel for each step of the longer axis.
    void AddPolyline(std::span<const TFinePoint> points);
    /// The ellipse inscribed in a rectangle, right and bottom included. Its pixels are not in the line's
    /// order.
    void AddEllipse(const CRect& rc);
    const std::vector<TPixel>& GetPixels() const { return m_vPixels; }

private:
    void AddLine(TFinePoint from, TFinePoint to);
    void Add(CPoint pt, int64_t nAlong);

    CRect m_rcClip;
    std::vector<TPixel> m_vPixels;
    int64_t m_nAlong = 0;
};

/// Converts whole pixels; coordinates are clamped to 2^24.
std::vector<TFinePoint> ToFine(std::span<const CPoint> points);
/// Points on consecutive cubic curves (a point, then two handles and a point for each), dense enough for
/// the connecting lines to look like the curves.
std::vector<TFinePoint> FlattenCurves(std::span<const CPoint> points);
/// The same for the ellipse inscribed in a rectangle, right and bottom included.
std::vector<TFinePoint> FlattenEllipse(const CRect& rc);
/// The bounds of the pixels of lines between the points.
CRect BoundsOf(std::span<const TFinePoint> points);
