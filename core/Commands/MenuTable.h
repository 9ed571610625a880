// The menus and the tool bar, read from the tables in the resources.
#pragma once

#include "core/Platform/Menu.h"

#include <string>
#include <vector>

/// A menu by its number in the table. Raises internal_error when the table is damaged.
constexpr int MENU_MAIN = 100;   ///< of the main frame
constexpr int MENU_CANVAS = 200; ///< of a canvas frame
constexpr int MENU_LAYER = 210;  ///< one popup: the context menu of a layer
constexpr int MENU_KEYS = 220;   ///< no menu: commands that only keys have
std::vector<TMenuItem> LoadMenu(int nMenu);

/// The tool bar's command ids, 0 for a separator.
std::vector<int> LoadToolBar();

/// A menu text alone: no mnemonic, no dots, no shortcut.
std::wstring PlainTextOf(std::wstring strMenuText);

/// All command ids of a menu, from top to bottom.
std::vector<int> ListCommands(const std::vector<TMenuItem>& vMenu);
