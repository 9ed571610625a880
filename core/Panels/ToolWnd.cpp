#include "core/Panels/ToolWnd.h"

#include "core/Commands/CommandIds.h"
#include "core/Panels/ToolTable.h"
#include "core/Tools/Tools.h"

namespace {

constexpr size_t LINE = 6; ///< buttons side by side

} // namespace

CToolWnd::CToolWnd(const wchar_t* pszSection, const TPanelOutside& outside) : CPanel(pszSection, outside) {
    for (const TToolRow& row : GetToolTable())
        m_vControls.push_back({.kind = TPanelControl::EKind::Toggle,
                               .nId = row.info.nId,
                               .strText = row.info.pszName,
                               .strIcon = row.info.pszIcon,
                               .bSameLine = m_vControls.size() % LINE != 0,
                               .nCommand = ID_SWITCH_TOOL_FIRST + row.info.nId});
}

void CToolWnd::OnRefresh() {
    const auto spTool = GetTool();
    for (TPanelControl& control : m_vControls) control.nValue = spTool && spTool->GetToolId() == control.nId;
}
