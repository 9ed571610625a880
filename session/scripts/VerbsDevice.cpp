// The verbs for pointer and pen input to a window.
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/System.h"
#include "session/scripts/DocumentState.h"
#include "session/scripts/Player.h"
#include "session/scripts/Taken.h"
#include "session/scripts/Verbs.h"
#include "session/seam/InputNames.h"
#include "session/seam/PacketParts.h"
#include "session/seam/SessionCanvasWindow.h"
#include "session/seam/SessionPen.h"

#include <nlohmann/json.hpp>

namespace {

constexpr int64_t MAX_AXIS = 1 << 20;
constexpr uint32_t CURSOR_TIP = 1, CURSOR_ERASER = 2;

void PostToActive(CPlayer& player, EMessage id, int64_t wParam = 0, int64_t lParam = 0) {
    player.GetStage().platform.queue.Post({GetActiveFrame().GetWindow(), id, wParam, lParam});
}

} // namespace

TAction ReadPacket(const CScriptValue& value) {
    value.Object({"message", "x", "y", "pressure", "altitude", "azimuth", "twist", "eraser", "status",
                  "covered", "idle"});
    TPenPacket packet = ReadPacketParts(value);
    packet.uButtons = ReadInputName(value, true).uButtons;
    const CPoint pt{packet.x, packet.y};
    if (value.Has("status")) packet.uStatus = static_cast<uint32_t>(value.At("status").Integer(0, INT32_MAX));
    const bool bCovered = ReadFlag(value, "covered");
    const bool bIdle = ReadFlag(value, "idle");
    return [=](CPlayer& player) mutable {
        CSessionPen& pen = player.GetStage().pen;
        if (packet.uPressure > static_cast<uint32_t>(pen.GetPressureAxis().nMax) ||
            std::abs(packet.nAltitude) > pen.GetAltitudeAxis().nMax)
            throw step_failure("the tablet's axes end before this pressure or altitude");
        ICanvasWindow* pWindow = GetActiveFrame().GetWindow();
        if (auto* pSession = dynamic_cast<CSessionCanvasWindow*>(pWindow)) pSession->SetCovered(bCovered);
        const int32_t nUnits = pen.GetUnitsPerPixel();
        if (!bIdle && !bCovered) RequireTaken(*pWindow, pt, nUnits);
        const CPoint ptOrigin = pWindow->GetClientOrigin();
        packet.x = pt.x + ptOrigin.x * nUnits;
        packet.y = pt.y + ptOrigin.y * nUnits;
        pen.Push(packet);
        PostToActive(player, EMessage::PenPacket);
    };
}

TAction ReadTablet(const CScriptValue& value) {
    value.Object({"units", "pressure", "altitude"});
    const CSessionPen::TDevice device{static_cast<int32_t>(value.At("pressure").Integer(1, MAX_AXIS)),
                                      static_cast<int32_t>(value.At("altitude").Integer(1, MAX_AXIS)),
                                      static_cast<int32_t>(value.At("units").Integer(1, 1024))};
    return [device](CPlayer& player) {
        // A window queries the device when it opens.
        if (!player.IsPreparing()) throw step_failure("a tablet stands at the script's head");
        player.GetStage().pen.SetDevice(device);
    };
}

TAction ReadPointer(const CScriptValue& value) {
    value.Object({"message", "x", "y", "left", "idle"});
    const TInputName& name = ReadInputName(value, false);
    const bool bPlace = name.uButtons != 0;
    const CPoint pt = bPlace ? ReadPosition(value) : CPoint{};
    const bool bLeft = value.Has("left") ? value.At("left").Flag() : name.id == EMessage::LButtonDown;
    const bool bIdle = !bPlace || ReadFlag(value, "idle");
    return [=, id = name.id](CPlayer& player) {
        if (!bIdle) RequireTaken(false);
        IKeyState& keys = player.GetStage().platform.keys;
        const int64_t nKeys = (bLeft ? MOUSE_LEFT : 0) | (keys.IsKeyDown(VK_Shift) ? MOUSE_SHIFT : 0) |
                              (keys.IsKeyDown(VK_Control) ? MOUSE_CONTROL : 0);
        PostToActive(player, id, bPlace ? nKeys : 0, PackPoint(pt.x, pt.y));
    };
}

TAction ReadWheel(const CScriptValue& value) {
    const int64_t nDelta = value.Integer(-MAX_AXIS, MAX_AXIS);
    return [nDelta](CPlayer& player) { PostToActive(player, EMessage::MouseWheel, nDelta); };
}

TAction ReadProximity(const CScriptValue& value) {
    const std::string strWhat = value.Utf8();
    if (strWhat != "enter" && strWhat != "eraser" && strWhat != "leave")
        value.Refuse("must be \"enter\", \"eraser\" or \"leave\"");
    const bool bEnter = strWhat != "leave";
    const int64_t nCursor = strWhat == "eraser" ? CURSOR_ERASER : CURSOR_TIP;
    return [=](CPlayer& player) { PostToActive(player, EMessage::PenProximity, bEnter, nCursor); };
}
