#include "ui/input/QtPen.h"

#include "core/AppModule/ErrorBox.h"
#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/input/QtEventPump.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPointingDevice>
#include <QTabletEvent>

#include <cmath>

namespace {

constexpr double TENTHS = 10;

// The altitude over the tablet, in degrees, of a pen tilted by `dX` and `dY` degrees: the axis' direction
// is (tan dX, tan dY, 1).
double AltitudeOf(double dX, double dY) {
    const double dFlat = std::hypot(std::tan(dX * M_PI / 180), std::tan(dY * M_PI / 180));
    return std::atan2(1.0, dFlat) * 180 / M_PI;
}

// Clockwise from above, in degrees from 0 up to 360.
double AzimuthOf(double dX, double dY) {
    const double d = std::atan2(std::tan(dX * M_PI / 180), -std::tan(dY * M_PI / 180)) * 180 / M_PI;
    return d < 0 ? d + 360 : d;
}

bool IsEraser(const QTabletEvent& event) {
    return event.pointerType() == QPointingDevice::PointerType::Eraser;
}

uint32_t ButtonsOf(const QTabletEvent& event) {
    constexpr uint32_t NONE = 0xFFFF;
    constexpr uint32_t UP = 1;
    constexpr uint32_t DOWN = 2;
    const uint32_t uButton = event.button() == Qt::LeftButton    ? 0
                             : event.button() == Qt::RightButton ? 1
                                                                 : NONE;
    if (event.type() == QEvent::TabletPress && uButton != NONE) return DOWN << 16 | uButton;
    if (event.type() == QEvent::TabletRelease && uButton != NONE) return UP << 16 | uButton;
    return NONE;
}

} // namespace

CQtPen::CQtPen(CQtEventPump& pump, const TNativePenMaker& fnMake)
    : m_pump(pump), m_pNative(fnMake({{{0, PRESSURE_MAX}, {0, ALTITUDE_MAX}, UNITS_PER_PIXEL},
                                      [this](std::span<const TPenPacket> packets) { AddNative(packets); },
                                      [this](bool bEnter) { PostProximity(bEnter, false); }})) {}

TPenPacket CQtPen::MakePacket(const QTabletEvent& event, const QPointF& pt, qreal dScale) {
    const auto unit = [&](qreal d) {
        return static_cast<int32_t>(std::lround(d * dScale * UNITS_PER_PIXEL));
    };
    const bool bEraser = IsEraser(event);
    const auto nAltitude =
        static_cast<int32_t>(std::lround(AltitudeOf(event.xTilt(), event.yTilt()) * TENTHS));
    TPenPacket packet;
    packet.uCursor = bEraser ? 2 : 1;
    packet.uButtons = ButtonsOf(event);
    packet.x = unit(pt.x());
    packet.y = unit(pt.y());
    // A lifted tip has no pressure, whatever the last report said.
    const bool bLifted = event.type() == QEvent::TabletRelease && event.button() == Qt::LeftButton;
    packet.uPressure = bLifted ? 0 : static_cast<uint32_t>(std::lround(event.pressure() * PRESSURE_MAX));
    packet.nAltitude = bEraser ? -nAltitude : nAltitude;
    packet.nAzimuth = static_cast<int32_t>(std::lround(AzimuthOf(event.xTilt(), event.yTilt()) * TENTHS));
    packet.nTwist = static_cast<int32_t>(std::lround(event.rotation() * TENTHS));
    return packet;
}

void CQtPen::Push(const QTabletEvent& event, qreal dScale) {
    if (m_pNative && m_pNative->TakesOver()) return;
    Add(MakePacket(event, event.globalPosition(), dScale));
}

void CQtPen::Add(const TPenPacket& packet) {
    m_deqPackets.push_back(packet);
    if (m_deqPackets.size() > QUEUE_SIZE) m_deqPackets.pop_front();
}

