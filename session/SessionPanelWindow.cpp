#include "session/SessionPanelWindow.h"

#include "session/Glass.h"

void CSessionPanelWindow::Destroy() {
    if (m_bDestroyed) return;
    m_bDestroyed = true;
    m_client.OnFinalMessage();
    m_queue.Forget(this);
}

void CSessionPanelWindow::PaintView(int nId, CSize sz) {
    for (const TPanelControl& control : m_vViews) {
        if (control.nId != nId || !control.pView) continue;
        CGlass glass;
        glass.Resize(sz);
        control.pView->OnPaint(glass, {.sz = sz});
    }
}
