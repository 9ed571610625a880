// What a tool draws over the canvas, in client pixels: drawn into a copy of the window's pixels, or only
// measured.
#pragma once

#include "core/GDIBuffer/GDIBuffer.h"

#include <boost/function.hpp>

/// Maps a canvas position in eighths of a pixel to a client position.
using TOverlayMapper = boost::function<CPoint(CPoint)>;

class COverlay {
public:
    /// Measures: nothing is drawn.
    COverlay() = default;
    /// Draws into `target`, only inside `rcClip`.
    COverlay(CGDIBuffer& target, const CRect& rcClip)
        : m_pTarget(&target), m_rcClip(rcClip.Intersect(CRect({0, 0}, target.GetSize()))) {}

    /// A circle line of one pixel that inverts what lies under it, so that it shows on every ground. `rc` is
    /// the circle's bounding rectangle, both edges included; an ellipse where the sides differ.
    void InvertEllipse(const CRect& rc);
    /// The icon of 16 by 16 pixels for taking colours, light and dark, so that it shows on every ground. `pt`
    /// lies in its middle, which stays free. Counts as 17 by 17 around `pt`.
    void DrawPickIcon(CPoint pt);
    /// The pixels that were drawn, or would have been, as a rectangle; empty when there are none.
    const CRect& GetBounds() const { return m_rcBounds; }

private:
    uint8_t* Pixel(CPoint pt);

    CGDIBuffer* m_pTarget = nullptr;
    CRect m_rcClip;
    CRect m_rcBounds;
};
