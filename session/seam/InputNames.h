// Script names of pointer and pen input; the verbs read these names and the recorder writes them.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Message.h"
#include "session/seam/ScriptValue.h"

#include <nlohmann/json_fwd.hpp>

#include <span>

struct TInputName {
    const char* pszName;
    EMessage id;
    uint32_t uButtons; ///< as in a packet; 0 for input that no packet reports
};

/// A packet without a change of buttons.
constexpr uint32_t NO_BUTTON = 0xFFFF;

/// All names; the first is that of a plain move.
std::span<const TInputName> GetInputNames();
/// The name of a message, null for none.
const TInputName* FindInputName(EMessage id);

/// Reads the member "message" of a line's object; the first name when it is missing. `bPacket` rejects
/// names that no packet reports. Raises script_error.
const TInputName& ReadInputName(const CScriptValue& value, bool bPacket);

/// Reads a command by its name or its id. Raises script_error.
int ReadCommandId(const CScriptValue& value);
/// A command's name for a script, or its id when it has no name.
nlohmann::json WriteCommandId(int nId);

/// Reads a boolean member, false when it is missing. Raises script_error.
bool ReadFlag(const CScriptValue& value, const char* pszKey);

/// Reads the members "x" and "y". Raises script_error.
CPoint ReadPosition(const CScriptValue& value);
