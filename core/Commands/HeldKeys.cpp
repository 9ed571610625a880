#include "core/Commands/HeldKeys.h"

#include "core/Commands/CommandIds.h"
#include "core/Commands/Shortcuts.h"

#include <algorithm>

namespace {

constexpr THeldCommand COMMANDS[] = {{ID_HOLD_PICK, VK_Alt}, {ID_HOLD_HAND, VK_Space}};

} // namespace

std::span<const THeldCommand> GetHeldCommands() { return COMMANDS; }

bool CHeldKeys::IsKeyDown(int nVirtualKey) {
    if (m_keys.IsKeyDown(nVirtualKey)) return true;
    const auto* pHeld = std::ranges::find(COMMANDS, nVirtualKey, &THeldCommand::nFixedKey);
    if (pHeld == std::end(COMMANDS) || m_keys.IsKeyDown(VK_Control)) return false;
    const auto vKeys = m_shortcuts.GetKeys(pHeld->nCommand);
    return std::ranges::any_of(
        vKeys, [this](const TKey& key) { return key == TKey{key.nKey} && m_keys.IsKeyDown(key.nKey); });
}

int CHeldKeys::GetMeaning(int nVirtualKey, bool bDown) const {
    if (bDown && m_keys.IsKeyDown(VK_Control)) return nVirtualKey;
    const int nCommand = m_shortcuts.FindCommand(TKey{nVirtualKey});
    const auto* pHeld = std::ranges::find(COMMANDS, nCommand, &THeldCommand::nCommand);
    return pHeld == std::end(COMMANDS) ? nVirtualKey : pHeld->nFixedKey;
}
