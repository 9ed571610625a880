// The controls of panels and dialogs. What stands in one is data; the window only shows it and tells what the
// user did with it.
#pragma once

#include "core/Base/Color.h"
#include "core/Platform/Tree.h"
#include "core/Platform/Window.h"

/// How a view is to be painted.
struct TPanelPaint {
    CSize sz; ///< the view's size in device pixels, positive
    TColor clrBack = 0;
    TColor clrText = 0;
    bool bEnabled = true;
    bool bFocus = false;       ///< the view has the keyboard
    double dScale = 1;         ///< device pixels to a pixel of 96 to the inch
    TColor clrBase = 0xFFFFFF; ///< of fields in which something is written or drawn
};

/// A part of a panel or dialog that paints itself.
class IPanelView {
public:
    virtual ~IPanelView() = default;
    /// Paints all of the view. Never throws.
    virtual void OnPaint(IPaintTarget& target, const TPanelPaint& paint) = 0;
};

/// Modifiers beside the virtual key in a Key's value.
constexpr int KEY_CONTROL = 0x100, KEY_SHIFT = 0x200, KEY_ALT = 0x400;

/// One control of a panel or dialog.
struct TPanelControl {
    enum class EKind {
        Label,
        Check,
        Radio,
        Toggle, ///< a button that stays down; shows `strIcon` if there is one
        Button,
        Combo,
        Slider, ///< with a number beside it, unless `bBare`
        Text,   ///< an edit, read when it loses the focus
        Number, ///< a Text with buttons that step by 1; any text may stand in it, its owner judges
        Report, ///< lines of text that can be read and selected
        List,
        Tree, ///< rows with eyes, pictures and folds; `vTree` instead of `vRows`
        View,
        Key,    ///< a field that takes a key: `strText` names it, `nValue` is its virtual key and KEY_ bits
        Page,   ///< of a dialog: begins a page named `strText`, to which the controls behind it belong
        Column, ///< of a dialog: the controls behind it stand at the right of those before it
    };

    EKind kind = EKind::Label;
    int nId = 0;
    std::wstring strLabel = {}; ///< in front of the control
    std::wstring strText = {};  ///< of Label, Check, Radio, Toggle, Button, Text, Number, Report
    std::wstring strUnit = {};  ///< behind a Slider's number
    std::wstring strTip = {};   ///< tool tip of a Toggle or Button, in place of its text
    std::string strIcon = {};   ///< resource of a Toggle's or Button's icon, which replaces its text
    std::vector<std::wstring> vRows = {};
    std::vector<TTreeRow> vTree = {};
    std::vector<int> vStops = {}; ///< rising; of a Slider, of a Number in hundredths; empty for every number
    int nMin = 0;                 ///< of a Slider; of a Number where its buttons stop
    int nMax = 0;
    int nValue = 0; ///< 1 for checked; a Slider's number; the selected row of Combo, List, Tree, -1 for none;
                    ///< 1 for the Page that is open at first
    bool bEnabled = true;
    bool bVisible = true;
    bool bSameLine = false; ///< stands behind the control before it
    bool bGrid = false;     ///< a List runs from left to right in lines
    bool bTitle = false;    ///< a Label in larger letters
    bool bEditable = false; ///< a List's or Tree's rows can be renamed and dragged to other places
    bool bLive = false;     ///< a Text tells every change while it is typed
    bool bPen = false;      ///< a dialog's View is told the pen's own reports
    bool bBare = false;     ///< a Slider without its number
    bool bHold = false;     ///< a Button tells 1 when it is pressed and 0 when it is released
    bool bStretch = false;  ///< a dialog's View takes the room that is left when the dialog is enlarged
    bool bHand = false;     ///< the pointer over a View is a hand
    int nPage = 0;          ///< what a page key moves a Slider by; 0 for a tenth of its range
    CSize szView = {};    ///< wanted size of View, List and Tree in pixels of 96 to the inch; width of a Text
                          ///< or Number and least width of a Slider, 0 for the usual one
    CSize szPicture = {}; ///< of a Tree without eyes: the size of its rows' pictures
    IPanelView* pView = nullptr;
    int nCommand = 0; ///< a Button or Toggle that executes this command and is enabled while the command is
    std::string strName = {}; ///< of a dialog's control: how session scripts answer it
};

/// A panel's or dialog's controls, and the rules behind them.
class CControlModel {
public:
    virtual ~CControlModel() = default;
    /// Takes a Panel message, or a view's of pointer and keys: keeps the control's new value and calls the
    /// handler. True when controls may have other values now than the window shows. What a handler raises
    /// passes on, and the control has its former value.
    virtual bool OnControlMessage(const TMessage& msg);
    const std::vector<TPanelControl>& GetControls() const { return m_vControls; }

protected:
    /// The user changed a control, whose value or text is the new one.
    virtual void OnControl(TPanelControl&) {}
    virtual void OnActivateRow(int, int) {}
    virtual void OnRenameRow(int, int, const std::wstring&) {}
    virtual void OnMoveRow(int, int, int) {}
    virtual void OnEye(int, int, EEyeAct) {}
    virtual void OnFold(int, int, bool) {}
    virtual void OnDrop(int, int, int, EDropAt) {}
    virtual void OnMenu(int, int) {}
    /// The left button or the pointer under it in a view; the client position in device pixels.
    virtual void OnPointer(int, EMessage, CPoint) {}
    /// A virtual key in a view that has the keyboard.
    virtual void OnKey(int, int) {}

    /// The control of an id; a self-check fails when there is none.
    TPanelControl& Find(int nId);

    std::vector<TPanelControl> m_vControls;
};
