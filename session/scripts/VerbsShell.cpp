// The verbs about windows, commands, keys and time.
#include "core/AppModule/MessageQueue.h"
#include "core/Base/Failure.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "session/scripts/DocumentState.h"
#include "session/scripts/Player.h"
#include "session/scripts/Verbs.h"
#include "session/seam/InputNames.h"
#include "session/seam/SessionKeys.h"

#include <nlohmann/json.hpp>

#include <iterator>
#include <vector>

namespace {

constexpr int64_t MAX_VIEW_SIDE = 16384;
constexpr int64_t MAX_KEY = 254;
constexpr int64_t MAX_FRAMES = 65535;

// Resizes the active canvas window's client area; both sizes determine the frame around it.
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

// Simulates a key: the state first, then the message to the window with the focus.
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
    const int nId = ReadCommandId(value);
    return [nId](CPlayer& player) { player.SendCommand(nId); };
}

TAction ReadTry(const CScriptValue& value) {
    const int nId = ReadCommandId(value);
    return [nId](CPlayer& player) { player.TryCommand(nId); };
}

TAction ReadView(const CScriptValue& value) {
    value.Object({"width", "height", "zoom", "angle", "flipH", "flipV", "scroll"});
    const CSize sz{static_cast<int32_t>(value.At("width").Integer(1, MAX_VIEW_SIDE)),
                   static_cast<int32_t>(value.At("height").Integer(1, MAX_VIEW_SIDE))};
    if (!value.Has("zoom")) {
        value.Object({"width", "height"});
        return [sz](CPlayer&) { ResizeView(sz); };
    }
    const CScriptValue angle = value.At("angle");
    if (angle.Integer(0, 270) % 90 != 0) angle.Refuse("must be 0, 90, 180 or 270");
    const TViewState view{static_cast<uint16_t>(value.At("zoom").Integer(1, UINT16_MAX)),
                          static_cast<uint16_t>(angle.Integer(0, 270)), value.At("flipH").Flag(),
                          value.At("flipV").Flag()};
    const CPoint ptScroll = ReadPosition(value.At("scroll").Object({"x", "y"}));
    return [=](CPlayer&) {
        ResizeView(sz);
        GetActiveFrame().ApplyView(view);
        GetActiveFrame().ScrollTo(ptScroll);
    };
}

TAction ReadActivate(const CScriptValue& value) {
    const auto nFrame = static_cast<size_t>(value.Integer(0, MAX_FRAMES));
    return [nFrame](CPlayer&) {
        if (nFrame >= g_lstCanvasFrame.size()) throw step_failure("there is no such canvas window");
        const auto it = std::next(g_lstCanvasFrame.begin(), static_cast<std::ptrdiff_t>(nFrame));
        if ((*it)->GetWindow()) (*it)->GetWindow()->Activate();
    };
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

TAction ReadKeys(const CScriptValue& value) {
    if (!value.GetJson().is_array()) value.Refuse("must be a list of virtual key codes");
    std::vector<int> vKeys;
    for (const auto& member : value.GetJson())
        vKeys.push_back(static_cast<int>(CScriptValue(member, value.GetName()).Integer(1, MAX_KEY)));
    return [vKeys](CPlayer& player) {
        CSessionKeys& keys = player.GetStage().keys;
        for (int nKey = 1; nKey <= MAX_KEY; ++nKey) keys.Press(nKey, false);
        for (const int nKey : vKeys) keys.Press(nKey, true);
    };
}

TAction ReadWait(const CScriptValue& value) {
    const auto uMilliseconds = static_cast<uint32_t>(value.Integer(0, CPlayer::MAX_WAIT));
    return [uMilliseconds](CPlayer& player) { player.Wait(uMilliseconds); };
}
