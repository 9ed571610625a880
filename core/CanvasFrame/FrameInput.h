// The input of a canvas frame: handles pointer, pen and keys before a tool receives them.
#pragma once

#include "core/CanvasFrame/CanvasView.h"
#include "core/CanvasFrame/FrameOutside.h"
#include "core/CanvasFrame/Tablet.h"
#include "core/Platform/Window.h"
#include "core/Tools/Tools.h"

#include <boost/noncopyable.hpp>

#include <memory>
#include <optional>

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

/// The frame's interface for its input.
class IInputFrame {
public:
    virtual ~IInputFrame() = default;
    virtual const TFrameOutside& GetOutside() const = 0;
    virtual ICanvasWindow& GetInputWindow() = 0;
    virtual CCanvasView& GetInputView() = 0;
    virtual const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const = 0;
    virtual bool IsActive() const = 0;
    /// Requests a redraw: changed blocks and the overlay now, the canvas's other views on the timer.
    virtual void RequestRedraw() = 0;
    /// Called when the hand scrolls the view.
    virtual void ScrollTo(CPoint ptScroll) = 0;
};

/// One for each frame. Events reach the active tool in canvas units; space lets the hand drag the view.
class CFrameInput : boost::noncopyable {
public:
    explicit CFrameInput(IInputFrame& frame) : m_frame(frame) {}

    /// The active tool, null when there is none.
    boost::shared_ptr<CTools> GetTool() const { return m_frame.GetOutside().wpTool.lock(); }
    /// Opens the tablet; without one only the mouse draws.
    void Open();
    /// Stretches the pen's pressures from now on.
    void SetPenCurve(const TPenCurve& curve);
    /// Handles pointer, pen and key messages: true when consumed. Returns nullopt for other messages.
    std::optional<bool> OnMessage(const TMessage& msg);
    /// The one entry for every pointer event.
    void OnPointer(const TPointerInput& input);
    /// The frame was activated or deactivated: cancels a stroke in progress and forgets the pen's position.
    void OnActivate();
    /// Another tool was activated.
    void OnToolSwitched() { Settle(); }
    /// The view or the document has changed under the pointer: the tool sees what lies there now, and the
    /// pointer's shape follows.
    void OnChangedBelow();
    /// The pointer's last client pixel.
    CPoint GetPointer() const { return m_ptPointer; }
    /// The same while the pointer is over the view; nullopt when it has left.
    std::optional<CPoint> GetInsidePointer() const {
        return m_bInside ? std::optional(m_ptPointer) : std::nullopt;
    }
    /// True while presses and moves scroll the view.
    bool IsHand() const { return m_bSpaceDown || m_bScrolling; }
    /// Passes the tool an event in canvas units (eighths of a pixel, pressure to 1024, altitude to 90) and
    /// updates canvas and window.
    void Dispatch(CTools& tool, EMessage message, CPoint pt, uint32_t pressure, uint32_t altitude,
                  uint32_t flags);
    /// Draws the tool's overlay inside `rcClip` of a copy of the window's pixels and stores its bounds.
    void DrawOverlay(CGDIBuffer& target, const CRect& rcClip);
    /// The tool's present overlay bounds in client pixels.
    CRect GetOverlayRect() const;
    /// Invalidates the overlay's old and new bounds.
    void InvalidateOverlay();

private:
    bool IsKeyDown(int nKey) const;
    void OnMouse(const TMessage& msg);
    bool IsMouseAtWork() const;
    void OnPackets();
    void OnProximity(bool bEnter, bool bEraser);
    void TurnPen(bool bEraser);
    void OnSilence();
    void WatchSilence();
    void TellRefusal(const wchar_t* pszText);
    template <class Tell>
    void TellTool(Tell fnTell);
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
    CRect m_rcOverlayPrev;     ///< the overlay's bounds at the last paint
    CPoint m_ptPointer;        ///< the pointer's last client pixel
    bool m_bInside = false;    ///< the pointer has not left since its last event
    CPoint m_ptAnchor;         ///< window position plus scroll offset when the drag began
    bool m_bSpaceDown = false; ///< space is down: a press starts a drag of the view
    bool m_bScrolling = false; ///< the view is being dragged
    bool m_bScrollByTablet = false;
    /// The pointer has left meanwhile: the overlay is hidden, the tool is told afterwards.
    bool m_bLeft = false;
    EMessage m_endOfDrag = EMessage::LButtonUp; ///< the release that ends the drag of the view
    bool m_bWatchesSilence = false;
    bool m_bDropPress = false;        ///< the mouse's next press only activates the frame
    std::optional<bool> m_bTurnedEnd; ///< the pen's end reported while the mouse drew
};
