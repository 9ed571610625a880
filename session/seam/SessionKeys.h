// Keyboard of a played session.
#pragma once

#include "core/Platform/System.h"

#include <bitset>

/// The keys that the script holds down.
class CSessionKeys : public IKeyState {
public:
    bool IsKeyDown(int nVirtualKey) override {
        return nVirtualKey >= 0 && nVirtualKey < 256 && m_bits.test(static_cast<size_t>(nVirtualKey));
    }
    /// `nVirtualKey` is 0 to 255.
    void Press(int nVirtualKey, bool bDown) { m_bits.set(static_cast<size_t>(nVirtualKey), bDown); }

private:
    std::bitset<256> m_bits;
};
