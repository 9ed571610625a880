#include "core/Panels/Panels.h"

#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Commands/CommandIds.h"
#include "core/Panels/BrushWnd.h"
#include "core/Panels/ColorWnd.h"
#include "core/Panels/HistoryWnd.h"
#include "core/Panels/LayerWnd.h"
#include "core/Panels/PressWnd.h"
#include "core/Panels/ToolOptWnd.h"
#include "core/Panels/ToolWnd.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {

// Panels without a list are not higher than their content; one with a list takes what is left of a side.
TPanelPlace Left(int32_t nTop, int32_t nHeight) {
    return {EPanelDock::Left, CRect(CPoint{0, nTop}, {232, nHeight}), true};
}
TPanelPlace Right(int32_t nTop, int32_t nHeight) {
    return {EPanelDock::Right, CRect(CPoint{1000, nTop}, {252, nHeight}), true};
}

template <class TPanel>
std::unique_ptr<CPanel> Make(const wchar_t* pszSection, const TPanelOutside& outside) {
    return std::make_unique<TPanel>(pszSection, outside);
}

const TPanelRow PANELS[] = {
    {ID_PANEL_BRUSH, L"Brush", Make<CBrushWnd>, WM_REFRESH_TOOL, Left(200, 500)},
    {ID_PANEL_LAYER, L"Layer", Make<CLayerWnd>, WM_REFRESH_LAYERS, Right(400, 320)},
    {ID_PANEL_HISTORY, L"History", Make<CHistoryWnd>, WM_REFRESH_HISTORY, Right(400, 320)},
    {ID_PANEL_TOOL_OPTION, L"ToolOption", Make<CToolOptWnd>, WM_REFRESH_TOOL, Left(200, 500)},
    {ID_PANEL_PRESS, L"Press", Make<CPressWnd>, WM_REFRESH_TOOL, Left(200, 500)},
    {ID_PANEL_TOOL, L"Tool", Make<CToolWnd>, WM_REFRESH_TOOL, Left(100, 80)},
    {ID_PANEL_COLOR, L"Color", Make<CColorWnd>, WM_REFRESH_TOOL, Right(100, 300)},
};

} // namespace

CPanels::CPanels(const TPanelOutside& outside) : m_outside(outside) {
    for (const TPanelRow& row : PANELS) Add(row);
}

void CPanels::Add(const TPanelRow& row) {
    m_vRows.push_back(row);
    m_mapPanels[row.nCommand] = row.pfnMake(row.pszSection, m_outside);
}

CPanels::~CPanels() { Close(); }

void CPanels::Create(IMainWindow& parent) {
    struct TPlaced {
        const TPanelRow* pRow;
        int32_t nTop;
    };
    std::vector<TPlaced> vPlaced;
    for (const TPanelRow& row : m_vRows)
        vPlaced.push_back({&row, m_mapPanels[row.nCommand]->ReadPlace(row.placeFirst).rc.top});
    std::ranges::stable_sort(vPlaced, {}, &TPlaced::nTop);
    for (const TPlaced& placed : vPlaced)
        m_mapPanels[placed.pRow->nCommand]->Create(parent, placed.pRow->placeFirst);
}

void CPanels::KeepSettings() {
    for (const auto& entry : m_mapPanels) Guarded([&] { entry.second->KeepSettings(); });
}

void CPanels::Close() {
    if (AreHidden()) Guarded([&] { ToggleAll(); }); // they come back at the next start
    Guarded([&] { TakeBackTabs(true); });
    // When one is hidden the others move up.
    for (const auto& entry : m_mapPanels) Guarded([&] { entry.second->KeepPlace(); });
    for (const auto& entry : m_mapPanels) Guarded([&] { entry.second->Close(); });
}

void CPanels::Refresh(EMessage id) {
    for (const TPanelRow& row : m_vRows)
        if (row.refresh == id) Find(row.nCommand)->Refresh();
    if (id == WM_REFRESH_TOOL) ShowUsedTabs();
}

