#include "core/CanvasFrame/FrameInput.h"

#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Commands/HeldKeys.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Platform.h"
#include "core/Platform/System.h"
#include "core/RasterStroke/CtlPoint.h"
#include "core/Tools/PenContact.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int32_t HALF_PIXEL = 4;
constexpr uint32_t CURSOR_ERASER = 2; ///< a packet's cursor number
constexpr int TIMER_SILENCE = 17;
constexpr int32_t COARSE = 96; ///< zoom times scale below which a position is a pixel's centre

bool IsDrawing(const boost::shared_ptr<CTools>& spTool) { return spTool && spTool->GetState() != STATE_IDLE; }

} // namespace

// Tells the tool and repaints: the canvas where its answer is true, and in any case, once, what it draws over
// the canvas, which may have changed before a failure too.
template <class Tell>
void CFrameInput::TellTool(Tell fnTell) {
    bool bRedraw = false;
    Guarded([&] { bRedraw = fnTell(); });
    Guarded([&] { bRedraw ? m_frame.RequestRedraw() : InvalidateOverlay(); });
}

bool CFrameInput::IsKeyDown(int nKey) const { return m_frame.GetOutside().keys.IsKeyDown(nKey); }

void CFrameInput::Open() {
    IPen& pen = m_frame.GetOutside().platform.pen;
    if (!pen.IsPresent()) return;
    const bool bMouseCoord =
        m_frame.GetOutside().settings.GetSection(L"Tablet")->GetInt(L"MouseCoord", 1) != 0;
    pen.SetMouseCoord(bMouseCoord);
    m_pTablet = std::make_unique<CTablet>(pen, bMouseCoord);
    SetPenCurve(TPenCurve::Read(m_frame.GetOutside().settings));
}

void CFrameInput::SetPenCurve(const TPenCurve& curve) {
    if (m_pTablet) m_pTablet->SetCurve(curve);
}

std::optional<bool> CFrameInput::OnMessage(const TMessage& msg) {
    switch (msg.id) {
    case EMessage::MouseMove:
    case EMessage::LButtonDown:
    case EMessage::LButtonUp:
    case EMessage::RButtonDown:
    case EMessage::RButtonUp:
    case EMessage::MButtonDown:
    case EMessage::MButtonUp:
        OnMouse(msg);
        return true;
    case EMessage::PenPacket:
        OnPackets();
        return true;
    case EMessage::PenProximity:
        OnProximity(msg.wParam != 0, msg.lParam == 2);
        return true;
    case EMessage::MouseActivate:
        m_bDropPress = true;
        return true;
    case EMessage::PenActivate:
        if (const auto spTool = GetTool()) spTool->GetContact().DropNext();
        return true;
    case EMessage::MouseLeave:
        OnMouseLeave();
        return true;
    case EMessage::CaptureChanged:
        OnCaptureChanged();
        return true;
    case EMessage::KeyDown:
    case EMessage::SysKeyDown:
        return OnKey(msg, true);
    case EMessage::KeyUp:
    case EMessage::SysKeyUp:
        return OnKey(msg, false);
    case EMessage::Timer:
        if (msg.wParam != TIMER_SILENCE) return std::nullopt;
        OnSilence();
        return true;
    default:
        return std::nullopt;
    }
}

void CFrameInput::OnMouse(const TMessage& msg) {
    OnPointer({.message = msg.id,
               .nKeys = msg.wParam,
               .pt = {PackedX(msg.lParam), PackedY(msg.lParam)},
               .uPress = msg.wParam & MOUSE_LEFT ? 1u : 0u});
}

// True while the mouse draws or drags the view: the pen must not interfere.
bool CFrameInput::IsMouseAtWork() const {
    const auto spTool = GetTool();
    return (spTool && spTool->GetState() == STATE_MOUSE) || (m_bScrolling && !m_bScrollByTablet);
}

