#include "core/Panels/Panel.h"

#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/AppModule/WindowPlacement.h"
#include "core/Base/Failure.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/Commands.h"
#include "core/Commands/Shortcuts.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Platform.h"
#include "core/Tools/PenContact.h"
#include "core/Tools/Tools.h"

#include <algorithm>

namespace {

bool operator==(const TPanelPlace& a, const TPanelPlace& b) {
    return a.dock == b.dock && a.rc == b.rc && a.bShow == b.bShow && a.bFront == b.bFront;
}

} // namespace

boost::shared_ptr<CIniConfigData> CPanel::OpenSection() const {
    return m_outside.settings.GetSection(L"Windows")->GetSection(m_strName);
}

boost::shared_ptr<CTools> CPanel::GetTool() const { return m_outside.wpTool.lock(); }

boost::shared_ptr<CCanvasFrame> CPanel::GetFrame() const { return m_outside.wpFrame.lock(); }

TPanelPlace CPanel::ReadPlace(const TPanelPlace& placeFirst) const {
    const auto spSection = OpenSection();
    const int nDock = std::clamp(spSection->GetInt(L"Dock", static_cast<int>(placeFirst.dock)), 0, 2);
    return {static_cast<EPanelDock>(nDock), ReadPlacement(m_strName, placeFirst.rc),
            spSection->GetInt(L"IsShow", placeFirst.bShow) != 0,
            spSection->GetInt(L"Front", placeFirst.bFront) != 0};
}

void CPanel::Create(IMainWindow& parent, const TPanelPlace& placeFirst) {
    OnOpen();
    m_pWindow =
        m_outside.platform.windows.CreatePanelWindow(parent, *this, {m_strName, GetTitle(), m_vControls});
    if (!m_pWindow) throw internal_error(L"CreatePanel: the window could not be created.");
    TPanelPlace place = placeFirst.dock == EPanelDock::Page ? placeFirst : ReadPlace(placeFirst);
    if (place.dock == EPanelDock::Float) place.rc = PlaceOnScreen(place.rc, parent.GetScreens());
    m_pWindow->SetPlace(place);
    m_pWindow->ShowPanel(place.bShow);
    m_placeRead = m_pWindow->GetPlace();
}

void CPanel::KeepPlace() {
    if (!m_pWindow) return;
    const TPanelPlace place = m_pWindow->GetPlace();
    if (place == m_placeRead) return;
    WritePlacement(
        m_strName, place.rc,
        {{L"IsShow", place.bShow}, {L"Dock", static_cast<int>(place.dock)}, {L"Front", place.bFront}});
}

void CPanel::KeepSettings() {
    if (m_pWindow) OnKeep();
}

void CPanel::Close() {
    if (!m_pWindow) return;
    OnKeep();
    m_pWindow->Destroy();
}

void CPanel::Refresh() {
    if (!m_pWindow) return;
    Guarded([&] { OnRefresh(); });
    for (TPanelControl& control : m_vControls)
        if (control.nCommand)
            control.strTip = control.strText + m_outside.shortcuts.NameKeys(control.nCommand, L"  (", L")");
    UpdateCommands();
    m_pWindow->SetControls(m_vControls);
}

bool CPanel::IsCommandEnabled(int nCommand) const { return m_outside.commands.GetState(nCommand).bEnabled; }

bool CPanel::UpdateCommands() {
    bool bChanged = false;
    for (TPanelControl& control : m_vControls) {
        if (!control.nCommand) continue;
        const bool bEnabled = IsCommandEnabled(control.nCommand);
        bChanged = bChanged || control.bEnabled != bEnabled;
        control.bEnabled = bEnabled;
    }
    return bChanged;
}

bool CPanel::DoIdleWork() {
    if (!m_pWindow || !m_pWindow->IsShown()) return false;
    // A stroke comes first. The buttons would also flicker at its begin and end.
    const auto spTool = GetTool();
    if (spTool && (spTool->GetState() != STATE_IDLE || spTool->GetContact().IsDown())) return false;
    if (UpdateCommands()) m_pWindow->SetControls(m_vControls);
    return OnIdle();
}

void CPanel::ShowMenu(std::vector<TMenuItem> vMenu) {
    for (TMenuItem& item : vMenu) {
        const TCommandState state = m_outside.commands.GetState(item.nId);
        item.bEnabled = state.bEnabled;
        item.bChecked = state.bChecked;
    }
    if (m_pWindow) m_pWindow->ShowMenu(vMenu);
}

bool CPanel::OnMessage(const TMessage& msg) {
    return Guarded([&] {
        if (msg.id == EMessage::Command)
            return PostToMainFrame(msg.id, msg.wParam), true; // of the context menu
        if (msg.id == EMessage::PanelChange)
            if (const int nCommand = Find(static_cast<int>(msg.wParam)).nCommand) {
                if (IsCommandEnabled(nCommand)) PostToMainFrame(EMessage::Command, nCommand);
                return false;
            }
        // Restore a value that the panel refused.
        if (OnControlMessage(msg)) Refresh();
        return false;
    });
}

void CPanel::EnableAll(bool bEnable) {
    for (TPanelControl& control : m_vControls) control.bEnabled = bEnable;
}

void CPanel::NotifyTool() {
    PostToMainFrame(WM_REFRESH_TOOL);
    RedrawActiveView();
}
