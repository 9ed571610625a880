#include "ui/base/QtScopes.h"
#include "ui/input/QtKeys.h"
#include "ui/input/QtPen.h"
#include "ui/panels/QtPanelControls.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTabletEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

TColor ColorOf(const QColor& color) {
    return MakeColor(static_cast<uint8_t>(color.red()), static_cast<uint8_t>(color.green()),
                     static_cast<uint8_t>(color.blue()));
}

/// Puts the view's pixels on the widget, one to one.
class CViewTarget : public IPaintTarget {
public:
    explicit CViewTarget(QWidget& widget) : m_painter(&widget), m_dScale(widget.devicePixelRatioF()) {}
    void Blit(const uint8_t* pPixels, int nStride, CSize szBitmap, const CRect&) override {
        QImage image(pPixels, szBitmap.cx, szBitmap.cy, nStride, QImage::Format_RGB32);
        image.setDevicePixelRatio(m_dScale);
        m_painter.drawImage(QPointF(0, 0), image);
    }

private:
    QPainter m_painter;
    qreal m_dScale;
};

class CViewWidget : public QWidget {
public:
    CViewWidget(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : QWidget(pParent), m_nId(control.nId), m_pView(control.pView),
          m_szWanted(control.szView.cx, control.szView.cy), m_fnEvent(events.view) {
        if (control.bPen) m_fnPen = events.pen;
        setTabletTracking(control.bPen);
        if (control.bHand) setCursor(Qt::OpenHandCursor);
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Expanding, control.bStretch ? QSizePolicy::Expanding : QSizePolicy::Fixed);
        if (control.bStretch)
            setMinimumHeight(m_szWanted.height() / 2);
        else
            setFixedHeight(m_szWanted.height());
        setMinimumWidth(m_szWanted.width() / 2);
    }
    QSize sizeHint() const override { return m_szWanted; }

protected:
    void paintEvent(QPaintEvent*) override {
        const qreal dScale = devicePixelRatioF();
        const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
        TPanelPaint paint;
        paint.sz = {static_cast<int32_t>(std::lround(width() * dScale)),
                    static_cast<int32_t>(std::lround(height() * dScale))};
        paint.clrBack = ColorOf(palette().color(group, QPalette::Window));
        paint.clrText = ColorOf(palette().color(group, QPalette::WindowText));
        paint.clrBase = ColorOf(palette().color(group, QPalette::Base));
        paint.dScale = dScale;
        paint.bEnabled = isEnabled();
        paint.bFocus = hasFocus();
        if (paint.sz.cx <= 0 || paint.sz.cy <= 0 || !m_pView) return;
        CViewTarget target(*this);
        const CPaintScope painting;
        m_pView->OnPaint(target, paint);
    }
    void mousePressEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() == Qt::LeftButton) Tell(EMessage::LButtonDown, *pEvent);
    }
    void mouseMoveEvent(QMouseEvent* pEvent) override {
        if (pEvent->buttons().testFlag(Qt::LeftButton)) Tell(EMessage::MouseMove, *pEvent);
    }
    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        if (pEvent->button() == Qt::LeftButton) Tell(EMessage::LButtonUp, *pEvent);
    }
    void keyPressEvent(QKeyEvent* pEvent) override {
        switch (pEvent->key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Space:
            m_fnEvent(m_nId, EMessage::KeyDown, VirtualKeyOf(*pEvent), pEvent->isAutoRepeat());
            break;
        default:
            pEvent->ignore();
        }
    }
    void tabletEvent(QTabletEvent* pEvent) override {
        pEvent->setAccepted(static_cast<bool>(m_fnPen));
        if (m_fnPen)
            m_fnPen(m_nId, {CQtPen::MakePacket(*pEvent, pEvent->position(), devicePixelRatioF()),
                            static_cast<uint32_t>(pEvent->timestamp())});
    }
    void focusInEvent(QFocusEvent*) override { update(); }
    void focusOutEvent(QFocusEvent*) override { update(); }

private:
    void Tell(EMessage id, const QMouseEvent& event) {
        const qreal dScale = devicePixelRatioF();
        m_fnEvent(m_nId, id, event.modifiers().testFlag(Qt::ShiftModifier) ? MOUSE_SHIFT : 0,
                  PackPoint(static_cast<int32_t>(std::floor(event.position().x() * dScale)),
                            static_cast<int32_t>(std::floor(event.position().y() * dScale))));
    }

    int m_nId;
    IPanelView* m_pView;
    QSize m_szWanted;
    std::function<void(int, EMessage, int64_t, int64_t)> m_fnEvent;
    std::function<void(int, const TPenReport&)> m_fnPen; ///< empty: a pen acts as the mouse
};

class CViewControl : public CQtPanelControl {
public:
    CViewControl(const TPanelControl& control, const TPanelEvents& events, QWidget* pParent)
        : m_pView(new CViewWidget(control, events, pParent)) {}
    QWidget* GetWidget() override { return m_pView; }
    void Write(const TPanelControl&) override { m_pView->update(); }

private:
    CViewWidget* m_pView;
};

} // namespace

std::unique_ptr<CQtPanelControl> MakePanelView(const TPanelControl& control, const TPanelEvents& events,
                                               QWidget* pParent) {
    return std::make_unique<CViewControl>(control, events, pParent);
}
