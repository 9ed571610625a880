// How scripts name what pointer and pen tell; the verbs read these names and the recorder writes them.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Message.h"
#include "session/ScriptValue.h"

#include <nlohmann/json_fwd.hpp>

#include <span>

struct TInputName {
    const char* pszName;
    EMessage id;
    uint32_t uButtons; ///< as a packet tells it; 0 for what no packet tells
};

/// A packet without a change of buttons.
constexpr uint32_t NO_BUTTON = 0xFFFF;

/// All names; the first is that of a mere move.
std::span<const TInputName> GetInputNames();
/// The name of a message, null for none.
const TInputName* FindInputName(EMessage id);

/// The member "message" of a line's object, the first name when there is none. `bPacket` leaves out what no
/// packet tells. Raises script_error.
const TInputName& ReadInputName(const CScriptValue& value, bool bPacket);

/// A command, by its name or its id. Raises script_error.
int ReadCommandId(const CScriptValue& value);
/// A command as a script says it: its name, without one its id.
nlohmann::json WriteCommandId(int nId);

/// A member that is true or false, false when there is none. Raises script_error.
bool ReadFlag(const CScriptValue& value, const char* pszKey);

/// The members "x" and "y". Raises script_error.
CPoint ReadPosition(const CScriptValue& value);
