#include "ui/windows/QtCanvasView.h"

#include "core/GDIBuffer/GDIBuffer.h"
#include "core/Platform/Window.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtScopes.h"
#include "ui/windows/CanvasCursor.h"

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTabletEvent>
#include <QTouchEvent>
#include <QWindow>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

constexpr int WHEEL_STEP = 120;
constexpr int MOST_RECTANGLES =
    64; ///< more are painted as one; a round selection on a large screen has about 60

/// Draws pixels one to one on device pixels.
class CViewPainter : public IPaintTarget {
public:
    CViewPainter(QWidget& viewport, const QRegion& region) : m_painter(&viewport) {
        m_dScale = m_painter.device()->devicePixelRatio();
        m_painter.setClipRegion(region);
        m_painter.setCompositionMode(QPainter::CompositionMode_Source);
        // At a fractional scale the viewport may end inside a device pixel that no picture pixel covers.
        if (m_dScale != std::floor(m_dScale)) m_painter.fillRect(viewport.rect(), viewport.palette().mid());
    }

    void Blit(const uint8_t* pPixels, int nStride, CSize szBitmap, const CRect& rc) override {
        const CRect rcShown = rc.Intersect({{0, 0}, szBitmap});
        if (rcShown.IsEmpty()) return;
        const uint8_t* pFirst =
            pPixels + static_cast<ptrdiff_t>(rcShown.top) * nStride + rcShown.left * CGDIBuffer::PIXEL_BYTES;
        QImage image(pFirst, rcShown.Width(), rcShown.Height(), nStride, QImage::Format_RGB32);
        image.setDevicePixelRatio(m_dScale);
        m_painter.drawImage(QPointF(rcShown.left, rcShown.top) / m_dScale, image);
    }

private:
    QPainter m_painter;
    qreal m_dScale;
};

int64_t HeldKeys(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ShiftModifier) ? MOUSE_SHIFT : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? MOUSE_CONTROL : 0);
}

} // namespace

CQtCanvasView::CQtCanvasView(TEvents events, QWidget* pParent)
    : QAbstractScrollArea(pParent), m_events(std::move(events)),
      m_touch({[this](EMessage id, CPoint pt) { TellFinger(id, pt); },
               [this](int nSteps, CPoint pt) {
                   m_bZooming = true;
                   m_events.pinch(nSteps, pt);
               },
               [this](CPoint ptDistance) { return MovePicture(ptDistance); }}) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    // Bars that appear and disappear would change the client size that they depend on.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAttribute(Qt::WA_NoSystemBackground);
    // The pointer is tracked without a button, and a resting pen must not open a context menu.
    viewport()->setMouseTracking(true);
    viewport()->setTabletTracking(true);
    viewport()->setContextMenuPolicy(Qt::PreventContextMenu);
    // Qt's scroll areas move their content with two fingers themselves, but do not know of zooming.
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport()->ungrabGesture(Qt::PanGesture);
    for (const bool bVertical : {false, true}) WatchBar(bVertical);
}

void CQtCanvasView::WatchBar(bool bVertical) {
    QScrollBar* pBar = bVertical ? verticalScrollBar() : horizontalScrollBar();
    connect(pBar, &QScrollBar::valueChanged, this, [this, bVertical](int nOffset) {
        if (!m_bSetting) m_events.scroll(bVertical, nOffset);
    });
    connect(pBar, &QScrollBar::actionTriggered, this, [this, bVertical, pBar](int nAction) {
        const int nPage = bVertical ? m_szPage.cy : m_szPage.cx;
        if (nAction == QAbstractSlider::SliderPageStepAdd) pBar->setSliderPosition(pBar->value() + nPage);
        if (nAction == QAbstractSlider::SliderPageStepSub) pBar->setSliderPosition(pBar->value() - nPage);
    });
}

CSize CQtCanvasView::GetClientSize() const {
    const QSizeF sz = QSizeF(viewport()->size()) * devicePixelRatioF();
    return {static_cast<int32_t>(std::lround(sz.width())), static_cast<int32_t>(std::lround(sz.height()))};
}

void CQtCanvasView::Invalidate(const CRect& rc) {
    if (rc.IsEmpty()) {
        viewport()->update();
        return;
    }
    const qreal dScale = devicePixelRatioF();
    viewport()->update(
        QRectF(rc.left / dScale, rc.top / dScale, rc.Width() / dScale, rc.Height() / dScale).toAlignedRect());
}

