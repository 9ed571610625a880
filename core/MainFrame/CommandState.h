// The state rules: one place that says which commands are enabled and checked, for menu and tool bar alike.
#pragma once

#include "core/AppModule/CommandState.h"

class ICommandLook;

/// The state of a command as things stand. A command that nothing handles is disabled.
TCommandState GetCommandState(int nId);

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
