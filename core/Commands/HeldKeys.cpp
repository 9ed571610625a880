#include "core/Commands/HeldKeys.h"

#include "core/Commands/CommandIds.h"
#include "core/Commands/Shortcuts.h"

#include <algorithm>

namespace {

constexpr THeldCommand COMMANDS[] = {{ID_HOLD_PICK, VK_Alt}, {ID_HOLD_HAND, VK_Space}};

} // namespace

std::span<const THeldCommand> GetHeldCommands() { return COMMANDS; }

std::vector<TKey> CHeldKeys::GetKeysBeside(int nFixedKey) const {
    const auto* pHeld = std::ranges::find(COMMANDS, nFixedKey, &THeldCommand::nFixedKey);
    if (pHeld == std::end(COMMANDS)) return {};
    std::vector<TKey> vKeys = m_shortcuts.GetKeys(pHeld->nCommand);
    std::erase_if(vKeys, [](const TKey& key) { return !(key == TKey{key.nKey}); });
    return vKeys;
}

bool CHeldKeys::IsKeyDown(int nVirtualKey) {
    if (m_keys.IsKeyDown(nVirtualKey)) return true;
    if (m_keys.IsKeyDown(VK_Control)) return false;
    return std::ranges::any_of(GetKeysBeside(nVirtualKey),
                               [this](const TKey& key) { return m_keys.IsKeyDown(key.nKey); });
}

int CHeldKeys::GetMeaning(int nVirtualKey, bool bDown) const {
    if (bDown && m_keys.IsKeyDown(VK_Control)) return nVirtualKey;
    const int nCommand = m_shortcuts.FindCommand(TKey{nVirtualKey});
    const auto* pHeld = std::ranges::find(COMMANDS, nCommand, &THeldCommand::nCommand);
    return pHeld == std::end(COMMANDS) ? nVirtualKey : pHeld->nFixedKey;
}
