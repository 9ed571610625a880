#include "core/Panels/HistoryWnd.h"

#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/GlobalSwitches.h"

#include <boost/range/adaptor/reversed.hpp>

#include <algorithm>
#include <iterator>

namespace {

enum EHistoryControl : int { HISTORY_LIST = 1, HISTORY_UNDO, HISTORY_REDO, HISTORY_LIMIT };

constexpr int LIMITS[] = {10, 25, 100};

} // namespace

CHistoryWnd::CHistoryWnd(const wchar_t* pszSection, const TPanelOutside& outside)
    : CPanel(pszSection, outside) {
    using EKind = TPanelControl::EKind;
    m_vControls = {
        {.kind = EKind::Tree, .nId = HISTORY_LIST, .nValue = -1, .szView = {200, 80}},
        {.kind = EKind::Button,
         .nId = HISTORY_UNDO,
         .strText = L"取り消し",
         .strIcon = "icons/57643.svg",
         .nCommand = ID_EDIT_UNDO},
        {.kind = EKind::Button,
         .nId = HISTORY_REDO,
         .strText = L"やり直し",
         .strIcon = "icons/57644.svg",
         .bSameLine = true,
         .nCommand = ID_EDIT_REDO},
        {.kind = EKind::Combo, .nId = HISTORY_LIMIT, .strLabel = L"最大数", .nValue = -1},
    };
    for (const int n : LIMITS) Find(HISTORY_LIMIT).vRows.push_back(std::to_wstring(n));
}

void CHistoryWnd::OnRefresh() {
    TPanelControl& list = Find(HISTORY_LIST);
    list.vTree.clear();
    m_vStates.clear();
    const auto* pLimit = std::ranges::find(LIMITS, GetOutside().switches.m_nMaxHistory);
    Find(HISTORY_LIMIT).nValue = pLimit == std::end(LIMITS) ? -1 : static_cast<int>(pLimit - LIMITS);
    const auto spFrame = GetFrame();
    if (!spFrame) return;
    const CHistoryStream& history = spFrame->GetCanvas()->GetHistory();
    const auto add = [&](const boost::shared_ptr<CHistory>& spState, bool bDone) {
        m_vStates.emplace_back(spState);
        list.vTree.push_back({.strText = spState ? spState->GetName() : history.GetInitialName(),
                              .strNote = history.IsSavedState(spState) ? L"保存済み" : L"",
                              .bDim = !bDone});
    };
    add({}, true);
    for (const auto& spState : history.GetUndoList() | boost::adaptors::reversed) add(spState, true);
    list.nValue = static_cast<int>(m_vStates.size()) - 1;
    for (const auto& spState : history.GetRedoList()) add(spState, false);
}

void CHistoryWnd::GoTo(int nRow) {
    const auto spFrame = GetFrame();
    if (!spFrame || nRow < 0 || nRow >= static_cast<int>(m_vStates.size())) return;
    const auto nNow = static_cast<int>(spFrame->GetCanvas()->GetHistory().GetUndoList().size());
    const auto spState = m_vStates[static_cast<size_t>(nRow)].lock();
    if (nRow == nNow || (!spState && nRow != 0)) return;
    if (IsCommandEnabled(nRow < nNow ? ID_EDIT_UNDO : ID_EDIT_REDO)) spFrame->GoToState(spState);
}

void CHistoryWnd::OnControl(TPanelControl& control) {
    if (control.nId == HISTORY_LIST) return GoTo(control.nValue);
    if (control.nId != HISTORY_LIMIT) return;
    const auto idx =
        static_cast<size_t>(std::clamp(control.nValue, 0, static_cast<int>(std::size(LIMITS)) - 1));
    GetOutside().switches.m_nMaxHistory = LIMITS[idx];
}
