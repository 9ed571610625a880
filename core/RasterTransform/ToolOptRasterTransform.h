// The option pane of the transform tool.
#pragma once

#include "core/RasterTransform/RasterTransform.h"
#include "core/Tools/ToolOptBase.h"

/// The mode, fixed turns and flips, and the end of the preview.
class CToolOptRasterTransform : public CToolOptBase {
public:
    CToolOptRasterTransform();
    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    boost::weak_ptr<CRasterTransform> m_wpTool;
};
