// The parts of a pen's packet as lines of scripts have them.
#pragma once

#include "core/Platform/Pen.h"
#include "session/seam/ScriptValue.h"

#include <nlohmann/json_fwd.hpp>

/// Reads "x", "y", "pressure", and where they stand "altitude" (upright without), "azimuth", "twist" and
/// "eraser". Raises script_error.
TPenPacket ReadPacketParts(const CScriptValue& value);
/// The same members of a packet, without those that reading adds.
nlohmann::json WritePacketParts(const TPenPacket& packet);
