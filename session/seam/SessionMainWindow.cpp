#include "session/seam/SessionMainWindow.h"

#include "session/seam/SessionCanvasWindow.h"

#include <algorithm>
#include <utility>

namespace {

constexpr CSize FRAME_SIZE{1280, 800};
constexpr int32_t CASCADE_STEP = 24;

// The n-th of `nCount` rectangles that fill the area: in as many columns as the square root of the count has
// whole units when stacked, otherwise in as many rows.
CRect TileRect(CSize szArea, int32_t n, int32_t nCount, bool bStacked) {
    int32_t nGroups = 1;
    while ((nGroups + 1) * (nGroups + 1) <= nCount) ++nGroups;
    const int32_t idxGroup = n % nGroups;
    const int32_t nInGroup = (nCount - idxGroup + nGroups - 1) / nGroups;
    const int32_t idx = n / nGroups;
    const auto part = [](int32_t nWhole, int32_t i, int32_t nParts) { return nWhole * i / nParts; };
    if (bStacked)
        return {part(szArea.cx, idxGroup, nGroups), part(szArea.cy, idx, nInGroup),
                part(szArea.cx, idxGroup + 1, nGroups), part(szArea.cy, idx + 1, nInGroup)};
    return {part(szArea.cx, idx, nInGroup), part(szArea.cy, idxGroup, nGroups),
            part(szArea.cx, idx + 1, nInGroup), part(szArea.cy, idxGroup + 1, nGroups)};
}

} // namespace

CSessionMainWindow::CSessionMainWindow(IMessageQueue& queue, IWindowClient& client,
                                       const TMainWindowSetup& setup)
    : CSessionWindow(queue, client, setup.strTitle, setup.vMenu, CRect({0, 0}, FRAME_SIZE)) {}

void CSessionMainWindow::Destroy() {
    if (m_bDestroyed) return;
    m_bDestroyed = true;
    SetActiveChild(nullptr);
    SendMessage({this, EMessage::Destroy});
    while (!m_vChildren.empty()) m_vChildren.front()->Destroy();
    DestroyShown();
    m_client.OnFinalMessage();
    m_queue.Forget(this);
}

void CSessionMainWindow::Show() {
    m_bShown = true;
    m_shown.Do([](IMainWindow& window) { window.Show(); });
}

void CSessionMainWindow::ShowIn(const std::function<IMainWindow*(IWindowClient&)>& fnCreate) {
    m_shown.m_fnClose = [this] { m_queue.Post({this, EMessage::Close}); };
    m_shown.Open(fnCreate);
}

void CSessionMainWindow::SetRecentFiles(int nFirstId, const std::vector<std::wstring>& vTexts) {
    m_vRecent = vTexts;
    m_shown.Do([&](IMainWindow& window) { window.SetRecentFiles(nFirstId, vTexts); });
}

void CSessionMainWindow::SetCommandTexts(const std::vector<TMenuItem>& vMenu) {
    SetMenuTexts(vMenu);
    for (CSessionCanvasWindow* pChild : m_vChildren) pChild->SetMenuTexts(vMenu);
    m_shown.Do([&](IMainWindow& window) { window.SetCommandTexts(vMenu); });
}

void CSessionMainWindow::SetRect(const CRect& rc) {
    m_rc = CRect(rc.TopLeft(), {std::max(rc.Width(), m_szMinimum.cx), std::max(rc.Height(), m_szMinimum.cy)});
}

void CSessionMainWindow::SetStatusText(int nPane, const std::wstring& strText) {
    if (nPane >= 0 && nPane < 3) m_astrStatus[nPane] = strText;
    m_shown.Do([&](IMainWindow& window) { window.SetStatusText(nPane, strText); });
}

void CSessionMainWindow::SetZoomItems(const std::vector<std::wstring>& vItems) {
    m_vZoomItems = vItems;
    m_nZoomItem = -1;
    m_shown.Do([&](IMainWindow& window) { window.SetZoomItems(vItems); });
}

void CSessionMainWindow::SelectZoomItem(int nItem) {
    m_nZoomItem = nItem >= 0 && nItem < static_cast<int>(m_vZoomItems.size()) ? nItem : -1;
    m_shown.Do([&](IMainWindow& window) { window.SelectZoomItem(m_nZoomItem); });
}

void CSessionMainWindow::ArrangeChildren(EArrange arrange) {
    // Nothing is ever minimised here.
    if (arrange == EArrange::Icons) return;
    const CSize szArea = m_rc.Size();
    const auto vChildren = m_vChildren;
    const int32_t nCount = static_cast<int32_t>(vChildren.size());
    for (int32_t n = 0; n < nCount; ++n) {
        const CPoint ptCascade{n * CASCADE_STEP, n * CASCADE_STEP};
        vChildren[static_cast<size_t>(n)]->SetRect(
            arrange == EArrange::Cascade ? CRect(ptCascade, {szArea.cx * 3 / 4, szArea.cy * 3 / 4})
                                         : TileRect(szArea, n, nCount, arrange == EArrange::TileHorizontal));
    }
}

std::vector<CRect> CSessionMainWindow::GetScreens() const { return {{0, 0, 1920, 1080}}; }

void CSessionMainWindow::RemoveChild(CSessionCanvasWindow& child) {
    std::erase(m_vChildren, &child);
    std::erase(m_vUsed, &child);
    if (&child == m_pActive) SetActiveChild(m_vUsed.empty() || m_bDestroyed ? nullptr : m_vUsed.back());
}

void CSessionMainWindow::SetActiveChild(CSessionCanvasWindow* pChild) {
    if (pChild == m_pActive) return;
    CSessionCanvasWindow* pOld = std::exchange(m_pActive, pChild);
    if (pChild) {
        std::erase(m_vUsed, pChild);
        m_vUsed.push_back(pChild);
    }
    if (pOld) SendMessage({pOld, EMessage::MdiActivate, 0});
    // The old child may have activated another one while it was deactivated.
    if (pChild && m_pActive == pChild) SendMessage({pChild, EMessage::MdiActivate, 1});
}
