// How a command shows in menus and on the tool bar.
#pragma once

struct TCommandState {
    bool bEnabled = false;
    bool bChecked = false;
};
