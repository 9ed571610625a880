// Virtual key codes of key events, and which keys are down.
#pragma once

#include "core/Platform/System.h"

#include <qnamespace.h>

#include <bitset>

class QKeyEvent;

/// The virtual key code of an event's key, 0 for keys that have none.
int VirtualKeyOf(const QKeyEvent& event);

/// The state of the keys at the message being handled. Events change the present state at once; messages
/// are handled later, and the state must match them (Ctrl+Z stays Ctrl+Z when Ctrl was released before the
/// message was handled). So the reported state advances with the messages.
class CQtKeyState : public IKeyState {
public:
    using TKeys = std::bitset<256>;

    bool IsKeyDown(int nVirtualKey) override;

    void Press(int nVirtualKey, bool bDown);
    /// Sets Shift, Ctrl and Alt to the modifiers of a pointer event.
    void SyncModifiers(Qt::KeyboardModifiers modifiers);
    /// Releases all keys: changes while another program has the keyboard are not reported.
    void Clear();

    const TKeys& GetPresent() const { return m_present; }
    /// Sets the state that IsKeyDown reports from now on.
    void Follow(const TKeys& keys) { m_seen = keys; }

private:
    TKeys m_present;
    TKeys m_seen;
};