void CQtCanvasView::SetScroll(CSize szExtent, CSize szLine, CSize szPage, CPoint ptOffset) {
    const QScopedValueRollback guard(m_bSetting, true);
    const CSize szClient = GetClientSize();
    // Qt's page step is the handle's length; the distance of a page is corrected when it scrolls.
    const auto set = [](QScrollBar& bar, int nExtent, int nClient, int nLine, int nOffset) {
        bar.setRange(0, std::max(0, nExtent - nClient));
        bar.setSingleStep(nLine);
        bar.setPageStep(nClient);
        bar.setValue(nOffset);
    };
    m_szPage = szPage;
    m_bZooming = false;
    set(*horizontalScrollBar(), szExtent.cx, szClient.cx, szLine.cx, ptOffset.x);
    set(*verticalScrollBar(), szExtent.cy, szClient.cy, szLine.cy, ptOffset.y);
}

void CQtCanvasView::SettleLayout() {
    // Qt lays out a hidden widget only when it is shown; the application needs the size before.
    QResizeEvent event(size(), size());
    QCoreApplication::sendEvent(this, &event);
    QResizeEvent eventViewport(viewport()->size(), viewport()->size());
    QCoreApplication::sendEvent(viewport(), &eventViewport);
}

void CQtCanvasView::CheckSize() {
    const CSize sz = GetClientSize();
    if (sz == m_szTold) return;
    m_szTold = sz;
    m_events.size(sz);
}

void CQtCanvasView::resizeEvent(QResizeEvent*) { CheckSize(); }

void CQtCanvasView::paintEvent(QPaintEvent* pEvent) {
    if (CWorkScope::IsOpen()) return; // the last picture stays
    // A screen of another scale changes only the size in device pixels, and causes a repaint.
    CheckSize();
    const qreal dScale = devicePixelRatioF();
    const CSize szClient = GetClientSize();
    const auto paint = [&](CViewPainter& painter, const QRect& rc) {
        const CRect rcPaint(static_cast<int>(std::floor(rc.left() * dScale)),
                            static_cast<int>(std::floor(rc.top() * dScale)),
                            static_cast<int>(std::ceil((rc.left() + rc.width()) * dScale)),
                            static_cast<int>(std::ceil((rc.top() + rc.height()) * dScale)));
        m_events.paint(painter, rcPaint.Intersect({{0, 0}, szClient}));
    };
    const QRegion& region = pEvent->region();
    CViewPainter painter(*viewport(), region);
    const CPaintScope painting;
    // Few rectangles are painted one by one, as the area between them may be large.
    if (region.rectCount() > MOST_RECTANGLES)
        paint(painter, region.boundingRect());
    else
        for (const QRect& rc : region) paint(painter, rc);
}

void CQtCanvasView::wheelEvent(QWheelEvent* pEvent) {
    const int nDelta = pEvent->angleDelta().y();
    // A touch pad scrolls in small parts; a change of direction resets them.
    if ((nDelta > 0) != (m_nWheel > 0)) m_nWheel = 0;
    m_nWheel += nDelta;
    const int nSteps = m_nWheel / WHEEL_STEP;
    m_nWheel -= nSteps * WHEEL_STEP;
    if (nSteps != 0) m_events.wheel(nSteps * WHEEL_STEP);
    pEvent->accept();
}

void CQtCanvasView::Pinch(const QNativeGestureEvent& event) {
    if (event.gestureType() == Qt::BeginNativeGesture) m_pinch.Begin();
    if (event.gestureType() != Qt::ZoomNativeGesture) return;
    const QPointF pt = event.position() * devicePixelRatioF();
    if (const int nSteps = m_pinch.Add(1 + event.value()))
        m_events.pinch(nSteps,
                       {static_cast<int32_t>(std::floor(pt.x())), static_cast<int32_t>(std::floor(pt.y()))});
}

void CQtCanvasView::TellFinger(EMessage id, CPoint pt) {
    if (id == EMessage::LButtonDown && std::exchange(m_bActivated, false)) m_events.activate(false);
    const bool bDown = id == EMessage::LButtonDown || id == EMessage::MouseMove;
    m_events.pointer(id, (bDown ? MOUSE_LEFT : 0) | HeldKeys(QGuiApplication::keyboardModifiers()), pt);
}

// Zooming moves the bars, but later: their values of now would take it back.
bool CQtCanvasView::MovePicture(CPoint ptDistance) {
    if (m_bZooming) return false;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - ptDistance.x);
    verticalScrollBar()->setValue(verticalScrollBar()->value() - ptDistance.y);
    return true;
}

