// The active view's interface for tools.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>

class IActiveView {
public:
    virtual ~IActiveView() = default;
    virtual const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const = 0;
    /// Magnification in 48ths: 48 is 100 percent.
    virtual uint16_t GetZoom() const = 0;
    /// Client position of a canvas position in eighths of a pixel, to the nearest pixel.
    virtual CPoint ToClient(CPoint ptCanvas) const = 0;
    /// The client pixel that holds a canvas position in eighths of a pixel.
    virtual CPoint ToClientPixel(CPoint ptCanvas) const = 0;
    /// Canvas position in eighths of a pixel under a client position.
    virtual CPoint ToCanvas(CPoint ptClient) const = 0;
    /// The canvas's pixels that the view shows, also in part; empty for none.
    virtual CRect GetShownRect() const = 0;
    /// Dots per inch of the view's window.
    virtual int32_t GetDpi() const = 0;
    /// Redraws the changed parts of the canvas and the tool's overlay.
    virtual void RequestRedraw() = 0;
};

/// The active view; expired while there is none.
extern boost::weak_ptr<IActiveView> g_wpActiveView;

/// Requests a redraw of the active view; does nothing without one.
void RedrawActiveView();
