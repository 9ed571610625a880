#include "ui/modal/QtModal.h"

#include "core/Platform/Window.h"
#include "ui/base/QtApplication.h"

#include <QApplication>

QWidget* ModalParent(IWindow* pOwner) {
    auto* pWidget = dynamic_cast<QWidget*>(pOwner);
    if (!pWidget) return nullptr;
    QWidget* pWindow = pWidget->window();
    for (QWidget* pOpen = QApplication::activeModalWidget(); pOpen; pOpen = pOpen->parentWidget())
        if (pOpen == pWindow) return QApplication::activeModalWidget();
    return pWindow;
}

void PrepareModal(QDialog& dialog) {
    PrepareTopLevel(dialog);
    dialog.setWindowModality(dialog.parentWidget() ? Qt::WindowModal : Qt::ApplicationModal);
    dialog.setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}
