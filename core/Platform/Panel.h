// Panels: windows beside the canvases that show a tool's values. What stands in one is data; the window only
// shows it and tells what the user did with it.
#pragma once

#include "core/Base/Color.h"
#include "core/Platform/Window.h"

/// How a view is to be painted.
struct TPanelPaint {
    CSize sz; ///< the view's size in device pixels, positive
    TColor clrBack = 0;
    TColor clrText = 0;
    bool bEnabled = true;
    bool bFocus = false; ///< the view has the keyboard
};

/// A part of a panel that paints itself.
class IPanelView {
public:
    virtual ~IPanelView() = default;
    /// Paints all of the view. Never throws.
    virtual void OnPaint(IPaintTarget& target, const TPanelPaint& paint) = 0;
};

/// One control of a panel.
struct TPanelControl {
    enum class EKind {
        Label,
        Check,
        Radio,
        Toggle, ///< a button that stays down; shows `strIcon` if there is one
        Button,
        Combo,
        Slider, ///< with a number beside it
        Text,
        List,
        View,
    };

    EKind kind = EKind::Label;
    int nId = 0;
    std::wstring strLabel = {}; ///< in front of the control
    std::wstring strText = {};  ///< of Label, Check, Radio, Toggle, Button, Text
    std::wstring strUnit = {};  ///< behind a Slider's number
    std::string strIcon = {};   ///< resource of a Toggle's icon
    std::vector<std::wstring> vRows = {};
    std::vector<int> vStops = {}; ///< a Slider's positions, rising; empty for every number in the range
    int nMin = 0;
    int nMax = 0;
    int nValue = 0; ///< 1 for checked; a Slider's number; the selected row of Combo and List, -1 for none
    bool bEnabled = true;
    bool bVisible = true;
    bool bSameLine = false; ///< stands behind the control before it
    bool bGrid = false;     ///< a List runs from left to right in lines
    bool bEditable = false; ///< a List's rows can be renamed and dragged to other places
    CSize szView = {};      ///< wanted size of View and List in pixels of 96 to the inch
    IPanelView* pView = nullptr;
};

/// Where a panel stands: on its own or at a side of the main frame.
enum class EPanelDock { Float, Left, Right };

/// Of docked panels the rectangle says the order from the top and the size; two in one place share it behind
/// tabs.
struct TPanelPlace {
    EPanelDock dock = EPanelDock::Float;
    CRect rc; ///< on the screen, frame included
    bool bShow = true;
    bool bFront = false; ///< of those behind tabs it is the one that is seen
};

/// What a new panel shows. Views outlive the window.
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
};
