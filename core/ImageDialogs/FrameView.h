// A small picture of the canvas with the frame that it is to get.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Controls.h"

#include <optional>

/// The canvas's picture on white, reduced to at most 640 pixels on a side (a document larger than the largest
/// canvas may exceed that). Composes what is stale without keeping it. Raises cancelled_error.
boost::shared_ptr<const TPicture> MakeSmallPicture(CCanvasBuffer& canvas, IProgress& progress);

/// Shows the picture and the new frame as large as the view allows. What the frame cuts off is darker, what
/// it adds is white.
class CFrameView : public IPanelView, boost::noncopyable {
public:
    /// `szCanvas` is the canvas's size in pixels.
    CFrameView(const boost::shared_ptr<const TPicture>& spPicture, CSize szCanvas)
        : m_spPicture(spPicture), m_szCanvas(szCanvas) {}

    /// The new frame in canvas pixels; nullopt when there is none to show.
    void SetFrame(const std::optional<CRect>& frame) { m_frame = frame; }
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    boost::shared_ptr<const TPicture> m_spPicture;
    CSize m_szCanvas;
    std::optional<CRect> m_frame;
};
