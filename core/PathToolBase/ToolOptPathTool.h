// The option pane of the path tool.
#pragma once

#include "core/PathToolBase/PathTool.h"
#include "core/Tools/ToolOptBase.h"

/// Two blocks of the same controls: the settings of new paths, and the values of the selected stroke.
class CToolOptPathTool : public CToolOptBase {
public:
    CToolOptPathTool();

    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    boost::weak_ptr<CPathTool> m_wpTool;
};
