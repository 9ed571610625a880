// Keys that act while they are held: a further key beside Alt for picking, one beside Space for the hand.
#pragma once

#include "core/Platform/System.h"

#include <span>
#include <vector>

class CShortcuts;
struct TKey;

/// A command whose key is held, and the fixed key that it stands beside.
struct THeldCommand {
    int nCommand;
    int nFixedKey; ///< virtual key
};
std::span<const THeldCommand> GetHeldCommands();

/// The keys as canvases and tools see them: the key of a held command counts as its fixed key. With Control
/// it is another shortcut, and with modifiers in the set it is none.
class CHeldKeys : public IKeyState {
public:
    /// Both outlive the object.
    CHeldKeys(IKeyState& keys, const CShortcuts& shortcuts) : m_keys(keys), m_shortcuts(shortcuts) {}

    bool IsKeyDown(int nVirtualKey) override;
    /// The key that a pressed or released key counts as.
    int GetMeaning(int nVirtualKey, bool bDown) const;
    /// The set's keys beside a fixed key.
    std::vector<TKey> GetKeysBeside(int nFixedKey) const;

private:
    IKeyState& m_keys;
    const CShortcuts& m_shortcuts;
};
