#include "session/SessionPanelWindow.h"

void CSessionPanelWindow::Destroy() {
    if (m_bDestroyed) return;
    m_bDestroyed = true;
    m_client.OnFinalMessage();
    m_queue.Forget(this);
}
