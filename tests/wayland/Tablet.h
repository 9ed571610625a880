// A tablet with one pen that has an eraser at its other end, as the tablet protocol tells clients of it.
#pragma once

#include <wayland-server.h>

#include <QPointF>

#include <boost/noncopyable.hpp>

class CCompositor;
struct TSurface;

/// The state of the tool that one frame reports.
struct TPenSample {
    QPointF pt;                    ///< on the surface
    double dPressure = 0;          ///< 0 to 1
    double dTiltX = 0, dTiltY = 0; ///< degrees
};

class CTestTablet : boost::noncopyable {
public:
    enum ETool { PEN, ERASER };

    CTestTablet(CCompositor& compositor, wl_display* pDisplay);

    /// All of these send at once, under the compositor's lock, and belong to one frame each.
    void Enter(ETool tool, const TSurface& surface, const TPenSample& sample);
    /// Touches or lifts when the pressure begins or ends.
    void Move(ETool tool, const TPenSample& sample);
    /// `uButton`: an evdev code.
    void Button(ETool tool, uint32_t uButton, bool bDown);
    /// Does nothing unless it is near.
    void Leave(ETool tool);

    static constexpr uint32_t BTN_STYLUS = 0x14b, BTN_STYLUS2 = 0x14c;
    /// The number of cursors that the client has set for the pen.
    int GetCursors() const { return m_nCursors; }

private:
    friend struct CTabletRequests;

    void AddDevices(wl_resource* pSeat);
    void Send(ETool tool, const TPenSample& sample);
    void Frame(ETool tool);

    CCompositor& m_compositor;
    wl_resource* m_pTablet = nullptr;
    wl_resource* m_apTools[2]{};
    bool m_abNear[2]{}, m_abDown[2]{};
    int m_nCursors = 0;
};
