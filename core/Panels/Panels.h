// All panels of a main frame, by the command that shows and hides them.
#pragma once

#include "core/Panels/Panel.h"

#include <map>
#include <memory>
#include <vector>

/// A line of the table of panels.
struct TPanelRow {
    int nCommand;
    const wchar_t* pszSection; ///< of the settings, below "Windows"
    std::unique_ptr<CPanel> (*pfnMake)(const wchar_t* pszSection);
    EMessage refresh; ///< the main frame's private message upon which it rereads what it shows
    /// Where it stands at first. What is docked keeps the order of the rectangles; those with the same one
    /// lie over each other behind tabs, the table's first one on top.
    TPanelPlace placeFirst;
};

class CPanels : boost::noncopyable {
public:
    CPanels();
    ~CPanels();

    /// Makes the panel of a line, without its window.
    void Add(const TPanelRow& row);
    /// Makes the windows. Raises internal_error when the window system refuses.
    void Create(IMainWindow& parent);
    /// Writes what has changed of the panels' own settings.
    void KeepSettings();
    /// Keeps the places and destroys the windows.
    void Close();
    /// The panels of a private message reread what they show.
    void Refresh(EMessage id);
    /// The active tool begins a stroke.
    void OnStroke();

    /// The panel of a command, null for other commands.
    CPanel* Find(int nCommand) const;
    bool IsShown(int nCommand) const;
    /// Shows or hides the panel of a command.
    void Toggle(int nCommand);
    /// The command of the panel whose window this is, 0 for other windows.
    int FindCommand(const IWindow* pWindow) const;
    /// All panels' commands.
    std::vector<int> GetCommands() const;

private:
    std::vector<TPanelRow> m_vRows;
    std::map<int, std::unique_ptr<CPanel>> m_mapPanels;
};
