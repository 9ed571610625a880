// Panels: windows beside the canvases that show a tool's values.
#pragma once

#include "core/Platform/Controls.h"
#include "core/Platform/Menu.h"

/// The place of a panel: floating, docked at a side of the main frame, or, as a page, over the area of the
/// canvases.
enum class EPanelDock { Float, Left, Right, Page };

/// Of docked panels the rectangle says the order from the top and the size; two in one place share it behind
/// tabs.
struct TPanelPlace {
    EPanelDock dock = EPanelDock::Float;
    CRect rc; ///< on the screen, frame included
    bool bShow = true;
    bool bFront = false; ///< of those behind tabs it is the one that is seen
};

/// Setup of a new panel. Views outlive the window.
struct TPanelSetup {
    std::wstring strName; ///< names the window among the panels
    std::wstring strTitle;
    std::vector<TPanelControl> vControls;
};

/// A panel. Its client hears of the user's changes by the Panel messages and, for a view, by those of the
/// pointer. A click takes the keyboard from the canvas only where text is edited.
class IPanelWindow : public IWindow {
public:
    virtual TPanelPlace GetPlace() const = 0;
    /// Panels that are docked at one side are placed in their order from the top.
    virtual void SetPlace(const TPanelPlace& place) = 0;
    virtual bool IsShown() const = 0;
    /// A panel that is shown comes to the front of its tabs.
    virtual void ShowPanel(bool bShow) = 0;
    /// Brings the controls up to date, in the setup's order; posts nothing. Views are painted again.
    virtual void SetControls(const std::vector<TPanelControl>& vControls) = 0;
    /// Shows a context menu at the pointer; the chosen line is posted to this window as a Command.
    virtual void ShowMenu(const std::vector<TMenuItem>& vMenu) = 0;
};
