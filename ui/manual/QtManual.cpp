#include "ui/manual/QtManual.h"

#include "core/Platform/Window.h"
#include "ui/manual/QtManualWindow.h"

CQtManual::~CQtManual() { delete m_pWindow; }

bool CQtManual::Show(IWindow& owner, const TManualSetup& setup) {
    if (m_strFolder.isEmpty()) return false;
    if (!m_pWindow) {
        // A window of its own can lie behind the main window. A main window that is modal, in a host, blocks
        // all but its own.
        auto* pOwner = dynamic_cast<QWidget*>(&owner);
        const bool bModal = pOwner && pOwner->windowModality() != Qt::NonModal;
        m_pWindow = new CQtManualWindow(bModal ? pOwner : nullptr, m_strFolder, setup);
    }
    m_pWindow->setWindowState(m_pWindow->windowState() & ~Qt::WindowMinimized);
    m_pWindow->show();
    m_pWindow->raise();
    m_pWindow->activateWindow();
    return true;
}

void CQtManual::Close() {
    if (!m_pWindow) return;
    m_pWindow->Keep();
    delete m_pWindow;
}
