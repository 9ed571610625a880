// The client area of a canvas's window and its scroll bars.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Cursor.h"
#include "core/Platform/Message.h"
#include "ui/input/QtTouch.h"

#include <QAbstractScrollArea>

#include <functional>

class IPaintTarget;
class QNativeGestureEvent;
class QTabletEvent;

/// Sizes and rectangles are device pixels; the viewport's top-left pixel is (0, 0).
class CQtCanvasView : public QAbstractScrollArea {
public:
    struct TEvents {
        std::function<void(CSize)> size;                         ///< the client size has changed
        std::function<void(IPaintTarget&, const CRect&)> paint;  ///< the rectangle must be repainted
        std::function<void(bool bVertical, int nOffset)> scroll; ///< the user moved a scroll bar
        std::function<void(int nDelta)> wheel;                   ///< whole steps of 120
        std::function<void(int nSteps, CPoint pt)> pinch;        ///< fingers; positive magnifies
        /// The pointer's messages: keys are MOUSE_ bits, the position a client pixel.
        std::function<void(EMessage id, int64_t nKeys, CPoint pt)> pointer;
        std::function<void(const QTabletEvent&)> tablet; ///< every event of the pen
        std::function<bool()> isActive;                  ///< the view is the active window's
        std::function<void(bool bPen)> activate;         ///< the next press hits an inactive view
    };

    CQtCanvasView(TEvents events, QWidget* pParent);

    CSize GetClientSize() const;
    void Invalidate(const CRect& rc);
    /// The viewport's top-left pixel on the screen.
    CPoint GetClientOrigin() const;
    /// True when the viewport is the topmost widget at a device pixel of the screen.
    bool IsAt(CPoint ptScreen) const;
    void ShowCursor(ECursor cursor);
    /// Sets both scroll bars without a notification.
    void SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset);
    /// Resizes the viewport to fit the view before it is first shown.
    void SettleLayout();

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    bool viewportEvent(QEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    /// Does not scroll pixels: the application repaints after scrolling.
    void scrollContentsBy(int, int) override {}

private:
    void CheckSize();
    void Pinch(const QNativeGestureEvent& event);
    void TellFinger(EMessage id, CPoint pt);
    bool MovePicture(CPoint ptDistance);
    void TellPointer(EMessage id, const QMouseEvent& event);
    void WatchBar(bool bVertical);
    void WatchPen();

    TEvents m_events;
    CSize m_szTold;
    ECursor m_cursor = ECursor::Arrow;
    CSize m_szPage;            ///< pixels that a click beside the handle scrolls
    bool m_bActivated = false; ///< the press being delivered activated the view
    bool m_bSetting = false;   ///< the application is setting the scroll bars
    bool m_bPenOver = false;   ///< watched until it is over something else
    bool m_bZooming = false;   ///< the scroll bars do not show the last zoom yet
    CPinchSteps m_pinch;       ///< of a touch pad
    CQtTouch m_touch;
    int m_nWheel = 0; ///< accumulated part of a wheel step
};
