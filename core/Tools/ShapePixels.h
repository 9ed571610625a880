// The pixels of thin lines, before a pen gives them width and colour.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <span>
#include <vector>

/// Steps of a pixel in a TFinePoint.
constexpr int64_t FINE = 16;

/// A position in 1 / FINE of a pixel. Whole numbers of pixels are the pixels' own places.
struct TFinePoint {
    int64_t x;
    int64_t y;
};

/// Collects the pixels of one shape. What lies outside the clip is left out at no cost; which pixels lie
/// inside does not depend on it.
class CShapePixels {
public:
    struct TPixel {
        CPoint pt;
        int64_t nAlong; ///< pixels from the shape's beginning
    };

    explicit CShapePixels(const CRect& rcClip) : m_rcClip(rcClip) {}

    /// Lines from point to point, both ends included. Between two of them there is one pixel in each step of
    /// the longer axis.
    void AddPolyline(std::span<const TFinePoint> points);
    /// An ellipse line that touches all four edges, right and bottom included. Not in the order of the line.
    void AddEllipse(const CRect& rc);
    const std::vector<TPixel>& GetPixels() const { return m_vPixels; }

private:
    void AddLine(TFinePoint from, TFinePoint to);
    void Add(CPoint pt, int64_t nAlong);

    CRect m_rcClip;
    std::vector<TPixel> m_vPixels;
    int64_t m_nAlong = 0;
};

/// Whole pixels; those further than 2^24 from the origin are brought there.
std::vector<TFinePoint> ToFine(std::span<const CPoint> points);
/// Points on cubic curves one behind the other (a point, then two handles and a point for each), so dense
/// that the lines between them look like the curves.
std::vector<TFinePoint> FlattenCurves(std::span<const CPoint> points);
/// The same for the ellipse that touches the edges of a rectangle, right and bottom included.
std::vector<TFinePoint> FlattenEllipse(const CRect& rc);
/// The smallest rectangle around the pixels of lines between some points.
CRect BoundsOf(std::span<const TFinePoint> points);
