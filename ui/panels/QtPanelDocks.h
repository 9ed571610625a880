// The panels of a main window, and what they share: places, tabs and the sides of the window.
#pragma once

#include <boost/noncopyable.hpp>

#include <vector>

class CQtMainWindow;
class CQtPanel;
struct TPanelPlace;

/// Outlives the panels.
class CQtPanelDocks : boost::noncopyable {
public:
    /// Gives the panels their sizes when the window is shown for the first time.
    explicit CQtPanelDocks(CQtMainWindow& main);

    CQtMainWindow& GetMain() const { return m_main; }
    void Add(CQtPanel& panel) { m_vPanels.push_back(&panel); }
    void Remove(CQtPanel& panel) { std::erase(m_vPanels, &panel); }
    /// A docked panel other than `except` with the same place, null when there is none.
    CQtPanel* FindAt(const TPanelPlace& place, const CQtPanel& except) const;

private:
    void SizePanels();
    /// Moves panels that float beyond their screen back onto it.
    void FitPanels();

    CQtMainWindow& m_main;
    std::vector<CQtPanel*> m_vPanels; ///< in the order of their creation
};
