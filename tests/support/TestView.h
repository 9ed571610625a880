// A view that shows a canvas at 100 percent from the window's corner on.
#pragma once

#include "core/Tools/ActiveView.h"
#include "core/Tools/Overlay.h"

struct CTestView : IActiveView {
    const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const override { return m_spCanvas; }
    uint16_t GetZoom() const override { return 48; }
    CPoint ToClient(CPoint pt) const override { return {pt.x / 8, pt.y / 8}; }
    CPoint ToClientPixel(CPoint pt) const override { return ToClient(pt); }
    CPoint ToCanvas(CPoint pt) const override { return {pt.x * 8, pt.y * 8}; }
    CRect GetShownRect() const override { return m_rcShown; }
    int32_t GetDpi() const override { return 96; }
    void RequestRedraw() override {}

    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    CRect m_rcShown;
};
