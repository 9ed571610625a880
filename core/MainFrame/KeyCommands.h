// The commands that can have a key.
#pragma once

#include "core/Platform/Menu.h"

#include <vector>

/// Every command by name, in popups: those of the menus, the tools, and those that only keys have.
std::vector<TMenuItem> ListKeyCommands();
