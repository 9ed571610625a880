#include "core/Tools/Tools.h"

#include "core/Base/Failure.h"
#include "core/Platform/System.h"
#include "core/Tools/PenContact.h"
#include "core/Tools/PictureExchange.h"

#include <algorithm>
#include <cstdlib>

boost::weak_ptr<IActiveView> g_wpActiveView;
boost::weak_ptr<CTools> g_wpActiveTool;

namespace {

constexpr int KEYS = 128; ///< keys that are passed to tools
constexpr uint32_t MOUSE_ECHO_MS = 1000;
constexpr uint32_t SILENCE_MS = 300;

} // namespace

void RedrawActiveView() {
    if (const auto spView = g_wpActiveView.lock()) spView->RequestRedraw();
}

void SettleActiveTool(EOpenEnd why) {
    const auto spTool = g_wpActiveTool.lock();
    if (spTool && spTool->IsOpen()) spTool->EndOpen(why);
}

CPreviewOut::CPreviewOut() {
    const auto spTool = g_wpActiveTool.lock();
    if (!spTool || !spTool->IsOpen()) return;
    if (spTool->ShowPreview(false))
        m_spTool = spTool;
    else
        spTool->EndOpen(EOpenEnd::Commit);
}

CPreviewOut::~CPreviewOut() {
    if (m_spTool) m_spTool->ShowPreview(true);
}

CTools::CTools(const TToolOutside& outside) : m_outside(outside) {
    for (int nKey = 0; nKey < KEYS; ++nKey)
        if (outside.keys.IsKeyDown(nKey)) m_setKeys.insert(nKey);
}

bool CTools::OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t, uint32_t flags) {
    return OnMouseMove(x, y, pressure, flags);
}

const wchar_t* CTools::GetHint(uint32_t uModifiers) const {
    if (!IsEnabled()) return L"";
    if (m_state != STATE_IDLE) return L"右クリック・Esc: やめる";
    if (IsOpen()) return L"Esc: やめる";
    const std::span<const TToolHint> hints = GetInfo().hints;
    const auto it = std::ranges::find(hints, uModifiers, &TToolHint::uModifiers);
    if (it != hints.end()) return it->pszText;
    return hints.empty() ? L"" : hints.front().pszText;
}

CRect CTools::GetOverlayRect(const TOverlayMapper& mapper) const {
    COverlay overlay(mapper.GetDpi());
    DrawOverlay(overlay, mapper);
    return overlay.GetBounds();
}

void CTools::SetState(int state) {
    if (state == STATE_IDLE) {
        m_state = STATE_IDLE;
        m_spCanvas.reset();
        m_spLayer.reset();
        return;
    }
    const auto spView = GetView();
    if (!spView) throw internal_error(L"SetState: there is no active window.");
    const auto spCanvas = spView->GetCanvas();
    const TLayerPtr spLayer = spCanvas->GetActiveLayer();
    if (!spLayer) throw internal_error(L"SetState: there is no active layer.");
    m_state = state;
    m_spCanvas = spCanvas;
    m_spLayer = spLayer;
}

boost::shared_ptr<CCanvasBuffer> CTools::GetCanvas() const {
    if (m_spCanvas) return m_spCanvas;
    const auto spView = GetView();
    return spView ? spView->GetCanvas() : boost::shared_ptr<CCanvasBuffer>();
}

TLayerPtr CTools::GetLayer() const {
    if (m_spLayer) return m_spLayer;
    const auto spCanvas = GetCanvas();
    return spCanvas ? spCanvas->GetActiveLayer() : TLayerPtr();
}

