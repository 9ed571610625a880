// Where a played session's messages come from: its windows, then its script.
#pragma once

#include "core/Platform/Message.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

class CPlayer;
class CSessionWindows;

/// Never blocks. Without waiting it brings what is already there: a real window system's events, paints,
/// timers that are due. A step of the script is played only when the session would wait, so that the steps
/// before it, idle work included, have had their whole effect.
class CSessionPump : public IEventPump, boost::noncopyable {
public:
    /// `pRealPump` may be null.
    CSessionPump(IMessageQueue& queue, CSessionWindows& windows, CPlayer& player, IEventPump* pRealPump)
        : m_queue(queue), m_windows(windows), m_player(player), m_pRealPump(pRealPump) {}

    bool Pump(bool bWait) override;

private:
    bool PumpReady();

    IMessageQueue& m_queue;
    CSessionWindows& m_windows;
    CPlayer& m_player;
    IEventPump* m_pRealPump;
    bool m_bInside = false; ///< the queue asks back while it is looked at
};
