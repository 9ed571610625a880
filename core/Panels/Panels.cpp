#include "core/Panels/Panels.h"

#include "core/AppModule/CommandIds.h"
#include "core/AppModule/ErrorBox.h"
#include "core/Panels/BrushWnd.h"
#include "core/Panels/ColorWnd.h"
#include "core/Panels/PressWnd.h"
#include "core/Panels/ToolOptWnd.h"
#include "core/Panels/ToolWnd.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int32_t COLUMN = 262; ///< width of the panels at the right side

// Where panels stand at first. What is docked keeps the order of the rectangles; those with the same one lie
// over each other behind tabs.
TPanelPlace FirstPlace(int nCommand) {
    const auto right = [](int32_t nTop, int32_t nHeight) {
        return TPanelPlace{EPanelDock::Right, CRect(CPoint{1000, nTop}, {COLUMN, nHeight}), true};
    };
    switch (nCommand) {
    case ID_PANEL_COLOR:
        return right(100, 424);
    case ID_PANEL_TOOL:
        return {EPanelDock::Left, CRect(CPoint{0, 100}, {84, 200}), true};
    default:
        return right(600, 340);
    }
}

} // namespace

CPanels::CPanels() {
    m_mapPanels[ID_PANEL_TOOL] = std::make_unique<CToolWnd>();
    m_mapPanels[ID_PANEL_TOOL_OPTION] = std::make_unique<CToolOptWnd>();
    m_mapPanels[ID_PANEL_PRESS] = std::make_unique<CPressWnd>();
    m_mapPanels[ID_PANEL_COLOR] = std::make_unique<CColorWnd>();
    m_mapPanels[ID_PANEL_BRUSH] = std::make_unique<CBrushWnd>();
}

CPanels::~CPanels() { Close(); }

void CPanels::Create(IMainWindow& parent) {
    struct TPlaced {
        int nCommand;
        TPanelPlace place;
    };
    std::vector<TPlaced> vPlaced;
    // Of panels behind tabs the first one shows.
    for (const int nCommand :
         {ID_PANEL_BRUSH, ID_PANEL_TOOL_OPTION, ID_PANEL_PRESS, ID_PANEL_TOOL, ID_PANEL_COLOR})
        vPlaced.push_back({nCommand, m_mapPanels[nCommand]->ReadPlace(FirstPlace(nCommand))});
    std::stable_sort(vPlaced.begin(), vPlaced.end(),
                     [](const TPlaced& a, const TPlaced& b) { return a.place.rc.top < b.place.rc.top; });
    for (const TPlaced& placed : vPlaced)
        m_mapPanels[placed.nCommand]->Create(parent, FirstPlace(placed.nCommand));
}

void CPanels::KeepSettings() {
    for (const auto& entry : m_mapPanels) Guarded([&] { entry.second->KeepSettings(); });
}

void CPanels::Close() {
    // Where one goes the others move up.
    for (const auto& entry : m_mapPanels) Guarded([&] { entry.second->KeepPlace(); });
    for (const auto& entry : m_mapPanels) Guarded([&] { entry.second->Close(); });
}

void CPanels::Refresh() {
    for (const auto& [nCommand, pPanel] : m_mapPanels) pPanel->Refresh();
}

void CPanels::OnStroke() {
    for (const auto& [nCommand, pPanel] : m_mapPanels) pPanel->OnStroke();
}

CPanel* CPanels::Find(int nCommand) const {
    const auto it = m_mapPanels.find(nCommand);
    return it == m_mapPanels.end() ? nullptr : it->second.get();
}

bool CPanels::IsShown(int nCommand) const {
    const CPanel* pPanel = Find(nCommand);
    return pPanel && pPanel->GetWindow() && pPanel->GetWindow()->IsShown();
}

bool CPanels::Toggle(int nCommand) {
    const CPanel* pPanel = Find(nCommand);
    if (!pPanel) return false;
    if (pPanel->GetWindow()) pPanel->GetWindow()->ShowPanel(!IsShown(nCommand));
    return true;
}
