// The pen's option pane: that of a brush and the conversion's tolerance.
#pragma once

#include "core/PathPen/PathPen.h"
#include "core/RasterBrush/ToolOptRasterBrush.h"

class CToolOptPathPen : public CToolOptFreehand {
public:
    CToolOptPathPen();
    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    bool Serves(const CRasterBrushBase& tool) const override;

    boost::weak_ptr<CPathPen> m_wpPen;
};
