// The verbs about tools, pen and mouse.
#include "core/AppModule/MessageQueue.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/MainFrame/MainFrame.h"
#include "core/Platform/System.h"
#include "session/DocumentState.h"
#include "session/Player.h"
#include "session/SessionPen.h"
#include "session/Verbs.h"

#include <nlohmann/json.hpp>

namespace {

constexpr int64_t MAX_POSITION = 1 << 24;

struct TMessageName {
    const char* pszName;
    EMessage id;
    uint32_t uButtons; ///< as a packet tells it
};

constexpr TMessageName MESSAGES[] = {
    {"move", EMessage::MouseMove, 0xFFFF}, {"ldown", EMessage::LButtonDown, 0x20000},
    {"lup", EMessage::LButtonUp, 0x10000}, {"rdown", EMessage::RButtonDown, 0x20001},
    {"rup", EMessage::RButtonUp, 0x10001},
};

const TMessageName& ReadMessage(const CScriptValue& value) {
    if (!value.Has("message")) return MESSAGES[0];
    const std::string strName = value.At("message").Utf8();
    for (const TMessageName& name : MESSAGES)
        if (strName == name.pszName) return name;
    value.At("message").Refuse("must be \"move\", \"ldown\", \"lup\", \"rdown\" or \"rup\"");
}

CPoint ReadPosition(const CScriptValue& value) {
    const auto read = [&](const char* pszKey) {
        return static_cast<int32_t>(value.At(pszKey).Integer(-MAX_POSITION, MAX_POSITION));
    };
    return {read("x"), read("y")};
}

// A number that has a default.
int64_t ReadNumber(const CScriptValue& value, const char* pszKey, int64_t nDefault, int64_t nMax) {
    return value.Has(pszKey) ? value.At(pszKey).Integer(0, nMax) : nDefault;
}

CTools& GetActiveTool() {
    const auto spTool = g_wpActiveTool.lock();
    if (!spTool) throw step_failure("no tool is active");
    return *spTool;
}

// Keys held, as an event in canvas units tells them.
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
    value.Object({"x", "y", "pressure", "altitude", "low"});
    const CPoint pt = ReadPosition(value);
    const auto uPressure = static_cast<uint32_t>(value.At("pressure").Integer(0, 1024));
    const auto uAltitude = static_cast<uint32_t>(ReadNumber(value, "altitude", 90, 90));
    const bool bLow = value.Has("low") && value.At("low").Flag();
    return [=](CPlayer& player) {
        const uint32_t flags = HeldFlags(player) | POINTER_TABLET | (bLow ? POINTER_LOW : 0u);
        GetActiveFrame().GetInput().Dispatch(GetActiveTool(), EMessage::MouseMove, pt, uPressure, uAltitude,
                                             flags);
    };
}

TAction ReadMouse(const CScriptValue& value) {
    value.Object({"message", "x", "y"});
    const EMessage id = ReadMessage(value).id;
    const CPoint pt = ReadPosition(value);
    return [=](CPlayer& player) {
        GetActiveFrame().GetInput().Dispatch(GetActiveTool(), id, pt, 0, 90, HeldFlags(player));
    };
}

TAction ReadPacket(const CScriptValue& value) {
    value.Object({"message", "x", "y", "pressure", "altitude", "azimuth", "twist"});
    TPenPacket packet;
    packet.uButtons = ReadMessage(value).uButtons;
    const CPoint pt = ReadPosition(value);
    packet.uPressure = static_cast<uint32_t>(value.At("pressure").Integer(0, 1023));
    packet.nAltitude = static_cast<int32_t>(ReadNumber(value, "altitude", 900, 900));
    packet.nAzimuth = static_cast<int32_t>(ReadNumber(value, "azimuth", 0, 3600));
    packet.nTwist = static_cast<int32_t>(ReadNumber(value, "twist", 0, 3600));
    return [=](CPlayer& player) mutable {
        ICanvasWindow& window = *GetActiveFrame().GetWindow();
        packet.x = pt.x + window.GetClientOrigin().x * CSessionPen::UNITS_PER_PIXEL;
        packet.y = pt.y + window.GetClientOrigin().y * CSessionPen::UNITS_PER_PIXEL;
        player.GetStage().pen.Push(packet);
        player.GetStage().platform.queue.Post({&window, EMessage::PenPacket});
    };
}

TAction ReadPointer(const CScriptValue& value) {
    value.Object({"message", "x", "y", "left"});
    const EMessage id = ReadMessage(value).id;
    const CPoint pt = ReadPosition(value);
    const bool bLeft = value.Has("left") ? value.At("left").Flag() : id == EMessage::LButtonDown;
    return [=](CPlayer& player) {
        const uint32_t flags = HeldFlags(player);
        const int64_t nKeys = (bLeft ? MOUSE_LEFT : 0) | (flags & POINTER_SHIFT ? MOUSE_SHIFT : 0) |
                              (flags & POINTER_CONTROL ? MOUSE_CONTROL : 0);
        player.GetStage().platform.queue.Post(
            {GetActiveFrame().GetWindow(), id, nKeys, PackPoint(pt.x, pt.y)});
    };
}

TAction ReadProximity(const CScriptValue& value) {
    const std::string strWhat = value.Utf8();
    if (strWhat != "enter" && strWhat != "leave") value.Refuse("must be \"enter\" or \"leave\"");
    const bool bEnter = strWhat == "enter";
    return [bEnter](CPlayer& player) {
        player.GetStage().platform.queue.Post(
            {GetActiveFrame().GetWindow(), EMessage::PenProximity, bEnter ? 1 : 0});
    };
}
