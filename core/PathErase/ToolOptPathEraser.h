// The option pane of the vector eraser.
#pragma once

#include "core/PathErase/PathEraser.h"
#include "core/Tools/ToolOptBase.h"

/// The mode and the radius.
class CToolOptPathEraser : public CToolOptBase {
public:
    CToolOptPathEraser();
    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    boost::weak_ptr<CPathEraser> m_wpTool;
};