void CFrameInput::OnPackets() {
    if (!m_pTablet || !m_frame.IsActive()) return;
    const int64_t nKeys =
        (IsKeyDown(VK_Control) ? MOUSE_CONTROL : 0) | (IsKeyDown(VK_Shift) ? MOUSE_SHIFT : 0);
    std::array<TPenPacket, IPen::QUEUE_SIZE> aPackets;
    const size_t nPackets = m_pTablet->Read(aPackets.data());
    if (IsMouseAtWork()) return; // packets left in the queue would be drawn later
    bool bTaken = true;
    for (size_t n = 0; n < nPackets; ++n) {
        ICanvasWindow& window = m_frame.GetInputWindow();
        const auto event = m_pTablet->Decode(aPackets[n], window, window.HasCapture());
        bTaken = event.has_value();
        if (!event) continue;
        TurnPen(aPackets[n].uCursor == CURSOR_ERASER);
        OnPointer({.message = event->message,
                   .nKeys = nKeys,
                   .pt = event->pt,
                   .nScale = m_pTablet->GetCoordScale(),
                   .uPress = event->uPressure,
                   .uPressMax = m_pTablet->GetPressRange(),
                   .uTilt = event->uAltitude,
                   .uTiltMax = m_pTablet->GetAltitudeMax(),
                   .bTablet = true,
                   .bLowPress = event->bLow});
    }
    // The pen has left the window: release its packets to others until the pointer is back.
    if (!bTaken) m_pTablet->Enable(false);
}

// The pen's other end acts as the eraser while it is near.
void CFrameInput::TurnPen(bool bEraser) { SendToMainFrame(WM_PEN_END, bEraser); }

void CFrameInput::OnProximity(bool bEnter, bool bEraser) {
    const auto spTool = GetTool();
    if (!m_pTablet || !m_frame.IsActive() || !spTool) return;
    if (spTool->GetState() == STATE_MOUSE) {
        m_bTurnedEnd = bEnter && bEraser;
        spTool->GetContact().End();
        return;
    }
    TellTool([&] { return spTool->TellProximity(bEnter); });
    TurnPen(bEnter && bEraser);
    Settle();
}

void CFrameInput::OnSilence() {
    const auto spTool = GetTool();
    if (m_frame.IsActive() && spTool && spTool->EndAfterSilence()) m_frame.RequestRedraw();
    Settle();
}

// A timer may be early or late; the tool checks the clock.
void CFrameInput::WatchSilence() {
    const auto spTool = GetTool();
    const auto uLeft = spTool && m_frame.IsActive() ? spTool->UntilSilence() : std::nullopt;
    if (uLeft)
        m_frame.GetInputWindow().SetTimer(TIMER_SILENCE, static_cast<int>(std::max(*uLeft, 1u)));
    else if (m_bWatchesSilence)
        m_frame.GetInputWindow().KillTimer(TIMER_SILENCE);
    m_bWatchesSilence = uLeft.has_value();
}

void CFrameInput::OnPointer(const TPointerInput& input) {
    if (!m_frame.IsActive()) return;
    ICanvasWindow& window = m_frame.GetInputWindow();
    // A mere pointer move does not take the keyboard focus from a text field.
    if (input.message != EMessage::MouseMove || input.uPress != 0) window.SetFocus();
    m_ptPointer = {input.pt.x / input.nScale, input.pt.y / input.nScale};
    m_bInside = true;
    if (std::exchange(m_bLeft, false)) InvalidateOverlay();
    if (input.message == EMessage::MouseMove && m_pTablet) m_pTablet->Enable(true);
    const auto spTool = GetTool();
    const bool bPress =
        !input.bTablet && (input.message == EMessage::LButtonDown || input.message == EMessage::RButtonDown);
    if (bPress && std::exchange(m_bDropPress, false)) return;
    const bool bMiddle = input.message == EMessage::MButtonDown || input.message == EMessage::MButtonUp;
    if (m_bScrolling || m_bSpaceDown || (bMiddle && !IsDrawing(spTool))) {
        DragHand(input);
    } else if (bMiddle) {
        return;
    } else if (spTool) {
        if (!Guarded([&] { GiveToTool(*spTool, input); })) Guarded([&] { InvalidateOverlay(); });
    } else if (bPress) {
        TellRefusal(L"ツールが選択されていません。");
    }
    Settle();
}

// Updates capture, timer, cursor and the pen's end from the tool. Called after every event that may end an
// operation.
void CFrameInput::Settle() {
    if (m_bLeft && !m_bSpaceDown && !m_bScrolling) OnMouseLeave();
    const auto spTool = GetTool();
    m_frame.GetInputWindow().SetCapture(m_frame.IsActive() && (IsDrawing(spTool) || m_bScrolling));
    WatchSilence();
    UpdateCursor();
    if (m_bTurnedEnd && !IsMouseAtWork()) {
        const bool bEraser = *m_bTurnedEnd;
        m_bTurnedEnd.reset();
        TurnPen(bEraser);
    }
}

