// What a tool draws over the canvas, in client pixels: drawn into a copy of the window's pixels, or only
// measured.
#pragma once

#include "core/Base/Color.h"
#include "core/GDIBuffer/GDIBuffer.h"

#include <boost/function.hpp>

#include <concepts>
#include <optional>
#include <span>

class CShapePixels;
struct TFinePoint;

/// Dots to the inch of a screen of 100 percent.
constexpr int32_t DPI_NORMAL = 96;

/// Maps a canvas position in eighths of a pixel to a client position; knows how fine the screen is.
class TOverlayMapper {
public:
    template <std::invocable<CPoint> TMap>
    TOverlayMapper(TMap fnMap, int32_t nDpi = DPI_NORMAL) : m_fnMap(std::move(fnMap)), m_nDpi(nDpi) {}

    CPoint operator()(CPoint pt) const { return m_fnMap(pt); }
    int32_t GetDpi() const { return m_nDpi; }

private:
    boost::function<CPoint(CPoint)> m_fnMap;
    int32_t m_nDpi;
};

/// How a line is drawn. It is as many whole device pixels wide as a pixel of 96 dots to the inch is there.
struct TOverlayPen {
    TColor color = 0;
    bool bInvert = false; ///< in place of the colour: inverts what lies under it, to show on every ground
    bool bDashed = false; ///< 4 pixels of 96 to the inch drawn, 4 left out
};

/// Positions are client positions, device pixels; sizes that are named as such are pixels of 96 to the inch.
class COverlay {
public:
    /// Measures: nothing is drawn.
    explicit COverlay(int32_t nDpi = DPI_NORMAL) : m_nDpi(nDpi) {}
    /// Draws into `target`, only inside `rcClip`.
    COverlay(CGDIBuffer& target, const CRect& rcClip, int32_t nDpi = DPI_NORMAL)
        : m_pTarget(&target), m_rcClip(rcClip.Intersect(CRect({0, 0}, target.GetSize()))), m_nDpi(nDpi) {}

    /// A line with both ends.
    void DrawLine(CPoint ptFrom, CPoint ptTo, const TOverlayPen& pen);
    /// Lines from point to point; dashes run on. Closed where the last point is the first.
    void DrawPolyline(std::span<const CPoint> points, const TOverlayPen& pen);
    /// The four edges of a rectangle, right and bottom included.
    void DrawRect(const CRect& rc, const TOverlayPen& pen);
    /// The ellipse line that touches the four edges, right and bottom included.
    void DrawEllipse(const CRect& rc, const TOverlayPen& pen);
    /// Cubic curves one behind the other: a point, then two handles and a point for each.
    void DrawCurves(std::span<const CPoint> points, const TOverlayPen& pen);
    /// A square around `pt` that reaches `nReach` pixels of 96 to the inch to each side, filled or not.
    void DrawSquare(CPoint pt, int32_t nReach, std::optional<TColor> fill, const TOverlayPen& pen);
    /// Fills a rectangle, right and bottom not included.
    void FillRect(const CRect& rc, TColor color);
    /// The icon of 16 by 16 pixels of 96 to the inch for taking colours, light and dark, so that it shows on
    /// every ground. `pt` lies in its middle, which stays free. Counts as 17 by 17 around `pt`.
    void DrawPickIcon(CPoint pt);

    /// Device pixels of a length in pixels of 96 to the inch, at least 1.
    int32_t ToDevice(int32_t n) const;
    /// The smallest rectangle around what was drawn, or would have been without the clip; empty when there is
    /// nothing.
    const CRect& GetBounds() const { return m_rcBounds; }

private:
    void StrokeLines(std::span<const TFinePoint> points, const TOverlayPen& pen);
    void Stroke(const CShapePixels& shape, const TOverlayPen& pen);
    void Measure(const CRect& rcPoints);

    CGDIBuffer* m_pTarget = nullptr;
    CRect m_rcClip;
    CRect m_rcBounds;
    int32_t m_nDpi;
};
