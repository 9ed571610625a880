// The work of the main frame while no message waits.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Commands/CommandIds.h"
#include "core/MainFrame/CommandState.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/System.h"
#include "core/Recovery/Recovery.h"

#include <utility>

namespace {

constexpr uint32_t SETTINGS_MS = 500;

} // namespace

// An exception that leaves an idle handler or a filter would end the session.
bool CMainFrame::OnIdle(int) {
    return Guarded([&] { return DoIdleWork(); });
}

bool CMainFrame::DoIdleWork() {
    if (!m_pWindow) return false;
    const TSetButtonState setState{m_pWindow->GetToolBarLook()};
    for (const int nId : m_vToolBarCommands)
        if (nId) setState(nId, m_commands.GetState(nId));
    WatchDocuments();
    UpdateTitle();
    ForgetTold();
    UpdateStatus();
    Guarded([&] { WatchSettings(); });
    const bool bStrokes = Guarded([&] { return ContinueStrokes(); });
    if (std::exchange(m_bOfferRecovery, false)) Guarded([&] { OfferRecovery(); });
    if (!m_deqOpenFiles.empty()) {
        const std::wstring strPath = m_deqOpenFiles.front();
        m_deqOpenFiles.pop_front();
        Guarded([&] {
            if (OpenFile(strPath)) AddRecent(strPath);
        });
    }
    ShowStartPage();
    const bool bPanels = UpdatePanels(bStrokes);
    return bStrokes || bPanels || !m_deqOpenFiles.empty();
}

// True when there is more to do. After a rest the timers of a canvas's window trigger the next pass.
bool CMainFrame::UpdatePanels(bool bStrokes) {
    const uint32_t uNow = g_AppModule.GetPlatform().clock.GetTickCount();
    if (m_rest.IsResting(uNow)) return false;
    WatchChanges();
    const bool bMore = !bStrokes && m_panels.DoIdleWork();
    if (!bMore) m_rest.OnAllDone(uNow);
    return bMore;
}

void CMainFrame::FollowRest(const TMessage& msg) {
    const bool bPanel = m_panels.FindCommand(msg.pWindow) != 0;
    const uint32_t uNow = g_AppModule.GetPlatform().clock.GetTickCount();
    // In a record the pointer does not leave the canvas: the user acted on rows that were up to date.
    if (bPanel && m_rest.IsResting(uNow)) WatchChanges();
    m_rest.Follow(msg, bPanel, uNow);
}

void CMainFrame::ShowStartPage() {
    const bool bShow = g_lstCanvasFrame.empty() && !g_bFilterBuild;
    IPanelWindow* pWindow = m_startPage.GetWindow();
    if (!pWindow || pWindow->IsShown() == bShow) return;
    if (bShow) m_startPage.Refresh();
    pWindow->ShowPanel(bShow);
}

// Remaining strokes are rendered when there is nothing else to do.
bool CMainFrame::ContinueStrokes() {
    bool bMore = false;
    for (const auto& spFrame : g_lstCanvasFrame) {
        if (!spFrame->GetCanvas()->IsBehind()) continue;
        spFrame->GetCanvas()->Update();
        if (spFrame->GetWindow()) spFrame->RequestRedraw();
        bMore = bMore || spFrame->GetCanvas()->IsBehind();
    }
    return bMore;
}

void CMainFrame::UpdateStatus() { m_status.Update(*m_pWindow, g_wpActiveFrame.lock().get(), m_strTold); }

// The status text stays until the tool can work or refuses for another reason.
void CMainFrame::ForgetTold() {
    if (m_strTold.empty()) return;
    const wchar_t* pszNow = m_spActiveTool && g_wpActiveFrame.lock() ? m_spActiveTool->GetRefusal() : nullptr;
    if (!pszNow || m_strTold != pszNow) Tell({});
}

void CMainFrame::WatchDocuments() {
    CRecovery& recovery = g_AppModule.GetRecovery();
    for (const auto& spFrame : g_lstCanvasFrame) {
        spFrame->UpdateModified();
        Guarded([&] { recovery.Watch(spFrame->GetCanvas()); });
    }
    if (!recovery.TakeFailure() || m_bToldSnapshots) return;
    m_bToldSnapshots = true;
    ShowErrorBox(g_strSnapshotNotWritten);
}

// The panels are notified here of every change of the active document, by pen, command, undo or script.
void CMainFrame::WatchChanges() {
    const auto spFrame = g_wpActiveFrame.lock();
    if (!spFrame) return;
    const auto& spCanvas = spFrame->GetCanvas();
    const CHistoryStream& history = spCanvas->GetHistory();
    const uint32_t uChanges = history.GetChangeCount();
    const bool bModified = history.IsModified(); // a save changes nothing else
    if (m_wpSeen.lock() == spCanvas && m_uSeenChanges == uChanges && m_bSeenModified == bModified) return;
    m_wpSeen = spCanvas;
    m_uSeenChanges = uChanges;
    m_bSeenModified = bModified;
    SendMessage({m_pWindow, WM_REFRESH_LAYERS});
    SendMessage({m_pWindow, WM_REFRESH_HISTORY});
    // An undo may take away what the options show.
    if (CPanel* pOptions = m_panels.Find(ID_PANEL_TOOL_OPTION)) pOptions->Refresh();
}

void CMainFrame::WatchSettings() {
    const uint32_t uNow = g_AppModule.GetPlatform().clock.GetTickCount();
    // A dragged slider must not write at every step. The timers of a canvas's window trigger the next pass;
    // without a canvas nothing would, so settings are written at once, as there is no stroke to disturb.
    if (!g_lstCanvasFrame.empty() && uNow - m_uSettingsTick < SETTINGS_MS) return;
    m_uSettingsTick = uNow;
    if (m_spActiveTool) m_spActiveTool->KeepSettings();
    m_panels.KeepSettings();
}
