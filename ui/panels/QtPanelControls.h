// The controls of panels and dialogs as widgets.
#pragma once

#include "core/Platform/Dialogs.h"
#include "core/Platform/Panel.h"

#include <QString>

#include <functional>
#include <memory>

class QWidget;

/// Notifications of the widgets; all of them are caused by the user.
struct TPanelEvents {
    std::function<void(int nId, int nValue, const QString& strText)> change;
    std::function<void(int nId, int nRow)> activate;
    std::function<void(int nId, int nRow, const QString& strName)> rename;
    std::function<void(int nId, int nFrom, int nTo)> move;
    std::function<void(EMessage id, int nId, int64_t lParam)> row; ///< of a Tree
    std::function<void(int nId, EMessage id, int64_t wParam, int64_t lParam)> view;
    std::function<void()> done; ///< text was edited: the keyboard may go back to the picture
    std::function<void(int nId, const TPenReport& report)> pen = {}; ///< empty where no view takes it
};

/// Events that call `fnTell` with the message of what the user did, `strText` empty where none is typed, and
/// `fnDone` when text was edited.
TPanelEvents MakePanelEvents(
    const std::function<void(EMessage id, int64_t wParam, int64_t lParam, const QString& strText)>& fnTell,
    std::function<void()> fnDone);

/// One control's widget, owned by its parent.
class CQtPanelControl {
public:
    virtual ~CQtPanelControl() = default;
    virtual QWidget* GetWidget() = 0;
    /// Shows the values; writes only what differs and tells nothing.
    virtual void Write(const TPanelControl& control) = 0;
    /// Tells what was typed and not told yet.
    virtual void Flush() {}
};

std::unique_ptr<CQtPanelControl> MakePanelControl(const TPanelControl& control, const TPanelEvents& events,
                                                  QWidget* pParent);
/// The same for the kinds Text, Number, Report, Key, List, Tree and View.
std::unique_ptr<CQtPanelControl> MakePanelEdit(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent);
std::unique_ptr<CQtPanelControl> MakePanelList(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent);
std::unique_ptr<CQtPanelControl> MakePanelTree(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent);
std::unique_ptr<CQtPanelControl> MakePanelView(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent);
