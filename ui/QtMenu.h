// A menu bar's menus as widgets, made from the application's menu data.
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

/// How one command's action looks. Writes only what differs, so that refreshing on idle costs no repaint.
void SetActionState(QAction& action, bool bEnabled, bool bChecked);
/// A menu text without its mnemonic and dots, the shortcut in brackets: what a tool tip shows.
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
    /// Makes the menu bar show this set.
    void ShowIn(QMenuBar& menuBar) const;
    /// Unknown ids are ignored.
    void SetState(int nId, bool bEnabled, bool bChecked);
    /// Replaces the item `nFirstId` by these texts with ids from it on; without texts the item comes back.
    void SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts);
    /// Calls `visit` with the id and text of every item.
    static void ForEachItem(const std::vector<TMenuItem>& vMenu,
                            const std::function<void(int, const std::wstring&)>& visit);

private:
    void Fill(QMenu& menu, const TMenuItem& item);

    TEvents m_events;
    std::vector<std::unique_ptr<QMenu>> m_vTopMenus;
    std::multimap<int, QAction*> m_mapActions;
    std::vector<std::unique_ptr<QAction>> m_vRecent;
};
