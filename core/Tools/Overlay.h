// The overlay that a tool draws over the canvas, in client pixels: drawn into a copy of the window's
// pixels, or only measured.
#pragma once

#include "core/Base/Color.h"
#include "core/GDIBuffer/GDIBuffer.h"

#include <boost/function.hpp>

#include <concepts>
#include <optional>
#include <span>

class CShapePixels;
struct TFinePoint;

/// Dots per inch of a screen at 100 percent.
constexpr int32_t DPI_NORMAL = 96;

/// Maps a canvas position in eighths of a pixel to a client position; holds the screen's resolution.
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

/// The style of a line. Its width is a pixel at 96 dots per inch, in whole device pixels.
struct TOverlayPen {
    TColor color = 0;
    bool bInvert = false; ///< inverts the pixels below instead of using the colour, for contrast
    bool bDashed = false; ///< 4 pixels (at 96 dpi) drawn, 4 left out
};

/// Positions are client positions in device pixels; sizes marked so are pixels at 96 dots per inch.
class COverlay {
public:
    /// Only measures, draws nothing.
    explicit COverlay(int32_t nDpi = DPI_NORMAL) : m_nDpi(nDpi) {}
    /// Draws into `target`, only inside `rcClip`.
    COverlay(CGDIBuffer& target, const CRect& rcClip, int32_t nDpi = DPI_NORMAL)
        : m_pTarget(&target), m_rcClip(rcClip.Intersect(CRect({0, 0}, target.GetSize()))), m_nDpi(nDpi) {}

    /// A line including both ends.
    void DrawLine(CPoint ptFrom, CPoint ptTo, const TOverlayPen& pen);
    /// Lines from point to point with continuous dashes. Closed when the last point is the first.
    void DrawPolyline(std::span<const CPoint> points, const TOverlayPen& pen);
    /// The four edges of a rectangle, right and bottom included.
    void DrawRect(const CRect& rc, const TOverlayPen& pen);
    /// The ellipse inscribed in a rectangle, right and bottom included.
    void DrawEllipse(const CRect& rc, const TOverlayPen& pen);
    /// Consecutive cubic curves: a point, then two handles and a point for each.
    void DrawCurves(std::span<const CPoint> points, const TOverlayPen& pen);
    /// A square around `pt` that reaches `nReach` pixels (at 96 dpi) to each side, filled or not.
    void DrawSquare(CPoint pt, int32_t nReach, std::optional<TColor> fill, const TOverlayPen& pen);
    /// Fills a rectangle, right and bottom excluded.
    void FillRect(const CRect& rc, TColor color);
    /// The icon for picking colours, 16 by 16 pixels at 96 dpi, light and dark for contrast on every
    /// ground. `pt` is its centre, which stays free. Its bounds are 17 by 17 around `pt`.
    void DrawPickIcon(CPoint pt);

    /// The client pixels that are drawn, the others being clipped.
    const CRect& GetClip() const { return m_rcClip; }
    /// Converts a length in pixels at 96 dpi to device pixels, at least 1.
    int32_t ToDevice(int32_t n) const;
    /// The bounds of what was drawn, ignoring the clip; empty when there is nothing.
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
