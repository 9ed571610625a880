#include "session/seam/SessionWindows.h"

#include <algorithm>

namespace {

constexpr CSize CANVAS_CLIENT{1000, 700};
constexpr int32_t PLACE_STEP = 24;
constexpr int32_t PLACE_COUNT = 8;

} // namespace

CSessionWindows::~CSessionWindows() {
    for (const auto& pWindow : m_vCanvas) m_queue.Forget(pWindow.get());
    for (const auto& pWindow : m_vPanels) m_queue.Forget(pWindow.get());
    for (const auto& pWindow : m_vMain) m_queue.Forget(pWindow.get());
}

CSessionMainWindow* CSessionWindows::GetMain() const {
    return m_vMain.empty() || m_vMain.back()->IsDestroyed() ? nullptr : m_vMain.back().get();
}

CSessionCanvasWindow* CSessionWindows::GetActive() const {
    return GetMain() ? GetMain()->GetActiveChild() : nullptr;
}

IMainWindow* CSessionWindows::CreateMainWindow(IWindowClient& client, const TMainWindowSetup& setup) {
    if (GetMain()) return nullptr;
    m_vMain.push_back(std::make_unique<CSessionMainWindow>(m_queue, client, setup));
    CSessionMainWindow& main = *m_vMain.back();
    if (!m_pShown) return &main;
    main.ShowIn([&](IWindowClient& shown) { return m_pShown->CreateMainWindow(shown, setup); });
    if (main.GetShown().Get()) return &main;
    m_vMain.pop_back();
    return nullptr;
}

ICanvasWindow* CSessionWindows::CreateCanvasWindow(IMainWindow& parent, IWindowClient& client,
                                                   const TCanvasWindowSetup& setup) {
    CSessionMainWindow* pMain = GetMain();
    if (!pMain || &parent != pMain) return nullptr;
    const int32_t nPlace = static_cast<int32_t>(pMain->GetChildren().size()) % PLACE_COUNT * PLACE_STEP;
    // Reserved first: a window registers itself with its parent and must not be lost without memory.
    m_vCanvas.reserve(m_vCanvas.size() + 1);
    m_vCanvas.push_back(std::make_unique<CSessionCanvasWindow>(*pMain, m_queue, m_clock, client, setup,
                                                               CRect({nPlace, nPlace}, CANVAS_CLIENT)));
    if (IMainWindow* pShown = pMain->GetShown().Get())
        m_vCanvas.back()->ShowIn(
            [&](IWindowClient& shown) { return m_pShown->CreateCanvasWindow(*pShown, shown, setup); });
    return m_vCanvas.back().get();
}

IPanelWindow* CSessionWindows::CreatePanelWindow(IMainWindow& parent, IWindowClient& client,
                                                 const TPanelSetup& setup) {
    if (!GetMain() || &parent != GetMain()) return nullptr;
    m_vPanels.push_back(std::make_unique<CSessionPanelWindow>(m_queue, client, setup));
    if (IMainWindow* pShown = GetMain()->GetShown().Get())
        m_vPanels.back()->GetShown().Open(
            [&](IWindowClient& shown) { return m_pShown->CreatePanelWindow(*pShown, shown, setup); });
    return m_vPanels.back().get();
}

void CSessionWindows::FreeDead() {
    std::erase_if(m_vPanels, [](const auto& pWindow) { return pWindow->IsDestroyed(); });
    std::erase_if(m_vCanvas, [](const auto& pWindow) { return pWindow->IsDestroyed(); });
    std::erase_if(m_vMain, [](const auto& pWindow) { return pWindow->IsDestroyed(); });
}

void CSessionWindows::Paint() {
    // A client may open or close windows while it paints, which changes the list.
    for (size_t idx = 0; idx < m_vCanvas.size(); ++idx) m_vCanvas[idx]->Paint();
}

void CSessionWindows::PostTimers() {
    for (const auto& pWindow : m_vCanvas) pWindow->PostTimers();
}

std::optional<uint32_t> CSessionWindows::UntilTimer() const {
    std::optional<uint32_t> uNext;
    for (const auto& pWindow : m_vCanvas) {
        const auto uLeft = pWindow->UntilTimer();
        if (uLeft && (!uNext || *uLeft < *uNext)) uNext = uLeft;
    }
    return uNext;
}

bool CSessionWindows::SavePicture(const std::wstring& strPath, IImageCodecs& codecs) const {
    const CSessionCanvasWindow* pActive = GetActive();
    return pActive && pActive->GetGlass().Save(strPath, codecs);
}
