#include "session/seam/InputNames.h"

#include "core/Commands/Commands.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

constexpr int64_t MAX_POSITION = 1 << 24;

constexpr TInputName NAMES[] = {
    {"move", EMessage::MouseMove, NO_BUTTON}, {"ldown", EMessage::LButtonDown, 0x20000},
    {"lup", EMessage::LButtonUp, 0x10000},    {"rdown", EMessage::RButtonDown, 0x20001},
    {"rup", EMessage::RButtonUp, 0x10001},    {"mdown", EMessage::MButtonDown, 0x20002},
    {"mup", EMessage::MButtonUp, 0x10002},    {"leave", EMessage::MouseLeave, 0},
    {"lost", EMessage::CaptureChanged, 0},    {"activate", EMessage::MouseActivate, 0},
    {"touch", EMessage::PenActivate, 0},
};

} // namespace

std::span<const TInputName> GetInputNames() { return NAMES; }

const TInputName* FindInputName(EMessage id) {
    const auto* it = std::ranges::find(NAMES, id, &TInputName::id);
    return it == std::end(NAMES) ? nullptr : it;
}

const TInputName& ReadInputName(const CScriptValue& value, bool bPacket) {
    if (!value.Has("message")) return NAMES[0];
    const CScriptValue message = value.At("message");
    const std::string strName = message.Utf8();
    std::string strAll;
    for (const TInputName& name : NAMES) {
        if (bPacket && name.uButtons == 0) continue;
        if (strName == name.pszName) return name;
        strAll += std::string(strAll.empty() ? "\"" : ", \"") + name.pszName + "\"";
    }
    message.Refuse("must be one of " + strAll);
}

CPoint ReadPosition(const CScriptValue& value) {
    const auto read = [&](const char* pszKey) {
        return static_cast<int32_t>(value.At(pszKey).Integer(-MAX_POSITION, MAX_POSITION));
    };
    return {read("x"), read("y")};
}

int ReadCommandId(const CScriptValue& value) {
    if (!value.GetJson().is_string()) return static_cast<int>(value.Integer(1, UINT16_MAX));
    const int nId = FindCommandId(value.Utf8());
    if (!nId) value.Refuse(value.GetJson().dump() + " names no command");
    return nId;
}

nlohmann::json WriteCommandId(int nId) {
    const char* pszName = FindCommandName(nId);
    return pszName ? nlohmann::json(pszName) : nlohmann::json(nId);
}

bool ReadFlag(const CScriptValue& value, const char* pszKey) {
    return value.Has(pszKey) && value.At(pszKey).Flag();
}
