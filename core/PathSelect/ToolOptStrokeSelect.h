// The option pane of the stroke selection tool.
#pragma once

#include "core/PathSelect/StrokeSelect.h"
#include "core/Tools/ToolOptBase.h"

/// The tool's own switches, and below them the values that the selected strokes share: a change is one undo
/// step for all. A width can be typed as a part of what it is, such as 150%.
class CToolOptStrokeSelect : public CToolOptBase {
public:
    CToolOptStrokeSelect();

    void RefreshView(const boost::shared_ptr<CTools>& spTool) override;
    void OnControl(const TPanelControl& control) override;

private:
    boost::weak_ptr<CStrokeSelect> m_wpTool;
};
