// Keeps the picture's point in a view's middle while the canvas changes its size.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasFrame/CanvasView.h"

/// Keeps the picture's pixel in the middle of the window. As long as the user has not moved the view since,
/// the pixel of before the first change counts: undo leads back to it, also where a smaller or reduced canvas
/// could not show it in the middle.
class CViewPlace {
public:
    /// The view has the canvas's size.
    explicit CViewPlace(const CCanvasBuffer& canvas) : m_place(canvas.GetPlace()), m_first(m_place) {}

    /// True when the canvas has changed its size or place since Follow.
    bool IsStale(const CCanvasBuffer& canvas, const CCanvasView& view) const;
    /// Gives the view the canvas's size.
    void Follow(const CCanvasBuffer& canvas, CCanvasView& view);

private:
    TCanvasPlace m_place; ///< of the canvas as the view knows it
    CPoint m_ptShown;     ///< the pixel that came to the middle then
    TCanvasPlace m_first; ///< of the canvas when the user moved the view
    CPoint m_ptFirst;     ///< the pixel in the middle at that time
};
