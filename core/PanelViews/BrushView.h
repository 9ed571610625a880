// Preview of the brush: a short stroke as it would look on the canvas at 100 percent, on the panel's ground.
#pragma once

#include "core/Platform/Panel.h"
#include "core/RasterBrush/RasterBrushBase.h"

#include <boost/noncopyable.hpp>

#include <memory>

class IClock;
class IImageCodecs;

/// A brush and the colours of the field that its sample is drawn in.
struct TBrushSample {
    TBrushParam param{};
    TColor color = 0; ///< replaced by the text's colour where it cannot be told from the field
    int nTool = 0;
    TColor clrBase = 0xFFFFFF, clrText = 0;

    friend bool operator==(const TBrushSample&, const TBrushSample&) = default;
};

/// Draws a sample stroke of a freehand tool: a wave across the picture, or out of paint for the eraser. A
/// brush that is larger than the picture is drawn as large as it fits.
std::unique_ptr<CGDIBuffer> DrawBrushSample(const TBrushSample& sample, CSize sz, IClock& clock,
                                            IImageCodecs& codecs);

class CBrushView : public IPanelView, boost::noncopyable {
public:
    /// Both must outlive the view.
    CBrushView(IClock& clock, IImageCodecs& codecs) : m_clock(clock), m_codecs(codecs) {}
    /// Sets the tool to preview; null shows nothing.
    void SetTool(CRasterBrushBase* pTool);
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    IClock& m_clock;
    IImageCodecs& m_codecs;
    bool m_bTool = false;
    TBrushSample m_shown;
    TBrushSample m_drawn; ///< the values that m_pBuffer was drawn with
    std::unique_ptr<CGDIBuffer> m_pBuffer;
};
