// A view's transform in exact integer arithmetic: zoom, rotation, flips, extent and scroll offset.
#pragma once

#include "core/Base/Geometry.h"
#include "core/GDIBuffer/ScreenMap.h"

#include <cstdint>

/// One view of a canvas. Window positions are client pixels.
class CCanvasView {
public:
    /// Sets the canvas's size in pixels; the canvas point at the window's centre stays there.
    void SetCanvasSize(CSize szCanvas) { SetCanvasSize(szCanvas, GetCentre()); }
    /// The same with the canvas point that comes to the window's centre.
    void SetCanvasSize(CSize szCanvas, CPoint ptCentre);
    /// The canvas point at the window's centre.
    CPoint GetCentre() const { return ToCanvas({m_szClient.cx / 2, m_szClient.cy / 2}); }
    CSize GetCanvasSize() const { return m_szCanvas; }
    /// Changes the view; the canvas point at the window's centre stays there.
    void Apply(const TViewState& view, CSize szClient);
    /// Sets the scroll offset, clamped to 0 and extent minus client on each axis.
    void ScrollTo(CPoint ptScroll);
    /// Centres the scroll position: half of extent minus client.
    void Center();

    /// Canvas position in eighths of a pixel under a window position given in 1 / `nScale` window pixels.
    CPoint ToCanvas8(CPoint ptWindow, int32_t nScale = 1) const;
    /// Canvas pixel under a window position.
    CPoint ToCanvas(CPoint ptWindow) const;
    /// Window position of a canvas pixel position.
    CPoint ToWindow(CPoint ptCanvas) const;
    /// Window position of a canvas position in eighths of a pixel, to the nearest pixel.
    CPoint ToWindow8(CPoint ptCanvas) const;
    /// The window pixel that holds a canvas position in eighths of a pixel.
    CPoint PixelAt8(CPoint ptCanvas) const;
    /// The canvas's pixels that the window shows, also in part; empty for none.
    CRect GetShownRect() const;
    /// A canvas rectangle in the window, ordered.
    CRect ToWindow(const CRect& rcCanvas) const;

    /// The scaled canvas with its margins.
    static CSize ExtentOf(CSize szScaled);

    const TViewState& GetState() const { return m_view; }
    /// Whole scrollable extent in window pixels: at least 90 pixels of margin around the scaled canvas.
    CSize GetExtent() const { return m_szExtent; }
    /// Scroll line (at most 10) and page (at most 100).
    CSize GetLine() const { return m_szLine; }
    CSize GetPage() const { return m_szPage; }
    CPoint GetScroll() const { return m_ptScroll; }
    CSize GetClient() const { return m_szClient; }
    /// The window position of the scaled canvas's corner.
    CPoint GetOrigin() const { return m_ptMargin - m_ptScroll; }

private:
    // Computes what depends on view, window and canvas, and scrolls `ptCentre` to the window's centre.
    void Arrange(CPoint ptCentre);
    // A position with `nUnit` steps a canvas pixel; `nRound` is added before the division.
    CPoint Map(CPoint ptCanvas, int64_t nUnit, int64_t nRound) const;

    CPoint m_ptScroll;
    CSize m_szExtent;
    CSize m_szLine;
    CSize m_szPage;
    CSize m_szClient;
    TViewState m_view;
    CPoint m_ptMargin;
    CSize m_szCanvas;
};

/// The largest entry of the zoom list at which a picture of this size at 100 percent fits into a window; the
/// smallest entry when none does.
uint16_t FitZoom(CSize szPicture, CSize szClient);

/// The initial zoom of a canvas in a window: 48, or for a canvas that does not fit the largest entry of the
/// zoom list that shows it whole.
uint16_t FirstZoom(CSize szCanvas, CSize szClient);
