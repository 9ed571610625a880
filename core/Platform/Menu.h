// Menus as data, passed by the application to the window that shows them.
#pragma once

#include <string>
#include <vector>

/// One line of a menu. A popup has children; an entry with id 0 and no children is a separator.
struct TMenuItem {
    int nId = 0;
    std::wstring strText; ///< with "&" before the mnemonic and "\t" before the shortcut's text
    std::vector<TMenuItem> vChildren;
    bool bEnabled = true; ///< of a context menu's line; menu bars are told by ICommandLook
    bool bChecked = false;
};

/// Calls `fn` with every line of a menu that has a command, from top to bottom.
template <class Items, class Function>
void ForEachCommand(Items& vMenu, const Function& fn) {
    for (auto& item : vMenu) {
        if (item.nId != 0) fn(item);
        ForEachCommand(item.vChildren, fn);
    }
}

/// Sets the state of a command in a menu or a tool bar.
class ICommandLook {
public:
    virtual ~ICommandLook() = default;
    /// Unknown ids are ignored.
    virtual void SetState(int nId, bool bEnabled, bool bChecked) = 0;
};
