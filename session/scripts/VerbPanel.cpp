// The verb "panel": user input to a panel's controls and views.
#include "core/MainFrame/MainFrame.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "session/seam/ControlAct.h"
#include "session/seam/InputNames.h"
#include "session/seam/SessionPanelWindow.h"

TAction ReadPanel(const CScriptValue& value) {
    const int nPanel = ReadCommandId(value.At("id"));
    const TControlAct act = ReadControlAct(value, "id");
    return [=](CPlayer& player) {
        const CPanel* pPanel = g_pMainFrame ? g_pMainFrame->GetPanels().Find(nPanel) : nullptr;
        if (!pPanel || !pPanel->GetWindow()) throw step_failure("there is no such panel");
        auto* pWindow = dynamic_cast<CSessionPanelWindow*>(pPanel->GetWindow());
        if (pWindow && act.szView.cx > 0) pWindow->PaintView(PackedView(act.wParam), act.szView);
        player.GetStage().platform.queue.Post(act.ToMessage(pPanel->GetWindow()));
    };
}