void CQtCanvasView::TellPointer(EMessage id, const QMouseEvent& event) {
    const qreal dScale = devicePixelRatioF();
    const int64_t nKeys = (event.buttons().testFlag(Qt::LeftButton) ? MOUSE_LEFT : 0) |
                          (event.buttons().testFlag(Qt::RightButton) ? MOUSE_RIGHT : 0) |
                          HeldKeys(event.modifiers());
    m_events.pointer(id, nKeys,
                     {static_cast<int32_t>(std::floor(event.position().x() * dScale)),
                      static_cast<int32_t>(std::floor(event.position().y() * dScale))});
}

// On a press Qt first sets the focus, which activates the window, and only then sends the press.
void CQtCanvasView::focusInEvent(QFocusEvent* pEvent) {
    m_bActivated = pEvent->reason() == Qt::MouseFocusReason && !m_events.isActive();
    QAbstractScrollArea::focusInEvent(pEvent);
}

bool CQtCanvasView::viewportEvent(QEvent* pEvent) {
    const auto press = [&](EMessage idLeft, EMessage idRight, EMessage idMiddle) {
        const auto& event = static_cast<QMouseEvent&>(*pEvent);
        if (event.button() == Qt::LeftButton) TellPointer(idLeft, event);
        if (event.button() == Qt::RightButton) TellPointer(idRight, event);
        if (event.button() == Qt::MiddleButton) TellPointer(idMiddle, event);
    };
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (std::exchange(m_bActivated, false)) m_events.activate(false);
        press(EMessage::LButtonDown, EMessage::RButtonDown, EMessage::MButtonDown);
        return true;
    case QEvent::MouseButtonRelease:
        press(EMessage::LButtonUp, EMessage::RButtonUp, EMessage::MButtonUp);
        return true;
    case QEvent::MouseMove:
        m_bActivated = false; // activated by a scroll bar
        TellPointer(EMessage::MouseMove, static_cast<QMouseEvent&>(*pEvent));
        return true;
    case QEvent::NativeGesture:
        Pinch(static_cast<QNativeGestureEvent&>(*pEvent));
        pEvent->accept();
        return true;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        if (!m_touch.OnEvent(static_cast<QTouchEvent&>(*pEvent), devicePixelRatioF())) break;
        pEvent->accept();
        return true;
    case QEvent::Leave:
        m_events.pointer(EMessage::MouseLeave, 0, {});
        break;
    case QEvent::TabletPress:
        if (!m_events.isActive()) m_events.activate(true);
        [[fallthrough]];
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        WatchPen();
        m_events.tablet(static_cast<QTabletEvent&>(*pEvent));
        pEvent->accept();
        return true;
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(pEvent);
}

// On Wayland a pen moves no pointer: Qt does not tell that it is over another widget.
void CQtCanvasView::WatchPen() {
    if (PlacesWindowsItself() && !std::exchange(m_bPenOver, true)) qApp->installEventFilter(this);
}

bool CQtCanvasView::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (m_bPenOver && pEvent->type() == QEvent::TabletMove && pWatched->isWindowType()) {
        const auto& event = static_cast<QTabletEvent&>(*pEvent);
        const bool bOver = pWatched == window()->windowHandle() &&
                           window()->childAt(event.position().toPoint()) == viewport();
        if (!bOver && event.buttons() == Qt::NoButton) {
            m_bPenOver = false;
            qApp->removeEventFilter(this);
            m_events.pointer(EMessage::MouseLeave, 0, {});
        }
    }
    return QAbstractScrollArea::eventFilter(pWatched, pEvent);
}

CPoint CQtCanvasView::GetClientOrigin() const {
    const QPointF pt = viewport()->mapToGlobal(QPointF(0, 0)) * devicePixelRatioF();
    return {static_cast<int32_t>(std::lround(pt.x())), static_cast<int32_t>(std::lround(pt.y()))};
}

bool CQtCanvasView::IsAt(CPoint ptScreen) const {
    const CPoint pt = ptScreen - GetClientOrigin();
    const CSize sz = GetClientSize();
    if (pt.x < 0 || pt.y < 0 || pt.x >= sz.cx || pt.y >= sz.cy) return false;
    const QPoint ptGlobal = (QPointF(ptScreen.x, ptScreen.y) / devicePixelRatioF()).toPoint();
    // Other windows of this program may seem to be over the view, and do not get the event.
    if (PlacesWindowsItself()) return window()->childAt(window()->mapFromGlobal(ptGlobal)) == viewport();
    return QApplication::widgetAt(ptGlobal) == viewport();
}

void CQtCanvasView::ShowCursor(ECursor cursor) {
    if (cursor == m_cursor) return;
    m_cursor = cursor;
    viewport()->setCursor(CanvasCursor(cursor, devicePixelRatioF()));
}
