// Modal windows: boxes, file dialogs, and dialogs whose state and rules are classes in core.
// All of them block until answered; one thread; none throws.
#pragma once

#include "core/Platform/Controls.h"
#include "core/Platform/Pen.h"

#include <string>
#include <vector>

/// The buttons and the icon of a message box.
enum class EBoxKind { Plain, Exclamation, Error, YesNoCancelWarning };
/// Ok also stands for a plain box that was closed.
enum class EBoxAnswer { Ok, Yes, No, Cancel };

class IMessageBoxes {
public:
    virtual ~IMessageBoxes() = default;
    /// `pOwner` may be null.
    virtual EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                            EBoxKind kind) = 0;
};

/// One line of a file dialog's type list; patterns are separated by ";".
struct TFileFilter {
    std::wstring strText;
    std::wstring strPattern;
};

struct TFileDialog {
    bool bSave = false;
    std::wstring strName;             ///< suggested path or name
    std::wstring strDefaultExtension; ///< without the dot; added to a name that has none
    std::vector<TFileFilter> vFilters;
    std::wstring strTitle = {}; ///< empty for the usual one
};

class IFileDialogs {
public:
    virtual ~IFileDialogs() = default;
    /// Returns the chosen path, empty when cancelled. Choosing another type replaces the name's extension; a
    /// save over an existing file has been confirmed.
    virtual std::wstring Ask(IWindow* pOwner, const TFileDialog& dialog) = 0;
};

/// A pen's report over a view of a dialog.
struct TPenReport {
    TPenPacket packet;  ///< the position is the view's, in the pen's units to a device pixel
    uint32_t uTime = 0; ///< milliseconds since an arbitrary moment
};

/// State and rules of one modal dialog; the window system only shows it. It hears of every change when it is
/// made (OnControl), of edits when they lose the focus.
class CDialogModel : public CControlModel {
public:
    /// Class name, by which session scripts answer.
    virtual const char* GetName() const = 0;
    virtual std::wstring GetTitle() const = 0;
    /// Label of the extra button, empty for none; pressing it calls OnExtra.
    virtual std::wstring GetExtraButton() const { return {}; }
    virtual void OnExtra() {}
    /// A pen was reported over a View with `bPen`.
    virtual void OnPen(int, const TPenReport&) {}
    /// OK was pressed and the controls hold what the user left. False keeps the dialog open, after the model
    /// has shown why and put back what it rejected.
    virtual bool OnOk(IWindow* pOwner) = 0;
    /// True when there is nothing to cancel (a report).
    virtual bool HasCancel() const { return true; }

    using CControlModel::m_vControls;
};

class IDialogs {
public:
    virtual ~IDialogs() = default;
    /// Runs the dialog until OnOk answers true (returns true) or it is cancelled (returns false).
    virtual bool Run(IWindow* pOwner, CDialogModel& dialog) = 0;
};
