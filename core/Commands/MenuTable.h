// The menus and accelerators, read from the tables in the resources.
#pragma once

#include "core/Platform/Menu.h"
#include "core/Platform/Message.h"

#include <vector>

class IKeyState;

/// A menu by its number in the table. Raises internal_error when the table is damaged.
constexpr int MENU_MAIN = 100;   ///< of the main frame
constexpr int MENU_CANVAS = 200; ///< of a canvas frame
constexpr int MENU_LAYER = 210;  ///< one popup: the context menu of a layer
std::vector<TMenuItem> LoadMenu(int nMenu);

/// The tool bar's command ids, 0 for a separator.
std::vector<int> LoadToolBar();

/// All command ids of a menu, from top to bottom.
std::vector<int> ListCommands(const std::vector<TMenuItem>& vMenu);

/// One shortcut.
struct TAccelerator {
    int nKey = 0; ///< virtual key
    bool bControl = false;
    bool bNoRepeat = false; ///< a held key does not repeat the command
    int nCommand = 0;
};

/// The shortcuts, in the order of their table.
const std::vector<TAccelerator>& GetAccelerators();

/// The command of a key message with the present modifier keys, 0 for none.
int TranslateAccelerator(const TMessage& msg, IKeyState& keys);
