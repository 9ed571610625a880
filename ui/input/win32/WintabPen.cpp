#include "ui/input/win32/WintabPen.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QTabletEvent>
#include <QWidget>

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

constexpr double TENTHS = 10;

QPointingDevice::Capabilities Abilities() {
    using enum QInputDevice::Capability;
    return Position | Pressure | XTilt | YTilt | Rotation | Hover;
}

// How far the pen leans to the right and towards the user, in degrees.
QPointF TiltOf(const TPenPacket& packet) {
    const double dRadian = std::numbers::pi / (180 * TENTHS);
    const double dFlat = 1 / std::tan(std::max(1, std::abs(packet.nAltitude)) * dRadian);
    const double dAzimuth = packet.nAzimuth * dRadian;
    const auto degrees = [](double d) { return std::atan(d) * 180 / std::numbers::pi; };
    return {degrees(dFlat * std::sin(dAzimuth)), degrees(-dFlat * std::cos(dAzimuth))};
}

// A menu or a dialog has the input, not the picture.
bool IsInputElsewhere(const QWidget* pWindow) {
    const QWidget* pModal = QApplication::activeModalWidget();
    return QApplication::activePopupWidget() || (pModal && pModal != pWindow);
}

} // namespace

CWintabPen::CWintabPen(boost::shared_ptr<const CWintabLibrary> spLibrary, TNativePenEvents events)
    : m_context(std::move(spLibrary)), m_events(std::move(events)),
      m_tip(QStringLiteral("WinTab"), 1, QInputDevice::DeviceType::Stylus, QPointingDevice::PointerType::Pen,
            Abilities(), 1, 2),
      m_eraser(QStringLiteral("WinTab"), 2, QInputDevice::DeviceType::Stylus,
               QPointingDevice::PointerType::Eraser, Abilities(), 1, 2) {
    // The application object of a host's plug-in refuses such filters.
    QAbstractEventDispatcher::instance()->installNativeEventFilter(this);
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) { OnActivation(state == Qt::ApplicationActive); });
}

void CWintabPen::SetWindow(QWidget* pWindow) {
    m_context.Close();
    m_hWnd = nullptr;
    m_pWindow = pWindow;
    m_bMouseCoord.reset();
}

void CWintabPen::SetMouseCoord(bool bMouseCoord) {
    if (!m_bMouseCoord) m_bMouseCoord = bMouseCoord;
    Open();
}

// Asking Qt for the window's handle may create it, which is reported before the call returns.
void CWintabPen::Open() {
    if (!m_pWindow || !m_bMouseCoord) return;
    const auto hWnd = reinterpret_cast<HWND>(m_pWindow->winId());
    if (m_context.IsOpen() && hWnd == m_hWnd) return;
    m_hWnd = hWnd;
    m_context.Open(hWnd, *m_bMouseCoord);
}

// A tablet may have been plugged in meanwhile, and other programs put their contexts on top.
void CWintabPen::OnActivation(bool bActive) {
    if (bActive) Open();
    m_context.Enable(bActive);
    if (bActive) m_context.Raise();
}

std::optional<TPenDevice> CWintabPen::GetDevice() {
    const bool bOther = m_bQtReports && !m_source.IsDriver();
    return m_context.IsOpen() && !bOther ? std::optional(m_context.GetDevice()) : std::nullopt;
}

bool CWintabPen::TakesOver() {
    const bool bTakesOver = m_source.OnSystem();
    // The pen is over the picture again, but moves no pointer that would tell it.
    if (bTakesOver) m_context.Enable(true);
    return bTakesOver;
}

// A message passes here twice, unless it is taken the first time.
bool CWintabPen::nativeEventFilter(const QByteArray&, void* pMessage, qintptr*) {
    const MSG& msg = *static_cast<const MSG*>(pMessage);
    if (!m_context.IsOpen() || msg.hwnd != m_hWnd) return false;
    switch (msg.message) {
    case wintab::WT_PACKET:
        if (m_context.Is(static_cast<uintptr_t>(msg.lParam))) ReadPackets();
        return true;
    case wintab::WT_PROXIMITY:
        // The high word only tells whether the pen itself has come or gone too.
        if (m_context.Is(msg.wParam) && !IsInputElsewhere(m_pWindow))
            m_events.proximity(LOWORD(msg.lParam) != 0);
        return true;
    case wintab::WT_CTXCLOSE:
        if (m_context.Is(msg.wParam)) m_context.Drop();
        return true;
    case wintab::WT_INFOCHANGE:
        m_context.Close();
        Open();
        return true;
    default:
        return false;
    }
}

