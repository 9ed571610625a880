// The option pane of the selection tool.
#pragma once

#include "core/RasterMove/RasterSelect.h"
#include "core/Tools/ToolOptBase.h"

class CToolOptRasterSelect : public CToolOptBase {
public:
    CToolOptRasterSelect();
    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    boost::weak_ptr<CRasterSelect> m_wpTool;
};