void CFrameInput::TellRefusal(const wchar_t* pszText) { PostToMainFrame(WM_TELL, 0, pszText); }

void CFrameInput::GiveToTool(CTools& tool, const TPointerInput& input) {
    if (tool.GetState() == (input.bTablet ? STATE_MOUSE : STATE_TABLET)) return;
    CPoint pt = m_frame.GetInputView().ToCanvas8(input.pt, input.nScale);
    if (m_frame.GetInputView().GetState().uZoom * input.nScale < COARSE)
        pt = pt + CPoint{HALF_PIXEL, HALF_PIXEL};
    const uint32_t flags = (input.nKeys & MOUSE_CONTROL ? POINTER_CONTROL : 0u) |
                           (input.nKeys & MOUSE_SHIFT ? POINTER_SHIFT : 0u) |
                           (IsKeyDown(VK_Alt) ? POINTER_ALT : 0u) | (input.bTablet ? POINTER_TABLET : 0u) |
                           (input.bLowPress ? POINTER_LOW : 0u);
    const auto scaled = [](uint32_t u, uint32_t uTo, uint32_t uMax) {
        return static_cast<uint32_t>(uint64_t{u} * uTo / uMax);
    };
    Dispatch(tool, input.message, pt, scaled(input.uPress, FULL_PRESSURE, input.uPressMax),
             scaled(input.uTilt, UPRIGHT, input.uTiltMax), flags);
}

void CFrameInput::Dispatch(CTools& tool, EMessage message, CPoint pt, uint32_t pressure, uint32_t altitude,
                           uint32_t flags) {
    const bool bPress = flags & POINTER_TABLET ? pressure != 0 && !tool.GetContact().IsDown()
                                               : message == EMessage::LButtonDown;
    if (const wchar_t* pszRefusal = bPress ? tool.GetRefusal() : nullptr) TellRefusal(pszRefusal);
    const bool bCancel = message == EMessage::RButtonDown && tool.GetState() != STATE_IDLE;
    const bool bRedraw =
        bCancel ? tool.CancelOperation() : tool.Dispatch(message, pt.x, pt.y, pressure, altitude, flags);
    if (m_frame.GetCanvas()->Update() || bRedraw)
        m_frame.RequestRedraw();
    else
        InvalidateOverlay();
    WatchSilence();
}

void CFrameInput::OnChangedBelow() {
    const auto spTool = GetTool();
    if (!m_bInside || !m_frame.IsActive() || !spTool || IsDrawing(spTool) || IsHand()) return;
    const CPoint pt = m_frame.GetInputView().ToCanvas8(m_ptPointer);
    TellTool([&] { return spTool->OnPointerOver(pt); });
    UpdateCursor();
}

CPoint CFrameInput::HandPosition(const TPointerInput& input) const {
    const auto step = [&](int32_t n) {
        n /= input.nScale;
        return m_frame.GetOutside().switches.m_bFastScroll ? n * 3 / 2 : n;
    };
    return {step(input.pt.x), step(input.pt.y)};
}

void CFrameInput::DragHand(const TPointerInput& input) {
    if (!m_bScrolling) {
        if (input.message != EMessage::LButtonDown && input.message != EMessage::MButtonDown) return;
        m_bScrolling = true;
        m_endOfDrag = input.message == EMessage::MButtonDown ? EMessage::MButtonUp : EMessage::LButtonUp;
        m_bScrollByTablet = input.bTablet;
        m_ptAnchor = HandPosition(input) + m_frame.GetInputView().GetScroll();
        return;
    }
    if (input.bTablet != m_bScrollByTablet) return;
    if (input.message == EMessage::MouseMove) m_frame.ScrollTo(m_ptAnchor - HandPosition(input));
    if (input.message == m_endOfDrag) m_bScrolling = false;
}