bool CWintabPen::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (pEvent->type() == QEvent::TabletMove && pEvent->spontaneous()) m_bQtReports = true;
    if (pEvent->type() == QEvent::MouseMove && pWatched->isWidgetType() &&
        static_cast<QWidget*>(pWatched)->hasTabletTracking())
        m_context.Enable(true);
    if (pEvent->type() == QEvent::WinIdChange && pWatched == m_pWindow) {
        if (m_pWindow->internalWinId())
            Open();
        else
            m_context.Close();
    }
    return false;
}

// From the system's pixels to those that Qt counts: on several screens of different scales it places their
// corners otherwise.
CPoint CWintabPen::GetShift() const {
    POINT ptNative{};
    ClientToScreen(m_hWnd, &ptNative);
    const QPointF pt = QPointF(m_pWindow->mapToGlobal(QPoint())) * m_pWindow->devicePixelRatioF();
    return {static_cast<int32_t>(std::lround(pt.x())) - ptNative.x,
            static_cast<int32_t>(std::lround(pt.y())) - ptNative.y};
}

void CWintabPen::ReadPackets() {
    std::array<TPenPacket, IPen::QUEUE_SIZE> aPackets;
    const size_t nPackets = m_context.Read(aPackets.data(), aPackets.size());
    if (nPackets == 0) return;
    m_source.OnDriver();
    const TPenUnits units{m_context.GetPressureAxis(), m_context.GetAltitudeAxis(),
                          m_context.GetUnitsPerPixel()};
    const CPoint ptLast = PixelOf(aPackets[nPackets - 1], units);
    CPoint ptShift = GetShift();
    POINT ptCursor{ptLast.x, ptLast.y};
    const bool bCursor = GetCursorPos(&ptCursor);
    // The cursor's position is known for the last packet only; those before it keep their distances.
    if (*m_bMouseCoord)
        ptShift = ptShift + CPoint{ptCursor.x, ptCursor.y} - ptLast;
    else if (bCursor && CPoint{ptCursor.x, ptCursor.y} != ptLast)
        SetCursorPos(ptLast.x, ptLast.y);
    for (TPenPacket& packet : std::span(aPackets).first(nPackets))
        packet = ConvertPacket(packet, units, m_events.units, ptShift);
    if (IsInputElsewhere(m_pWindow))
        SendToDialog(std::span(aPackets).first(nPackets));
    else
        m_events.packets(std::span(aPackets).first(nPackets));
}

// A view of a dialog takes Qt's events. Everything else is left to the pointer, which the driver moves.
void CWintabPen::SendToDialog(std::span<const TPenPacket> packets) {
    bool bTaken = false;
    for (const TPenPacket& packet : packets) {
        const QPointF pt =
            QPointF(packet.x, packet.y) / m_events.units.nPerPixel / m_pWindow->devicePixelRatioF();
        QWidget* pWidget = QApplication::widgetAt(pt.toPoint());
        bTaken = pWidget && pWidget->hasTabletTracking() &&
                 pWidget->window() == QApplication::activeModalWidget() &&
                 (m_bQtReports || SendTo(*pWidget, pt, packet));
    }
    if (!bTaken) m_context.Enable(false);
}

bool CWintabPen::SendTo(QWidget& widget, const QPointF& ptGlobal, const TPenPacket& packet) {
    const TPenAxis& axis = m_events.units.pressure;
    const double dPressure = (packet.uPressure - static_cast<double>(axis.nMin)) / (axis.nMax - axis.nMin);
    const QPointF ptTilt = TiltOf(packet);
    const Qt::MouseButtons buttons = dPressure > 0 ? Qt::LeftButton : Qt::NoButton;
    QTabletEvent event(QEvent::TabletMove, packet.uCursor == 2 ? &m_eraser : &m_tip,
                       widget.mapFromGlobal(ptGlobal), ptGlobal, dPressure, static_cast<float>(ptTilt.x()),
                       static_cast<float>(ptTilt.y()), 0, packet.nTwist / TENTHS, 0,
                       QGuiApplication::keyboardModifiers(), Qt::NoButton, buttons);
    event.setTimestamp(GetTickCount64());
    return QCoreApplication::sendEvent(&widget, &event) && event.isAccepted();
}
