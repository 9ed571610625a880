// The pen on Qt: tablet events become packets.
#pragma once

#include "core/Platform/Pen.h"

#include <QObject>

#include <deque>
#include <functional>

class CQtEventPump;
class IWindow;
class QTabletEvent;

/// Qt tells pressure as 0 to 1 and tilts in degrees; the packets have them on axes of their own, the pressure
/// as fine as devices are. Positions keep 32nds of a device pixel. A pen that comes near or goes is told to
/// the receiver.
class CQtPen : public QObject, public IPen {
public:
    explicit CQtPen(CQtEventPump& pump) : m_pump(pump) {}

    /// Who is told of the pen coming and going; null when nobody is there.
    void SetReceiver(std::function<IWindow*()> fnReceiver);
    /// Takes an event in; `dScale` is device pixels to one of Qt's. A full queue loses its oldest packet.
    void Push(const QTabletEvent& event, qreal dScale);

    bool IsPresent() override { return true; }
    TPenAxis GetPressureAxis() override { return {0, PRESSURE_MAX}; }
    TPenAxis GetAltitudeAxis() override { return {0, ALTITUDE_MAX}; }
    int32_t GetUnitsPerPixel() override { return UNITS_PER_PIXEL; }
    size_t GetPackets(TPenPacket* pPackets, size_t nMax) override;
    /// Nothing to switch: Qt gives the events of the pen to the window that it is over.
    void Enable(bool) override {}

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    static constexpr int32_t PRESSURE_MAX = 65535;
    static constexpr int32_t ALTITUDE_MAX = 900; ///< tenths of a degree
    static constexpr int32_t UNITS_PER_PIXEL = 32;

    CQtEventPump& m_pump;
    std::function<IWindow*()> m_fnReceiver;
    std::deque<TPenPacket> m_deqPackets;
};
