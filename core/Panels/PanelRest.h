// When the panels may work: a pen or pointer on its way over the canvas must not wait for them.
#pragma once

#include "core/Platform/Message.h"

#include <cstdint>

class CPanelRest {
public:
    static constexpr uint32_t REST_MS = 100; ///< after the pointer's last message
    /// A pen that is held above the tablet never stops: the panels rest at most so long.
    static constexpr uint32_t MOST_MS = 1000;

    /// Follows the message loop: pointer messages to a canvas begin the rest, what the user does elsewhere
    /// ends it. `bPanel`: the message goes to a panel. `uTick` is the time now.
    void Follow(const TMessage& msg, bool bPanel, uint32_t uTick);
    /// Called when the user has executed a command.
    void End() { m_bMoving = false; }
    /// Called when nothing is left to do.
    void OnAllDone(uint32_t uTick) { m_uDoneTick = uTick; }
    /// True while the panels must not work.
    bool IsResting(uint32_t uTick) const {
        return m_bMoving && uTick - m_uMoveTick < REST_MS && uTick - m_uDoneTick < MOST_MS;
    }

private:
    uint32_t m_uMoveTick = 0; ///< of the pointer's last message
    uint32_t m_uDoneTick = 0; ///< when nothing was left to do
    bool m_bMoving = false;
};
