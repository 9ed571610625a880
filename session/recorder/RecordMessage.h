// Conversion of the user's messages and packets to lines of a script.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Message.h"

#include <functional>

class CRecord;
struct TPenPacket;
struct TPlatform;

struct TRecordTo {
    CRecord& record;
    const TPlatform& platform; ///< of the session that is recorded
    std::function<CSize(const IWindow*, int)>
        fnViewSize; ///< the size at which a panel's view was last painted
};

/// Writes an external message before it is handled. Writes no line for messages that follow automatically
/// (timers, repaints, view changes covered by the view's lines) or that the application ignores.
void RecordMessage(const TRecordTo& to, const TMessage& msg);

/// Writes a packet that the active window is about to read.
void RecordPacket(const TRecordTo& to, const TPenPacket& packet);
