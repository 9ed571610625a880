// The option pane of the path width tool.
#pragma once

#include "core/PathWidthTool/PathWidthTool.h"
#include "core/Tools/ToolOptBase.h"

/// The operation that a press begins, and a list of operations from which one is chosen, shown by kind.
class CToolOptPathWidthTool : public CToolOptBase {
public:
    CToolOptPathWidthTool();
    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    boost::weak_ptr<CPathWidthTool> m_wpTool;
    std::vector<int> m_vCoefs;            ///< of the combo's rows
    std::vector<TPathWidthItem> m_vShown; ///< of the list's rows
};
