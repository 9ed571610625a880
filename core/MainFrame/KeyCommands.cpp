#include "core/MainFrame/KeyCommands.h"

#include "core/Commands/CommandIds.h"
#include "core/Commands/MenuTable.h"
#include "core/Panels/ToolTable.h"

std::vector<TMenuItem> ListKeyCommands() {
    std::vector<TMenuItem> vMenu = LoadMenu(MENU_CANVAS);
    TMenuItem& tools = vMenu.emplace_back(TMenuItem{0, L"ツール", {}});
    for (const TToolRow& row : GetToolTable())
        tools.vChildren.push_back({ID_SWITCH_TOOL_FIRST + row.info.nId, row.info.pszName, {}});
    const std::vector<TMenuItem> vKeys = LoadMenu(MENU_KEYS);
    vMenu.insert(vMenu.end(), vKeys.begin(), vKeys.end());
    return vMenu;
}