void CPanels::ShowUsedTabs() {
    const auto spTool = m_outside.wpTool.lock();
    if (spTool == m_wpTabTool.lock()) return;
    m_wpTabTool = spTool;
    TakeBackTabs(false);
    struct TTab {
        const CPanel* pPanel;
        TPanelPlace place;
    };
    std::vector<TTab> vTabs; // in the table's order
    for (const TPanelRow& row : m_vRows)
        if (IsShown(row.nCommand))
            vTabs.push_back({Find(row.nCommand), Find(row.nCommand)->GetWindow()->GetPlace()});
    for (const TTab& front : vTabs) {
        const auto isInstead = [&](const TTab& tab) {
            return tab.place.dock == front.place.dock && tab.place.rc == front.place.rc &&
                   !tab.place.bFront && tab.pPanel->IsUsed();
        };
        const auto it = std::ranges::find_if(vTabs, isInstead);
        if (!front.place.bFront || front.pPanel->IsUsed() || it == vTabs.end()) continue;
        it->pPanel->GetWindow()->ShowPanel(true);
        m_mapInstead[front.pPanel] = it->pPanel;
    }
}

void CPanels::TakeBackTabs(bool bAll) {
    std::erase_if(m_mapInstead, [=](const auto& entry) {
        const auto& [pPanel, pInstead] = entry;
        if (!bAll && !pPanel->IsUsed()) return false;
        const auto isShown = [](const CPanel* p) { return p->GetWindow() && p->GetWindow()->IsShown(); };
        if (isShown(pPanel) && isShown(pInstead) && pInstead->GetWindow()->GetPlace().bFront)
            pPanel->GetWindow()->ShowPanel(true);
        return true;
    });
}

bool CPanels::DoIdleWork() {
    bool bMore = false;
    for (const auto& entry : m_mapPanels)
        bMore = Guarded([&] { return entry.second->DoIdleWork(); }) || bMore;
    return bMore;
}

void CPanels::OnStroke() {
    for (const auto& [nCommand, pPanel] : m_mapPanels) pPanel->OnStroke();
}

CPanel* CPanels::Find(int nCommand) const {
    const auto it = m_mapPanels.find(nCommand);
    return it == m_mapPanels.end() ? nullptr : it->second.get();
}

int CPanels::FindCommand(const IWindow* pWindow) const {
    const auto it = std::ranges::find_if(m_mapPanels, [=](const auto& entry) {
        return entry.second->GetWindow() && entry.second->GetWindow() == pWindow;
    });
    return it == m_mapPanels.end() ? 0 : it->first;
}

std::vector<int> CPanels::GetCommands() const {
    std::vector<int> vIds;
    for (const auto& [nCommand, pPanel] : m_mapPanels) vIds.push_back(nCommand);
    return vIds;
}

bool CPanels::IsShown(int nCommand) const {
    const CPanel* pPanel = Find(nCommand);
    return pPanel && pPanel->GetWindow() && pPanel->GetWindow()->IsShown();
}

void CPanels::ToggleAll() {
    const bool bShow = AreHidden();
    std::vector<int> vCommands = std::exchange(m_vHidden, {});
    if (!bShow) {
        std::ranges::copy_if(GetCommands(), std::back_inserter(vCommands), [&](int n) { return IsShown(n); });
        // A panel that is shown comes in front of its tabs: those that were in front come back last.
        std::stable_partition(vCommands.begin(), vCommands.end(),
                              [&](int n) { return !m_mapPanels[n]->GetWindow()->GetPlace().bFront; });
        m_vHidden = vCommands;
    }
    for (const int nCommand : vCommands)
        if (IsShown(nCommand) != bShow) m_mapPanels[nCommand]->GetWindow()->ShowPanel(bShow);
}

void CPanels::Toggle(int nCommand) {
    const CPanel* pPanel = Find(nCommand);
    if (!pPanel || !pPanel->GetWindow()) return;
    // Of hidden panels one that is asked for by itself comes alone.
    m_vHidden.clear();
    pPanel->GetWindow()->ShowPanel(!IsShown(nCommand));
}