void CQtPen::AddNative(std::span<const TPenPacket> packets) {
    // Nobody has read the last ones: they must not be drawn later, and the pen is left to the pointer.
    if (!m_deqPackets.empty() && m_uRound != m_pump.GetRound()) {
        m_deqPackets.clear();
        m_pNative->Enable(false);
    }
    m_uRound = m_pump.GetRound();
    Guarded([&] {
        for (const TPenPacket& packet : packets) Add(packet);
    });
    if (IWindow* pReceiver = GetReceiver()) m_pump.Post({pReceiver, EMessage::PenPacket});
}

void CQtPen::SetMouseCoord(bool bMouseCoord) {
    if (m_pNative) m_pNative->SetMouseCoord(bMouseCoord);
}

void CQtPen::Enable(bool bEnable) {
    if (m_pNative) m_pNative->Enable(bEnable);
}

TPenDevice CQtPen::GetDevice() {
    if (const auto native = m_pNative ? m_pNative->GetDevice() : std::nullopt) return *native;
    const QInputDevice* pPen = nullptr;
    for (const QInputDevice* pDevice : QInputDevice::devices())
        if (pDevice->type() == QInputDevice::DeviceType::Stylus) pPen = pDevice;
    const QInputDevice::Capabilities can = pPen ? pPen->capabilities() : QInputDevice::Capability::None;
    // Qt's Wayland plug-in does not describe the pens that it reports: Qt makes up a device for them.
    const bool bMadeUp = pPen && pPen->name() == QLatin1String("fake tablet");
    return {bMadeUp ? L"ペンタブレット"
            : pPen  ? FromQt(pPen->name())
                    : std::wstring(),
            GetPenSystem(), can.testFlag(QInputDevice::Capability::Pressure),
            can.testFlag(QInputDevice::Capability::XTilt) || (bMadeUp && m_bTilts),
            can.testFlag(QInputDevice::Capability::Rotation)};
}

size_t CQtPen::GetPackets(TPenPacket* pPackets, size_t nMax) {
    size_t n = 0;
    for (; n < nMax && !m_deqPackets.empty(); ++n, m_deqPackets.pop_front())
        pPackets[n] = m_deqPackets.front();
    return n;
}

void CQtPen::SetWindow(QWidget* pWindow, std::function<IWindow*()> fnReceiver) {
    if (m_pNative) m_pNative->SetWindow(pWindow);
    m_fnReceiver = std::move(fnReceiver);
    // Qt sends the proximity events of a pen to the application, not to a window.
    qApp->removeEventFilter(this);
    qApp->installEventFilter(this);
}

void CQtPen::Follow(const QTabletEvent& event) {
    m_bTilts = m_bTilts || event.xTilt() != 0 || event.yTilt() != 0;
    if (PlacesWindowsItself()) m_ptNear = event.globalPosition().toPoint();
}

QPoint CQtPen::GetPointer() const { return m_ptNear ? *m_ptNear : QCursor::pos(); }

bool CQtPen::eventFilter(QObject*, QEvent* pEvent) {
    const bool bEnter = pEvent->type() == QEvent::TabletEnterProximity;
    if (pEvent->type() == QEvent::TabletMove || pEvent->type() == QEvent::TabletPress)
        Follow(static_cast<QTabletEvent&>(*pEvent));
    if (pEvent->type() == QEvent::TabletLeaveProximity) m_ptNear.reset();
    if (!bEnter && pEvent->type() != QEvent::TabletLeaveProximity) return false;
    if (!m_pNative || !m_pNative->IsInCharge())
        PostProximity(bEnter, IsEraser(static_cast<QTabletEvent&>(*pEvent)));
    return false;
}

void CQtPen::PostProximity(bool bEnter, bool bEraser) {
    if (IWindow* pReceiver = GetReceiver())
        m_pump.Post({pReceiver, EMessage::PenProximity, bEnter ? 1 : 0, bEraser ? 2 : 1, {}});
}
