#include "core/MainFrame/CommandState.h"

#include "core/AppModule/AppModule.h"
#include "core/AppModule/CommandIds.h"
#include "core/CanvasFrame/LayerCommands.h"
#include "core/CanvasFrame/ZoomList.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/MainFrame/MainFrame.h"

namespace {

bool IsFileCommandOfHost(int nId) {
    return nId == ID_FILE_NEW || nId == ID_FILE_OPEN || nId == ID_FILE_SAVE || nId == ID_FILE_SAVE_AS;
}

TCommandState StateWithFrame(int nId, const CCanvasFrame& frame) {
    const TViewState& view = frame.GetView().GetState();
    const int nLine = g_pMainFrame->GetWindow() ? g_pMainFrame->GetWindow()->GetZoomItem() : -1;
    // An operation in progress works on the layers as they are.
    const auto spTool = g_wpActiveTool.lock();
    const bool bBusy = spTool && spTool->GetState() != STATE_IDLE;
    if (bBusy && (IsLayerCommand(nId) || nId == ID_EDIT_UNDO || nId == ID_EDIT_REDO)) return {};
    if (IsLayerCommand(nId)) return GetLayerCommandState(*frame.GetCanvas(), nId);
    // A drawn stroke counts from its end on, however long the machine takes to render it.
    const CHistoryStream& history = frame.GetCanvas()->GetHistory();
    const bool bPending = frame.GetCanvas()->HasPendingWork();
    switch (nId) {
    case ID_EDIT_UNDO:
        return {history.CanUndo() || bPending, false};
    case ID_EDIT_REDO:
        return {history.CanRedo() && !bPending, false};
    case ID_VIEW_FLIP_V:
        return {true, view.bFlipV};
    case ID_VIEW_FLIP_H:
        return {true, view.bFlipH};
    case ID_ZOOM_IN:
        return {nLine != 0, false};
    case ID_ZOOM_OUT:
        return {nLine != static_cast<int>(GetZoomList().size()) - 1, false};
    default:
        return {true, false};
    }
}

} // namespace

TCommandState GetCommandState(int nId) {
    if (g_bFilterBuild && IsFileCommandOfHost(nId)) return {};
    if (nId >= ID_PREDICTION_FIRST && nId <= ID_PREDICTION_LAST)
        return {true, nId - ID_PREDICTION_FIRST == g_Switches.m_nPredStroke};
    switch (nId) {
    case ID_VIEW_OUTLINE:
        return {true, g_Switches.m_bShowOutline != 0};
    case ID_VIEW_ALL_ANCHORS:
        return {true, g_Switches.m_bShowAllCtl != 0};
    case ID_VIEW_FAST_SCROLL:
        return {true, g_Switches.m_bFastScroll != 0};
    default:
        break;
    }
    if (g_pMainFrame && g_pMainFrame->GetPanels().Find(nId))
        return {true, g_pMainFrame->GetPanels().IsShown(nId)};
    if (CMainFrame::HandlesWithoutFrame(nId)) return {true, false};
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame || !(CMainFrame::HandlesWithFrame(nId) || CCanvasFrame::HandlesCommand(nId))) return {};
    return StateWithFrame(nId, *spFrame);
}

void TSetMenuState::operator()(int nId, const TCommandState& state) const {
    look.SetState(nId, state.bEnabled, state.bChecked);
}

void TSetButtonState::operator()(int nId, const TCommandState& state) const {
    look.SetState(nId, state.bEnabled, state.bChecked);
}
