// The verbs about windows, commands, keys and time.
#include "core/AppModule/MessageQueue.h"
#include "core/Base/Failure.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "session/DocumentState.h"
#include "session/Player.h"
#include "session/SessionKeys.h"
#include "session/Verbs.h"

namespace {

constexpr int64_t MAX_VIEW_SIDE = 16384;
constexpr int64_t MAX_KEY = 254;

// Gives the active canvas window this client size. The frame around it is known only from the two sizes.
void ResizeView(CSize sz) {
    ICanvasWindow& window = *GetActiveFrame().GetWindow();
    const CRect rc = window.GetRect();
    const CSize szClient = window.GetClientSize();
    window.SetRect(
        CRect(rc.TopLeft(), {rc.Width() + sz.cx - szClient.cx, rc.Height() + sz.cy - szClient.cy}));
    const CSize szNew = window.GetClientSize();
    if (!(szNew == sz))
        throw step_failure("the view is " + std::to_string(szNew.cx) + " by " + std::to_string(szNew.cy) +
                           " and cannot have that size");
}

// What the keyboard would do: the state first, then the message to whoever has the focus.
void PressKey(CPlayer& player, int nKey, bool bDown) {
    CSessionKeys& keys = player.GetStage().keys;
    const bool bRepeat = bDown && keys.IsKeyDown(nKey);
    const bool bAlt = keys.IsKeyDown(VK_Alt) || nKey == VK_Alt;
    keys.Press(nKey, bDown);
    const auto spFrame = g_wpActiveFrame.lock();
    IWindow* pWindow = spFrame ? spFrame->GetWindow() : player.GetStage().fnMainWindow();
    const EMessage id = bDown ? (bAlt ? EMessage::SysKeyDown : EMessage::KeyDown)
                              : (bAlt ? EMessage::SysKeyUp : EMessage::KeyUp);
    if (pWindow) player.GetStage().platform.queue.Post({pWindow, id, nKey, bRepeat ? 1 : 0});
}

} // namespace

TAction ReadCommand(const CScriptValue& value) {
    const int nId = static_cast<int>(value.Integer(1, 65535));
    return [nId](CPlayer& player) { player.SendCommand(nId); };
}

TAction ReadView(const CScriptValue& value) {
    value.Object({"width", "height"});
    const CSize sz{static_cast<int32_t>(value.At("width").Integer(1, MAX_VIEW_SIDE)),
                   static_cast<int32_t>(value.At("height").Integer(1, MAX_VIEW_SIDE))};
    return [sz](CPlayer&) { ResizeView(sz); };
}

TAction ReadClose(const CScriptValue& value) {
    const std::string strWhat = value.Utf8();
    if (strWhat != "frame" && strWhat != "main") value.Refuse("must be \"frame\" or \"main\"");
    const bool bFrame = strWhat == "frame";
    return [bFrame](CPlayer& player) {
        IWindow* pWindow = bFrame ? GetActiveFrame().GetWindow() : player.GetStage().fnMainWindow();
        if (!pWindow) throw step_failure("there is no main window");
        player.GetStage().platform.queue.Post({pWindow, EMessage::Close});
    };
}

TAction ReadKey(const CScriptValue& value) {
    value.Object({"down", "up"});
    if (value.Has("down") == value.Has("up")) value.Refuse("must have either \"down\" or \"up\"");
    const bool bDown = value.Has("down");
    const int nKey = static_cast<int>(value.At(bDown ? "down" : "up").Integer(1, MAX_KEY));
    return [nKey, bDown](CPlayer& player) { PressKey(player, nKey, bDown); };
}

TAction ReadWait(const CScriptValue& value) {
    const auto uMilliseconds = static_cast<uint32_t>(value.Integer(0, CPlayer::MAX_WAIT));
    return [uMilliseconds](CPlayer& player) { player.Wait(uMilliseconds); };
}
