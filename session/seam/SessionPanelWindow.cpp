#include "session/seam/SessionPanelWindow.h"

void CSessionPanelWindow::Destroy() {
    if (m_bDestroyed) return;
    m_bDestroyed = true;
    SendMessage({this, EMessage::Destroy});
    DestroyShown();
    m_client.OnFinalMessage();
    m_queue.Forget(this);
}

void CSessionPanelWindow::SetPlace(const TPanelPlace& place) {
    m_place = place;
    m_shown.Do([&](IPanelWindow& window) { window.SetPlace(place); });
}

void CSessionPanelWindow::ShowPanel(bool bShow) {
    m_place.bShow = bShow;
    m_shown.Do([&](IPanelWindow& window) { window.ShowPanel(bShow); });
}

void CSessionPanelWindow::SetControls(const std::vector<TPanelControl>& vControls) {
    m_vControls = vControls;
    m_shown.Do([&](IPanelWindow& window) { window.SetControls(vControls); });
}
