// A menu bar's menus as widgets, created from the application's menu data.
#pragma once

#include "core/Platform/Menu.h"

#include <QAction>
#include <QMenu>

#include <boost/noncopyable.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QMenuBar;

/// Sets the state of one command's action. Writes only differences, so that refreshing on idle causes no
/// repaint.
void SetActionState(QAction& action, bool bEnabled, bool bChecked);
/// Tool tip from a menu text: no mnemonic, no dots, the shortcut in brackets.
QString ToolTipOf(const std::wstring& strMenuText);

/// One window's menus. A menu bar shows one set at a time.
class CQtMenuSet : boost::noncopyable {
public:
    struct TEvents {
        std::function<void(int)> command;        ///< an item was chosen
        std::function<void()> popup;             ///< a popup is about to show
        std::function<void(QMenu&)> windowPopup; ///< the window menu is about to show: list the windows
    };

    CQtMenuSet(const std::vector<TMenuItem>& vMenu, const TEvents& events);

    bool IsEmpty() const { return m_vTopMenus.empty(); }
    /// Shows this set in the menu bar.
    void ShowIn(QMenuBar& menuBar) const;
    /// Unknown ids are ignored.
    void SetState(int nId, bool bEnabled, bool bChecked);
    /// Replaces the item `nFirstId` by these texts with consecutive ids; no texts restore the item.
    void SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts);
    /// Gives the items the texts that their commands have in a menu.
    void SetTexts(const std::vector<TMenuItem>& vMenu);

private:
    void Fill(QMenu& menu, const TMenuItem& item);

    TEvents m_events;
    std::vector<std::unique_ptr<QMenu>> m_vTopMenus;
    std::multimap<int, QAction*> m_mapActions;
    std::vector<std::unique_ptr<QAction>> m_vRecent;
};
