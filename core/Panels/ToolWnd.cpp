#include "core/Panels/ToolWnd.h"

#include "core/AppModule/PrivateMessages.h"
#include "core/Tools/Tools.h"

CToolWnd::CToolWnd() : CPanel(L"Tool") {
    struct TButton {
        int nTool;
        const wchar_t* pszName;
        const char* pszIcon;
    };
    constexpr TButton BUTTONS[] = {
        {TOOL_BRUSH, L"ラスタブラシ", "icons/tool-brush.svg"},
        {TOOL_ERASER, L"消しゴム", "icons/tool-eraser.svg"},
        {TOOL_PENCIL, L"鉛筆", "icons/tool-pencil.svg"},
    };
    for (const TButton& button : BUTTONS)
        m_vControls.push_back({.kind = TPanelControl::EKind::Toggle,
                               .nId = button.nTool,
                               .strText = button.pszName,
                               .strIcon = button.pszIcon});
}

void CToolWnd::OnRefresh() {
    const auto spTool = g_wpActiveTool.lock();
    for (TPanelControl& control : m_vControls) control.nValue = spTool && spTool->GetToolId() == control.nId;
}

void CToolWnd::OnControl(TPanelControl& control) { PostToMainFrame(WM_SWITCH_TOOL, control.nId); }
