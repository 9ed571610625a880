#include "session/seam/ControlAct.h"

#include "core/Base/Text.h"
#include "session/seam/Glass.h"
#include "session/seam/InputNames.h"
#include "session/seam/PacketParts.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

using nlohmann::json;

namespace {

constexpr int64_t MAX_SIDE = 16384;
constexpr int64_t MAX_ROW = 100000;

int ReadId(const CScriptValue& value, const char* pszKey) {
    return static_cast<int>(value.At(pszKey).Integer(0, UINT16_MAX));
}

int32_t ReadRow(const CScriptValue& value, const char* pszKey) {
    return static_cast<int32_t>(value.At(pszKey).Integer(INT32_MIN, INT32_MAX));
}

// The words for EEyeAct and for EDropAt, in the order of their values.
constexpr std::array<const char*, 3> EYE_ACTS{"hide", "show", "alone"};
constexpr std::array<const char*, 3> DROP_PLACES{"above", "onto", "below"};

int ReadWord(const CScriptValue& value, const char* pszKey, const std::array<const char*, 3>& words) {
    const auto it = std::ranges::find(words, value.At(pszKey).Utf8());
    if (it == words.end()) value.At(pszKey).Refuse("is not a known word");
    return static_cast<int>(it - words.begin());
}

TControlAct ReadView(const CScriptValue& value, const char* pszOwner) {
    TControlAct act;
    const int nView = ReadId(value, "view");
    if (value.Has("key")) {
        value.Object({pszOwner, "view", "key"});
        act.id = EMessage::KeyDown;
        act.wParam = PackView(value.At("key").Integer(1, 254), nView);
        return act;
    }
    act.wParam = PackView(0, nView);
    if (value.Has("pen")) {
        value.Object({pszOwner, "view", "pen", "time", "width", "height"});
        act.report = {ReadPacketParts(value.At("pen").Object(
                          {"x", "y", "pressure", "altitude", "azimuth", "twist", "eraser"})),
                      static_cast<uint32_t>(value.At("time").Integer(0, UINT32_MAX))};
    } else {
        value.Object({pszOwner, "view", "message", "x", "y", "width", "height"});
        act.id = ReadInputName(value, true).id;
        const CPoint pt = ReadPosition(value);
        act.lParam = PackPoint(pt.x, pt.y);
    }
    act.szView = {static_cast<int32_t>(value.At("width").Integer(1, MAX_SIDE)),
                  static_cast<int32_t>(value.At("height").Integer(1, MAX_SIDE))};
    return act;
}

TControlAct ReadControl(const CScriptValue& value, const char* pszOwner) {
    TControlAct act;
    act.wParam = ReadId(value, "control");
    if (value.Has("text")) act.strText = value.At("text").TypedText();
    if (value.Has("value")) {
        value.Object({pszOwner, "control", "value", "text"});
        act.lParam = ReadRow(value, "value");
    } else if (value.Has("activate")) {
        value.Object({pszOwner, "control", "activate"});
        act.id = EMessage::PanelActivate;
        act.lParam = ReadRow(value, "activate");
    } else if (value.Has("rename")) {
        value.Object({pszOwner, "control", "rename", "text"});
        act.id = EMessage::PanelRename;
        act.lParam = ReadRow(value, "rename");
    } else if (value.Has("eye")) {
        value.Object({pszOwner, "control", "eye", "show"});
        act.id = EMessage::PanelEye;
        act.lParam = PackPoint(ReadRow(value, "eye"), ReadWord(value, "show", EYE_ACTS));
    } else if (value.Has("fold")) {
        value.Object({pszOwner, "control", "fold", "closed"});
        act.id = EMessage::PanelFold;
        act.lParam = PackPoint(ReadRow(value, "fold"), value.At("closed").Flag());
    } else if (value.Has("drag")) {
        value.Object({pszOwner, "control", "drag", "drop", "row"});
        act.id = EMessage::PanelDrop;
        act.lParam = PackPoint(ReadRow(value, "drag"),
                               PackDrop(static_cast<int32_t>(value.At("row").Integer(0, MAX_ROW)),
                                        ReadWord(value, "drop", DROP_PLACES)));
    } else if (value.Has("menu")) {
        value.Object({pszOwner, "control", "menu"});
        act.id = EMessage::PanelMenu;
        act.lParam = ReadRow(value, "menu");
    } else {
        value.Object({pszOwner, "control", "from", "to"});
        act.id = EMessage::PanelMove;
        act.lParam = PackPoint(ReadRow(value, "from"), ReadRow(value, "to"));
    }
    return act;
}

} // namespace

bool IsControlAct(const CScriptValue& value) { return value.Has("control") || value.Has("view"); }

TControlAct ReadControlAct(const CScriptValue& value, const char* pszOwner) {
    return value.Has("view") ? ReadView(value, pszOwner) : ReadControl(value, pszOwner);
}

json WriteControlAct(const TMessage& msg, const std::function<CSize(int nView)>& fnViewSize) {
    const int nView = PackedView(msg.wParam);
    if (nView != 0 && msg.id == EMessage::KeyDown) return {{"view", nView}, {"key", msg.wParam & 0xFF}};
    if (const TInputName* pName = FindInputName(msg.id); pName && nView != 0) {
        const CSize sz = fnViewSize(nView);
        if (sz.cx <= 0 || sz.cy <= 0) return json::object();
        return {{"view", nView},
                {"message", pName->pszName},
                {"x", PackedX(msg.lParam)},
                {"y", PackedY(msg.lParam)},
                {"width", sz.cx},
                {"height", sz.cy}};
    }
    json line{{"control", msg.wParam}};
    if (!msg.strText.empty()) line["text"] = ToUtf8(msg.strText);
    switch (msg.id) {
    case EMessage::PanelChange:
        line["value"] = msg.lParam;
        return line;
    case EMessage::PanelActivate:
        line["activate"] = msg.lParam;
        return line;
    case EMessage::PanelRename:
        line.update({{"rename", msg.lParam}, {"text", ToUtf8(msg.strText)}});
        return line;
    case EMessage::PanelMove:
        line.update({{"from", PackedX(msg.lParam)}, {"to", PackedY(msg.lParam)}});
        return line;
    case EMessage::PanelEye:
        line.update(
            {{"eye", PackedX(msg.lParam)}, {"show", EYE_ACTS.at(static_cast<size_t>(PackedY(msg.lParam)))}});
        return line;
    case EMessage::PanelFold:
        line.update({{"fold", PackedX(msg.lParam)}, {"closed", PackedY(msg.lParam) != 0}});
        return line;
    case EMessage::PanelDrop:
        line.update({{"drag", PackedX(msg.lParam)},
                     {"drop", DROP_PLACES.at(static_cast<size_t>(DroppedAt(PackedY(msg.lParam))))},
                     {"row", DroppedRow(PackedY(msg.lParam))}});
        return line;
    case EMessage::PanelMenu:
        line["menu"] = msg.lParam;
        return line;
    default:
        return json::object();
    }
}

json WritePenAct(int nView, const TPenReport& report, CSize szView) {
    return {{"view", nView},
            {"pen", WritePacketParts(report.packet)},
            {"time", report.uTime},
            {"width", szView.cx},
            {"height", szView.cy}};
}

void PaintView(const std::vector<TPanelControl>& vControls, int nId, CSize sz) {
    for (const TPanelControl& control : vControls) {
        if (control.nId != nId || !control.pView) continue;
        CGlass glass;
        glass.Resize(sz);
        control.pView->OnPaint(glass, {.sz = sz});
    }
}
