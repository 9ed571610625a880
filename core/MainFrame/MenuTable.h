// The menus and accelerators, read from the tables in the resources.
#pragma once

#include "core/Platform/Menu.h"
#include "core/Platform/Message.h"

#include <vector>

class IKeyState;

/// The menu of a window: 100 the main frame's, 200 a canvas frame's. Raises internal_error when the table is
/// damaged.
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
