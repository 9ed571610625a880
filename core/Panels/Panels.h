// All panels of a main frame, by the command that shows and hides them.
#pragma once

#include "core/Panels/Panel.h"

#include <map>
#include <memory>
#include <vector>

class CPanels : boost::noncopyable {
public:
    CPanels();
    ~CPanels();

    /// Makes the windows. Raises internal_error when the window system refuses.
    void Create(IMainWindow& parent);
    /// Writes what has changed of the panels' own settings.
    void KeepSettings();
    /// Keeps the places and destroys the windows.
    void Close();
    /// The tool or a value of it has changed.
    void Refresh();
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
    std::map<int, std::unique_ptr<CPanel>> m_mapPanels;
};
