// The source of a played session's messages: its windows, then its script.
#pragma once

#include "core/Platform/Message.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

class CPlayer;
class CSessionWindows;

/// Never blocks. Without waiting it delivers what is pending: paints, due timers, and the events of real
/// windows. A step of the script is played only when the session would wait, so that the steps before it,
/// idle work included, have been handled completely.
class CSessionPump : public IEventPump, boost::noncopyable {
public:
    /// `pShown` is the queue of real windows that show the session's; null without any.
    CSessionPump(IMessageQueue& queue, CSessionWindows& windows, CPlayer& player, IMessageQueue* pShown)
        : m_queue(queue), m_windows(windows), m_player(player), m_pShown(pShown) {}

    bool Pump(bool bWait) override;

private:
    void TurnShown();
    bool PumpReady();

    IMessageQueue& m_queue;
    CSessionWindows& m_windows;
    CPlayer& m_player;
    IMessageQueue* m_pShown;
    bool m_bInside = false; ///< guards against reentry from the queue
};
