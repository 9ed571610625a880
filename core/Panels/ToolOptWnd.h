// The options of the active tool: one pane for each kind of tool; only the active tool's pane is visible.
#pragma once

#include "core/Panels/Panel.h"
#include "core/Tools/ToolOptBase.h"

#include <memory>

class CToolOptWnd : public CPanel {
public:
    CToolOptWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"ツールオプション"; }

protected:
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;

private:
    std::vector<std::unique_ptr<CToolOptBase>> m_vPanes;
};
