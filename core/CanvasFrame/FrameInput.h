// What a canvas frame does with pointer, pen and keys before a tool hears of them.
#pragma once

#include "core/CanvasFrame/CanvasView.h"
#include "core/CanvasFrame/Tablet.h"
#include "core/Platform/Window.h"
#include "core/Tools/Tools.h"

#include <boost/noncopyable.hpp>

#include <memory>

/// A pointer event in window units.
struct TPointerInput {
    EMessage message = EMessage::MouseMove;
    int64_t nKeys = 0; ///< MOUSE_ bits
    CPoint pt;         ///< client position in 1 / nScale of a pixel
    int32_t nScale = 1;
    uint32_t uPress = 0; ///< 0 to uPressMax
    uint32_t uPressMax = 1;
    uint32_t uTilt = 1; ///< 0 to uTiltMax, the pen upright
    uint32_t uTiltMax = 1;
    bool bTablet = false;
    bool bLowPress = false; ///< the pen touches below the threshold
};

/// What the frame answers and does for its input.
class IInputFrame {
public:
    virtual ~IInputFrame() = default;
    virtual ICanvasWindow& GetInputWindow() = 0;
    virtual CCanvasView& GetInputView() = 0;
    virtual const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const = 0;
    virtual bool IsActive() const = 0;
    /// Something is to be drawn: changed blocks and the overlay now, the other views of the canvas on the
    /// timer.
    virtual void RequestRedraw() = 0;
    /// The hand moved the view.
    virtual void ScrollTo(CPoint ptScroll) = 0;
};

/// One a frame. Events reach the active tool in canvas units; space lets the hand drag the view.
class CFrameInput : boost::noncopyable {
public:
    explicit CFrameInput(IInputFrame& frame) : m_frame(frame) {}

    /// Opens the tablet; without one the mouse alone draws.
    void Open();
    /// Handles pointer, pen and key messages; nothing for others, else whether the message is used up.
    std::optional<bool> OnMessage(const TMessage& msg);
    /// The one entry for every pointer event.
    void OnPointer(const TPointerInput& input);
    /// The frame gained or lost the user's attention: a stroke in progress is cancelled, and nothing leads
    /// from the pen's place in one frame to that in another.
    void OnActivate();
    /// Another tool is the active one.
    void OnToolSwitched() { Settle(); }
    /// Gives the tool an event in canvas units (eighths of a pixel, pressure to 1024, altitude to 90) and
    /// lets canvas and window follow.
    void Dispatch(CTools& tool, EMessage message, CPoint pt, uint32_t pressure, uint32_t altitude,
                  uint32_t flags);
    /// Draws the tool's overlay inside `rcClip` of a copy of the window's pixels and keeps where it is.
    void DrawOverlay(CGDIBuffer& target, const CRect& rcClip);
    /// The tool's overlay rectangle now, in client pixels.
    CRect GetOverlayRect() const;
    /// Has the overlay painted anew, where it was and where it is.
    void InvalidateOverlay();

private:
    void OnMouse(const TMessage& msg);
    bool IsMouseAtWork() const;
    void OnPackets();
    void OnProximity(bool bEnter, bool bEraser);
    void TurnPen(bool bEraser);
    void OnSilence();
    void WatchSilence();
    void TellRefusal(const wchar_t* pszText);
    bool OnKey(const TMessage& msg, bool bDown);
    void OnMouseLeave();
    void OnCaptureChanged();
    void GiveToTool(CTools& tool, const TPointerInput& input);
    void DragHand(const TPointerInput& input);
    void CancelStroke();
    void Settle();
    void UpdateCursor();
    CPoint HandPosition(const TPointerInput& input) const;
    TOverlayMapper GetMapper() const;

    IInputFrame& m_frame;
    std::unique_ptr<CTablet> m_pTablet;
    CRect m_rcOverlayPrev;     ///< where the overlay was painted last
    CPoint m_ptPointer;        ///< the pointer's last client pixel
    CPoint m_ptAnchor;         ///< window position plus scroll offset when the hand took hold
    bool m_bSpaceDown = false; ///< the hand is armed
    bool m_bScrolling = false; ///< the hand drags
    bool m_bScrollByTablet = false;
    bool m_bWatchesSilence = false;
    bool m_bDropPress = false;        ///< the mouse's next press belongs to the activation of the frame
    std::optional<bool> m_bTurnedEnd; ///< the pen's end that came while the mouse drew
};