CPoint CTools::GetArrowStep(int nKey) const {
    constexpr int32_t FAR = 4096; // no view is so small that the direction is lost
    constexpr int32_t LARGE_STEP = 10;
    const CPoint ptWindow{(nKey == VK_Right) - (nKey == VK_Left), (nKey == VK_Down) - (nKey == VK_Up)};
    const auto spView = GetView();
    if (ptWindow == CPoint() || !spView) return {};
    const CPoint away = spView->ToCanvas({ptWindow.x * FAR, ptWindow.y * FAR}) - spView->ToCanvas({0, 0});
    const int32_t nStep = GetOutside().keys.IsKeyDown(VK_Shift) ? LARGE_STEP : 1;
    if (std::abs(away.x) > std::abs(away.y)) return {away.x < 0 ? -nStep : nStep, 0};
    return {0, away.y < 0 ? -nStep : nStep};
}

bool CTools::CanPaste() const { return m_state == STATE_IDLE && GetView() && m_outside.exchange.CanPaste(); }

bool CTools::Paste() { return CanPaste() && m_outside.exchange.Paste(*GetView()); }

bool CTools::ChangeKey(int nKey, bool bDown) {
    const bool bChanged = bDown ? m_setKeys.insert(nKey).second : m_setKeys.erase(nKey) > 0;
    if (!bChanged || !IsEnabled()) return false;
    return bDown ? OnKeyDown(nKey) : OnKeyUp(nKey);
}

bool CTools::SynthesizeKeys() {
    bool bRedraw = false;
    for (int nKey = 0; nKey < KEYS; ++nKey) bRedraw |= ChangeKey(nKey, m_outside.keys.IsKeyDown(nKey));
    return bRedraw;
}

bool CTools::TellProximity(bool bEnter) {
    GetContact().End();
    return bEnter ? OnProximityEnter() : OnProximityLeave();
}

bool CTools::CancelOperation() {
    GetContact().Drop();
    return Cancel();
}

std::optional<uint32_t> CTools::UntilSilence() const {
    if (m_state != STATE_TABLET || GetContact().IsDown()) return std::nullopt;
    const uint32_t uSilent = m_outside.clock.GetTickCount() - m_uLastPenTick;
    return uSilent < SILENCE_MS ? SILENCE_MS - uSilent : 0;
}

bool CTools::EndAfterSilence() { return UntilSilence() == 0u && TellProximity(false); }

bool CTools::Refuses(bool bTablet) const {
    if (m_state == (bTablet ? STATE_MOUSE : STATE_TABLET)) return true;
    return !bTablet && m_bPenSeen && m_outside.clock.GetTickCount() - m_uLastPenTick < MOUSE_ECHO_MS;
}

bool CTools::Dispatch(EMessage message, int32_t x, int32_t y, uint32_t pressure, uint32_t altitude,
                      uint32_t flags) {
    const bool bTablet = flags & POINTER_TABLET;
    if (Refuses(bTablet)) return false;
    // The timeout must have the same effect whether its timer or the next event comes first.
    bool bRedraw = bTablet && EndAfterSilence();
    const bool bTaken = !bTablet || GetContact().Take(pressure, message == EMessage::LButtonUp);
    if (!IsEnabled()) return bRedraw;
    if (bTablet) {
        m_uLastPenTick = m_outside.clock.GetTickCount();
        m_bPenSeen = true;
    }
    if (!bTaken) return bRedraw;
    bRedraw |= SynthesizeKeys();
    switch (message) {
    case EMessage::MouseMove:
        return OnMouseMove(x, y, pressure, altitude, flags) || bRedraw;
    case EMessage::LButtonDown:
        bRedraw |= OnLButtonDown(x, y, flags);
        return (bTablet && OnPenTip(x, y, pressure, altitude, flags)) || bRedraw;
    case EMessage::LButtonUp:
        bRedraw |= OnLButtonUp(x, y, flags);
        return (bTablet && OnPenTip(x, y, pressure, altitude, flags)) || bRedraw;
    case EMessage::RButtonDown:
        return OnRButtonDown(x, y, flags) || bRedraw;
    case EMessage::RButtonUp:
        return OnRButtonUp(x, y, flags) || bRedraw;
    default:
        return bRedraw;
    }
}
