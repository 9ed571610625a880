// The brush at work: a short stroke, drawn as it would be on the canvas at 100 percent.
#pragma once

#include "core/Platform/Panel.h"
#include "core/RasterBrush/RasterBrushBase.h"

#include <boost/noncopyable.hpp>

#include <memory>

class CBrushView : public IPanelView, boost::noncopyable {
public:
    /// What is shown from now on; null shows nothing.
    void SetTool(CRasterBrushBase* pTool);
    void OnPaint(IPaintTarget& target, const TPanelPaint& paint) override;

private:
    struct TShown {
        TBrushParam param{};
        TColor color = 0;
        int nTool = 0;

        friend bool operator==(const TShown&, const TShown&) = default;
    };

    std::unique_ptr<CGDIBuffer> Draw(CSize sz) const;

    bool m_bTool = false;
    TShown m_shown;
    TShown m_drawn; ///< what m_pBuffer shows
    std::unique_ptr<CGDIBuffer> m_pBuffer;
};
