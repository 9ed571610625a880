// The verb "panel": what the user does with a panel's controls and views.
#include "core/MainFrame/MainFrame.h"
#include "session/InputNames.h"
#include "session/Player.h"
#include "session/SessionPanelWindow.h"
#include "session/Verbs.h"

#include <nlohmann/json.hpp>

namespace {

constexpr int64_t MAX_SIDE = 16384;

struct TPanelAct {
    int nPanel = 0;
    EMessage id = EMessage::PanelChange;
    int64_t wParam = 0;
    int64_t lParam = 0;
    std::wstring strText = {};
    CSize szView = {}; ///< a view's size, which positions in it are about
};

int ReadId(const CScriptValue& value, const char* pszKey) {
    return static_cast<int>(value.At(pszKey).Integer(0, UINT16_MAX));
}

int32_t ReadRow(const CScriptValue& value, const char* pszKey) {
    return static_cast<int32_t>(value.At(pszKey).Integer(INT32_MIN, INT32_MAX));
}

TPanelAct ReadView(const CScriptValue& value, TPanelAct act) {
    const int nView = ReadId(value, "view");
    if (value.Has("key")) {
        value.Object({"id", "view", "key"});
        act.id = EMessage::KeyDown;
        act.wParam = PackView(value.At("key").Integer(1, 254), nView);
        return act;
    }
    value.Object({"id", "view", "message", "x", "y", "width", "height"});
    act.id = ReadInputName(value, true).id;
    act.wParam = PackView(0, nView);
    const CPoint pt = ReadPosition(value);
    act.lParam = PackPoint(pt.x, pt.y);
    act.szView = {static_cast<int32_t>(value.At("width").Integer(1, MAX_SIDE)),
                  static_cast<int32_t>(value.At("height").Integer(1, MAX_SIDE))};
    return act;
}

TPanelAct ReadControl(const CScriptValue& value, TPanelAct act) {
    act.wParam = ReadId(value, "control");
    if (value.Has("text")) act.strText = value.At("text").TypedText();
    if (value.Has("value")) {
        value.Object({"id", "control", "value", "text"});
        act.lParam = ReadRow(value, "value");
    } else if (value.Has("activate")) {
        value.Object({"id", "control", "activate"});
        act.id = EMessage::PanelActivate;
        act.lParam = ReadRow(value, "activate");
    } else if (value.Has("rename")) {
        value.Object({"id", "control", "rename", "text"});
        act.id = EMessage::PanelRename;
        act.lParam = ReadRow(value, "rename");
    } else {
        value.Object({"id", "control", "from", "to"});
        act.id = EMessage::PanelMove;
        act.lParam = PackPoint(ReadRow(value, "from"), ReadRow(value, "to"));
    }
    return act;
}

void Play(const TPanelAct& act, CPlayer& player) {
    const CPanel* pPanel = g_pMainFrame ? g_pMainFrame->GetPanels().Find(act.nPanel) : nullptr;
    if (!pPanel || !pPanel->GetWindow()) throw step_failure("there is no such panel");
    auto* pWindow = dynamic_cast<CSessionPanelWindow*>(pPanel->GetWindow());
    if (pWindow && act.szView.cx > 0) pWindow->PaintView(PackedView(act.wParam), act.szView);
    player.GetStage().platform.queue.Post({pPanel->GetWindow(), act.id, act.wParam, act.lParam, act.strText});
}

} // namespace

TAction ReadPanel(const CScriptValue& value) {
    const TPanelAct panel{.nPanel = ReadCommandId(value.At("id"))};
    const TPanelAct act = value.Has("view") ? ReadView(value, panel) : ReadControl(value, panel);
    return [act](CPlayer& player) { Play(act, player); };
}
