#include "core/MainFrame/KeyCommands.h"

#include "core/Commands/CommandIds.h"
#include "core/Commands/MenuTable.h"
#include "core/Panels/ToolTable.h"

#include <algorithm>

namespace {

void Remove(std::vector<TMenuItem>& vMenu, const std::vector<int>& vIds) {
    std::erase_if(vMenu, [&](const TMenuItem& item) { return std::ranges::count(vIds, item.nId) != 0; });
    for (TMenuItem& item : vMenu) Remove(item.vChildren, vIds);
}

} // namespace

std::vector<TMenuItem> ListKeyCommands() {
    const std::vector<TMenuItem> vKeys = LoadMenu(MENU_KEYS);
    std::vector<TMenuItem> vMenu = LoadMenu(MENU_CANVAS);
    // The list of recent files has a line there that names no file.
    Remove(vMenu, ListCommands(vKeys));
    TMenuItem& tools = vMenu.emplace_back(TMenuItem{0, L"ツール", {}});
    for (const TToolRow& row : GetToolTable())
        tools.vChildren.push_back({ID_SWITCH_TOOL_FIRST + row.info.nId, row.info.pszName, {}});
    vMenu.insert(vMenu.end(), vKeys.begin(), vKeys.end());
    return vMenu;
}
