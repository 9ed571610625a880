#include "session/InputNames.h"

namespace {

constexpr int64_t MAX_POSITION = 1 << 24;

constexpr TInputName NAMES[] = {
    {"move", EMessage::MouseMove, NO_BUTTON}, {"ldown", EMessage::LButtonDown, 0x20000},
    {"lup", EMessage::LButtonUp, 0x10000},    {"rdown", EMessage::RButtonDown, 0x20001},
    {"rup", EMessage::RButtonUp, 0x10001},    {"leave", EMessage::MouseLeave, 0},
    {"lost", EMessage::CaptureChanged, 0},    {"activate", EMessage::MouseActivate, 0},
    {"touch", EMessage::PenActivate, 0},
};

} // namespace

std::span<const TInputName> GetInputNames() { return NAMES; }

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

bool ReadFlag(const CScriptValue& value, const char* pszKey) {
    return value.Has(pszKey) && value.At(pszKey).Flag();
}
