// Preview of the brush: a short stroke as it would look on the canvas at 100 percent.
#pragma once

#include "core/Platform/Panel.h"
#include "core/RasterBrush/RasterBrushBase.h"

#include <boost/noncopyable.hpp>

#include <memory>

class IClock;
class IImageCodecs;

/// Draws a sample stroke of a freehand tool: a wave across the picture on white, or out of paint for the
/// eraser. A brush that is larger than the picture is drawn as large as it fits.
std::unique_ptr<CGDIBuffer> DrawBrushSample(int nTool, const TBrushParam& param, TColor color, CSize sz,
                                            IClock& clock, IImageCodecs& codecs);

class CBrushView : public IPanelView, boost::noncopyable {
public:
    /// Both must outlive the view.
    CBrushView(IClock& clock, IImageCodecs& codecs) : m_clock(clock), m_codecs(codecs) {}
    /// Sets the tool to preview; null shows nothing.
    void SetTool(CRasterBrushBase* pTool);
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    struct TShown {
        TBrushParam param{};
        TColor color = 0;
        int nTool = 0;

        friend bool operator==(const TShown&, const TShown&) = default;
    };

    IClock& m_clock;
    IImageCodecs& m_codecs;
    bool m_bTool = false;
    TShown m_shown;
    TShown m_drawn; ///< the parameters that m_pBuffer was drawn with
    std::unique_ptr<CGDIBuffer> m_pBuffer;
};
