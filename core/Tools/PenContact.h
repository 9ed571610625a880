// The pen contact of the last event, for all windows and tools.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdint>

/// One for each session. A contact that was cancelled, or whose window or tool changed, is dropped: its
/// events reach no tool until the pen is lifted.
class CPenContact : boost::noncopyable {
public:
    /// Records an event's pressure; `bReleased` reports that the tip was lifted. False when the event
    /// belongs to a dropped contact.
    bool Take(uint32_t uPressure, bool bReleased) {
        m_bDown = uPressure != 0;
        if (m_bDown || bReleased) m_bAwaited = false;
        if (!m_bDown && !m_bAwaited) m_bDropped = false;
        return !m_bDown || !m_bDropped;
    }
    /// True while the last event had pressure.
    bool IsDown() const { return m_bDown; }
    /// Drops the rest of a contact.
    void Drop() { m_bDropped = m_bDropped || m_bDown; }
    /// Drops the contact of a tip that has just touched, before its events arrive.
    void DropNext() { m_bDropped = m_bAwaited = true; }
    /// The pen left, entered or was turned: its next contact is a new one.
    void End() { m_bDown = m_bDropped = m_bAwaited = false; }

private:
    bool m_bDown = false;
    bool m_bDropped = false;
    bool m_bAwaited = false; ///< the dropped contact has not reached the threshold yet
};
