#include "core/Panels/ToolOptWnd.h"

#include "core/Panels/ToolTable.h"

#include <map>
#include <utility>

CToolOptWnd::CToolOptWnd(const wchar_t* pszSection, const TPanelOutside& outside)
    : CPanel(pszSection, outside) {
    std::map<decltype(TToolRow::pfnMakePane), CToolOptBase*> mapPanes;
    for (const TToolRow& row : GetToolTable()) {
        const auto [it, bNew] = mapPanes.try_emplace(row.pfnMakePane);
        if (auto pPane = bNew ? row.pfnMakePane() : nullptr) {
            it->second = pPane.get();
            m_vPanes.push_back(std::move(pPane));
        }
        if (it->second) it->second->AddTool(row.info.nId);
    }
    for (const auto& pPane : m_vPanes)
        m_vControls.insert(m_vControls.end(), pPane->GetControls().begin(), pPane->GetControls().end());
}

void CToolOptWnd::OnRefresh() {
    const auto spTool = GetTool();
    // All or none: the window relies on it.
    std::vector<TPanelControl> vControls;
    CToolOptBase* pShown = nullptr;
    for (const auto& pPane : m_vPanes) {
        const bool bShow = spTool && pPane->IsForTool(spTool->GetToolId());
        if (bShow) pShown = pPane.get();
        for (TPanelControl& control : pPane->GetControls()) {
            control.bVisible = bShow;
            vControls.push_back(control);
        }
    }
    m_vControls = std::move(vControls);
    if (!pShown) return;
    pShown->RefreshView(spTool);
    for (const TPanelControl& control : pShown->GetControls()) Find(control.nId) = control;
}

void CToolOptWnd::OnControl(TPanelControl& control) {
    for (const auto& pPane : m_vPanes)
        if (pPane->Has(control.nId)) pPane->OnControl(control);
    NotifyTool();
}
