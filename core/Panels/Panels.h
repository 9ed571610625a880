// All panels of a main frame, each with the command that shows and hides it.
#pragma once

#include "core/Panels/Panel.h"

#include <map>
#include <memory>
#include <vector>

/// A row of the table of panels.
struct TPanelRow {
    int nCommand;
    const wchar_t* pszSection; ///< of the settings, below "Windows"
    std::unique_ptr<CPanel> (*pfnMake)(const wchar_t* pszSection, const TPanelOutside& outside);
    EMessage refresh; ///< the main frame's private message that refreshes the panel
    /// Default placement. Docked panels keep the order of the rectangles; those with the same rectangle
    /// share a tab group, the table's first one in front.
    TPanelPlace placeFirst;
};

class CPanels : boost::noncopyable {
public:
    explicit CPanels(const TPanelOutside& outside);
    ~CPanels();

    /// Adds the panel of a row, without its window.
    void Add(const TPanelRow& row);
    /// Creates the windows. Raises internal_error when the window system refuses.
    void Create(IMainWindow& parent);
    /// Writes the panels' own settings that have changed.
    void KeepSettings();
    /// Writes the placements and destroys the windows.
    void Close();
    /// A piece of each shown panel's idle work; true when there is more.
    bool DoIdleWork();
    /// Refreshes the panels that belong to a private message.
    void Refresh(EMessage id);
    /// Notifies the panels that the active tool begins a stroke.
    void OnStroke();

    /// The panel of a command, null for other commands.
    CPanel* Find(int nCommand) const;
    bool IsShown(int nCommand) const;
    /// Shows or hides the panel of a command.
    void Toggle(int nCommand);
    /// Hides all panels that are shown; the next call shows them again.
    void ToggleAll();
    bool AreHidden() const { return !m_vHidden.empty(); }
    /// The command of the panel that owns the window, 0 for other windows.
    int FindCommand(const IWindow* pWindow) const;
    /// All panels' commands.
    std::vector<int> GetCommands() const;

private:
    /// After a change of tools: a panel in front of its tabs that the tool makes no use of gives way to the
    /// first one behind it that is used. With a tool that uses it, it comes back, unless the user has chosen
    /// another one meanwhile.
    void ShowUsedTabs();
    /// Those that the tool uses, or all, come back.
    void TakeBackTabs(bool bAll);

    const TPanelOutside& m_outside;
    std::vector<TPanelRow> m_vRows;
    std::vector<int> m_vHidden; ///< the commands of those that ToggleAll has hidden
    std::map<int, std::unique_ptr<CPanel>> m_mapPanels;
    boost::weak_ptr<CTools> m_wpTabTool;                 ///< the tool that ShowUsedTabs has seen
    std::map<const CPanel*, const CPanel*> m_mapInstead; ///< panels that gave way, and to which one
};
