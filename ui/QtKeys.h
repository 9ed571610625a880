// Virtual key codes of key events, and which keys are down.
#pragma once

#include "core/Platform/System.h"

#include <qnamespace.h>

#include <bitset>

class QKeyEvent;

/// The virtual key code of an event's key, 0 for keys that have none.
int VirtualKeyOf(const QKeyEvent& event);

/// Keys as the message being handled found them. Events change the present state at once; messages follow
/// later, and what the application asks must fit the message that it is handling (Ctrl+Z stays Ctrl+Z when
/// Ctrl went up before the message was taken). So the state that is answered moves on with the messages.
class CQtKeyState : public IKeyState {
public:
    using TKeys = std::bitset<256>;

    bool IsKeyDown(int nVirtualKey) override;

    void Press(int nVirtualKey, bool bDown);
    /// Brings Shift, Ctrl and Alt in line with what an event of the pointer says.
    void SyncModifiers(Qt::KeyboardModifiers modifiers);
    /// All keys up: what happens to them while another program has the keyboard is not told.
    void Clear();

    const TKeys& GetPresent() const { return m_present; }
    /// Sets what IsKeyDown answers from now on.
    void Follow(const TKeys& keys) { m_seen = keys; }

private:
    TKeys m_present;
    TKeys m_seen;
};
