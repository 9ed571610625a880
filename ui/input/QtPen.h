// The pen on Qt: tablet events become packets, beside those of the system's own interface.
#pragma once

#include "core/Platform/Pen.h"
#include "ui/input/NativePen.h"

#include <QObject>
#include <QPoint>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>

class CQtEventPump;
class IWindow;
class QPointF;
class QTabletEvent;
class QWidget;

/// Qt reports pressure as 0 to 1 and tilts in degrees; the packets use axes of their own, with the finest
/// pressure of real devices. Positions have a resolution of 1/32 device pixel. The receiver is notified
/// when a pen enters or leaves. A pen that an interface of the system reports has the same axes, and its
/// events from Qt are ignored.
class CQtPen : public QObject, public IPen {
public:
    explicit CQtPen(CQtEventPump& pump, const TNativePenMaker& fnMake = MakeNativePen);

    /// The main window, null for none. `fnReceiver` returns the window to notify when the pen enters or
    /// leaves, null for none.
    void SetWindow(QWidget* pWindow, std::function<IWindow*()> fnReceiver);
    /// An event as a packet at `pt`, a position in Qt pixels; `dScale` is device pixels per Qt pixel.
    static TPenPacket MakePacket(const QTabletEvent& event, const QPointF& pt, qreal dScale);
    /// The place of the pen if one is near that moves no pointer, else that of the pointer, as Qt counts the
    /// screen.
    QPoint GetPointer() const;
    /// Queues an event; `dScale` is device pixels per Qt pixel. A full queue drops its oldest packet.
    void Push(const QTabletEvent& event, qreal dScale);

    bool IsPresent() override { return true; }
    TPenDevice GetDevice() override;
    TPenAxis GetPressureAxis() override { return {0, PRESSURE_MAX}; }
    TPenAxis GetAltitudeAxis() override { return {0, ALTITUDE_MAX}; }
    void SetMouseCoord(bool bMouseCoord) override;
    int32_t GetUnitsPerPixel() override { return UNITS_PER_PIXEL; }
    size_t GetPackets(TPenPacket* pPackets, size_t nMax) override;
    /// Does nothing to Qt's events, which go to the window under the pen.
    void Enable(bool bEnable) override;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void Follow(const QTabletEvent& event);
    void Add(const TPenPacket& packet);
    void AddNative(std::span<const TPenPacket> packets);
    void PostProximity(bool bEnter, bool bEraser);
    IWindow* GetReceiver() const { return m_fnReceiver ? m_fnReceiver() : nullptr; }

    static constexpr int32_t PRESSURE_MAX = 65535;
    static constexpr int32_t ALTITUDE_MAX = 900; ///< tenths of a degree
    static constexpr int32_t UNITS_PER_PIXEL = 32;

    CQtEventPump& m_pump;
    std::function<IWindow*()> m_fnReceiver;
    std::deque<TPenPacket> m_deqPackets;
    uint64_t m_uRound = 0;                 ///< of the pump, when the last packets were posted
    std::optional<QPoint> m_ptNear;        ///< of a pen that moves no pointer, while it is near
    bool m_bTilts = false;                 ///< a pen has reported a tilt
    std::unique_ptr<INativePen> m_pNative; ///< null where Qt reports every pen
};
