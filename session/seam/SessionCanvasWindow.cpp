#include "session/seam/SessionCanvasWindow.h"

#include "core/Platform/System.h"
#include "session/seam/SessionMainWindow.h"

#include <algorithm>

namespace {

// Milliseconds from `uNow` to `uDue`, 0 if that has passed; the clock may have wrapped between.
uint32_t Until(uint32_t uNow, uint32_t uDue) {
    const int32_t nLeft = static_cast<int32_t>(uDue - uNow);
    return nLeft > 0 ? static_cast<uint32_t>(nLeft) : 0;
}

} // namespace

CSessionCanvasWindow::CSessionCanvasWindow(CSessionMainWindow& main, IMessageQueue& queue, IClock& clock,
                                           IWindowClient& client, const TCanvasWindowSetup& setup,
                                           const CRect& rc)
    : CSessionWindow(queue, client, setup.strTitle, setup.vMenu, rc), m_main(main), m_clock(clock) {
    m_glass.Resize(rc.Size());
    m_main.AddChild(*this);
}

void CSessionCanvasWindow::Destroy() {
    if (m_bDestroyed) return;
    m_bDestroyed = true;
    m_main.RemoveChild(*this);
    SendMessage({this, EMessage::Destroy});
    m_mapTimers.clear();
    DestroyShown();
    m_client.OnFinalMessage();
    m_queue.Forget(this);
}

void CSessionCanvasWindow::Show() {
    if (m_bDestroyed) return;
    m_bShown = true;
    m_shown.Do([](ICanvasWindow& window) { window.Show(); });
    Invalidate({});
    Activate();
}

void CSessionCanvasWindow::Activate() {
    if (m_bDestroyed) return;
    m_main.SetActiveChild(this);
    m_shown.Do([](ICanvasWindow& window) { window.Activate(); });
}

void CSessionCanvasWindow::ShowIn(const std::function<ICanvasWindow*(IWindowClient&)>& fnCreate) {
    m_shown.m_fnPaint = [this](IPaintTarget& target, const CRect& rc) { m_glass.CopyTo(target, rc); };
    m_shown.m_fnClose = [this] { m_queue.Post({this, EMessage::Close}); };
    m_shown.Open(fnCreate);
    SizeShown();
}

void CSessionCanvasWindow::SizeShown() {
    m_shown.Do([&](ICanvasWindow& window) {
        window.SetRect(m_rc);
        const CSize szFrame = m_rc.Size(), szClient = window.GetClientSize();
        window.SetRect(CRect(m_rc.TopLeft(), {2 * szFrame.cx - szClient.cx, 2 * szFrame.cy - szClient.cy}));
    });
}

void CSessionCanvasWindow::SetModified(bool bModified) {
    m_bModified = bModified;
    m_shown.Do([&](ICanvasWindow& window) { window.SetModified(bModified); });
}

void CSessionCanvasWindow::SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) {
    m_scroll = {szExtent, szLine, szPage, ptOffset};
    m_shown.Do([&](ICanvasWindow& window) { window.SetScroll(szExtent, szLine, szPage, ptOffset); });
}

void CSessionCanvasWindow::SetCursor(ECursor cursor) {
    m_cursor = cursor;
    m_shown.Do([&](ICanvasWindow& window) { window.SetCursor(cursor); });
}

void CSessionCanvasWindow::SetRect(const CRect& rc) {
    const CSize szOld = m_rc.Size();
    const CSize szNew{std::max(rc.Width(), 1), std::max(rc.Height(), 1)};
    m_rc = CRect(rc.TopLeft(), szNew);
    SizeShown();
    if (szNew == szOld || m_bDestroyed) return;
    m_glass.Resize(szNew);
    Invalidate({});
    SendMessage({this, EMessage::Size, szNew.cx, szNew.cy});
}

void CSessionCanvasWindow::Invalidate(const CRect& rc) {
    const CRect rcClient({0, 0}, GetClientSize());
    const CRect rcNew = rc.IsEmpty() ? rcClient : rc.Intersect(rcClient);
    m_rcInvalid = m_rcInvalid.Union(rcNew);
}

void CSessionCanvasWindow::Paint() {
    if (!m_bShown || m_bDestroyed) return;
    const CRect rc = m_rcInvalid.Intersect({{0, 0}, GetClientSize()});
    m_rcInvalid = {};
    if (rc.IsEmpty()) return;
    m_client.OnPaint(m_glass, rc);
    m_shown.Do([&](ICanvasWindow& window) { window.Invalidate(rc); });
}

void CSessionCanvasWindow::SetTimer(int nId, int nMilliseconds) {
    if (m_bDestroyed) return;
    const uint32_t uPeriod = static_cast<uint32_t>(std::max(nMilliseconds, 1));
    m_mapTimers[nId] = {uPeriod, m_clock.GetTickCount() + uPeriod};
}

void CSessionCanvasWindow::PostTimers() {
    const uint32_t uNow = m_clock.GetTickCount();
    for (auto& [nId, timer] : m_mapTimers) {
        if (Until(uNow, timer.uDue) > 0) continue;
        m_queue.Post({this, EMessage::Timer, nId});
        timer.uDue += ((uNow - timer.uDue) / timer.uPeriod + 1) * timer.uPeriod;
    }
}

std::optional<uint32_t> CSessionCanvasWindow::UntilTimer() const {
    std::optional<uint32_t> uNext;
    for (const auto& [nId, timer] : m_mapTimers) {
        const uint32_t uLeft = Until(m_clock.GetTickCount(), timer.uDue);
        if (!uNext || uLeft < *uNext) uNext = uLeft;
    }
    return uNext;
}