bool CFrameInput::OnKey(const TMessage& msg, bool bDown) {
    const int nKey = m_frame.GetOutside().keys.GetMeaning(static_cast<int>(msg.wParam), bDown);
    const auto spTool = GetTool();
    bool bHandled = false;
    if (bDown && msg.lParam == 1) {
        if (spTool && spTool->IsEnabled()) TellTool([&] { return bHandled = spTool->OnKeyRepeat(nKey); });
        return bHandled;
    }
    if (nKey == VK_Space) {
        bHandled = m_frame.IsActive() && !IsDrawing(spTool);
        if (bDown ? bHandled : true) m_bSpaceDown = bDown;
    } else if (nKey == VK_Escape) {
        if (bDown && IsDrawing(spTool)) CancelStroke(), bHandled = true;
        if (bDown && !bHandled && spTool && spTool->IsOpen())
            TellTool([&] { return spTool->EndOpen(EOpenEnd::Discard), bHandled = true; });
        else if (bDown && !bHandled && spTool && spTool->IsEnabled())
            TellTool([&] { return bHandled = spTool->OnEscape(); });
    } else if (spTool && spTool->IsEnabled()) {
        TellTool([&] { return bHandled = spTool->ChangeKey(nKey, bDown); });
    }
    Settle();
    return bHandled;
}

void CFrameInput::OnMouseLeave() {
    m_bInside = false;
    const auto spTool = GetTool();
    if (!m_frame.IsActive() || !spTool) return;
    // The hand's events are not the tool's, but what the tool draws at the pointer must not stay.
    m_bLeft = m_bSpaceDown || m_bScrolling;
    if (m_bLeft)
        InvalidateOverlay();
    else
        TellTool([&] { return spTool->OnMouseLeave(); });
}

void CFrameInput::OnCaptureChanged() {
    if (!m_bScrolling) CancelStroke();
    m_bScrolling = false;
    Settle();
}

void CFrameInput::OnActivate() {
    CancelStroke();
    m_bScrolling = m_bSpaceDown = m_bDropPress = false;
    if (const auto spTool = GetTool()) {
        spTool->GetContact().Drop();
        Guarded([&] { spTool->OnProximityLeave(); });
    }
    Settle();
}

void CFrameInput::CancelStroke() {
    const auto spTool = GetTool();
    TellTool([&] { return IsDrawing(spTool) && spTool->CancelOperation(); });
}

TOverlayMapper CFrameInput::GetMapper() const {
    return {[pView = &m_frame.GetInputView()](CPoint pt) { return pView->ToWindow8(pt); },
            m_frame.GetInputWindow().GetDpi()};
}

CRect CFrameInput::GetOverlayRect() const {
    const auto spTool = GetTool();
    return spTool && m_frame.IsActive() && !m_bLeft ? spTool->GetOverlayRect(GetMapper()) : CRect();
}

void CFrameInput::InvalidateOverlay() {
    const CRect rcClient({0, 0}, m_frame.GetInputWindow().GetClientSize());
    const auto spTool = GetTool();
    std::optional<std::vector<CRect>> vChanges;
    if (spTool && m_frame.IsActive() && !m_bLeft) vChanges = spTool->TakeOverlayChanges(GetMapper());
    if (!vChanges) vChanges = {m_rcOverlayPrev, GetOverlayRect()};
    for (const CRect& rc : *vChanges)
        if (!rc.Intersect(rcClient).IsEmpty()) m_frame.GetInputWindow().Invalidate(rc.Intersect(rcClient));
}

void CFrameInput::DrawOverlay(CGDIBuffer& target, const CRect& rcClip) {
    const auto spTool = GetTool();
    m_rcOverlayPrev = GetOverlayRect();
    if (m_rcOverlayPrev.IsEmpty()) return;
    const TOverlayMapper mapper = GetMapper();
    COverlay overlay(target, rcClip, mapper.GetDpi());
    spTool->DrawOverlay(overlay, mapper);
}

void CFrameInput::UpdateCursor() {
    const auto spTool = GetTool();
    ECursor cursor = ECursor::Arrow;
    if (m_bScrolling)
        cursor = ECursor::HandGrip;
    else if (m_bSpaceDown)
        cursor = ECursor::Hand;
    else if (spTool)
        cursor = spTool->IsEnabled() ? spTool->GetCursor(m_frame.GetInputView().ToCanvas8(m_ptPointer))
                                     : ECursor::Forbidden;
    m_frame.GetInputWindow().SetCursor(cursor);
}
