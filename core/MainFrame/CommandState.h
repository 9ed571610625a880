// Writes the commands' states to menu and tool bar from one source.
#pragma once

#include "core/Commands/Commands.h"

class ICommandLook;

/// Writes command states into a menu.
struct TSetMenuState {
    ICommandLook& look;
    void operator()(int nId, const TCommandState& state) const;
};

/// Writes command states into tool bar buttons.
struct TSetButtonState {
    ICommandLook& look;
    void operator()(int nId, const TCommandState& state) const;
};
