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
    void AddBlock(int nFirstId, const wchar_t* pszCaption);
    void AddToggle(int nId, const wchar_t* pszLabel, const wchar_t* pszTip, const char* pszIcon,
                   bool bSameLine);
    /// Shows the values of a block; null disables it.
    void ShowBlock(int nFirstId, const TPathParam* pParam);

    boost::weak_ptr<CPathTool> m_wpTool;
};
