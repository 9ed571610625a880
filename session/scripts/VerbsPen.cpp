// The verbs that send a tool events in canvas units.
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/System.h"
#include "session/scripts/DocumentState.h"
#include "session/scripts/Player.h"
#include "session/scripts/Taken.h"
#include "session/scripts/Verbs.h"
#include "session/seam/InputNames.h"

#include <nlohmann/json.hpp>

namespace {

CTools& GetActiveTool() {
    const auto spTool = g_wpActiveTool.lock();
    if (!spTool) throw step_failure("no tool is active");
    return *spTool;
}

// Flags of the keys held, as for an event in canvas units.
uint32_t HeldFlags(CPlayer& player) {
    IKeyState& keys = player.GetStage().platform.keys;
    return (keys.IsKeyDown(VK_Control) ? POINTER_CONTROL : 0u) |
           (keys.IsKeyDown(VK_Shift) ? POINTER_SHIFT : 0u) | (keys.IsKeyDown(VK_Alt) ? POINTER_ALT : 0u);
}

} // namespace

TAction ReadTool(const CScriptValue& value) {
    const int nId = static_cast<int>(value.Integer(0, 255));
    return [nId](CPlayer&) {
        if (!g_pMainFrame || !g_pMainFrame->SwitchTool(nId)) throw step_failure("there is no such tool");
    };
}

TAction ReadPen(const CScriptValue& value) {
    value.Object({"x", "y", "pressure", "altitude", "low", "idle"});
    const CPoint pt = ReadPosition(value);
    const auto uPressure = static_cast<uint32_t>(value.At("pressure").Integer(0, 1024));
    const auto uAltitude =
        static_cast<uint32_t>(value.Has("altitude") ? value.At("altitude").Integer(0, 90) : 90);
    const bool bLow = ReadFlag(value, "low");
    const bool bIdle = ReadFlag(value, "idle");
    return [=](CPlayer& player) {
        if (!bIdle) RequireTaken(true);
        const uint32_t flags = HeldFlags(player) | POINTER_TABLET | (bLow ? POINTER_LOW : 0u);
        GetActiveFrame().GetInput().Dispatch(GetActiveTool(), EMessage::MouseMove, pt, uPressure, uAltitude,
                                             flags);
    };
}

TAction ReadMouse(const CScriptValue& value) {
    value.Object({"message", "x", "y", "idle"});
    const EMessage id = ReadInputName(value, true).id;
    const bool bIdle = ReadFlag(value, "idle");
    const CPoint pt = ReadPosition(value);
    return [=](CPlayer& player) {
        // The right button also cancels a stroke of the pen.
        if (!bIdle && id != EMessage::RButtonDown) RequireTaken(false);
        GetActiveFrame().GetInput().Dispatch(GetActiveTool(), id, pt, 0, 90, HeldFlags(player));
    };
}
