// What the user's messages and packets are as lines of a script.
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
        fnViewSize; ///< the size that a panel's view was painted in last
};

/// Writes a message that came from outside, before it is handled. Those that follow by themselves (timers,
/// repaints, what the view's lines say) and those that the application ignores give no line.
void RecordMessage(const TRecordTo& to, const TMessage& msg);

/// Writes a packet that the active window is about to read.
void RecordPacket(const TRecordTo& to, const TPenPacket& packet);
