#include "tests/wayland/Tablet.h"

#include "tests/wayland/Compositor.h"
#include "tests/wayland/Protocol.h"
#include <tablet-unstable-v2-server-protocol.h>

#include <chrono>
#include <cmath>

namespace {

constexpr uint32_t AXIS_MAX = 65535;
constexpr uint32_t PEN_SERIAL = 4711; ///< both ends are one tool

uint32_t NowMs() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

} // namespace

struct CTabletRequests {
    static CTestTablet& Of(wl_resource* pResource) {
        return *static_cast<CTestTablet*>(wl_resource_get_user_data(pResource));
    }
    static void SetCursor(wl_client*, wl_resource* pTool, uint32_t, wl_resource*, int32_t, int32_t) {
        ++Of(pTool).m_nCursors;
    }
    static void GetSeat(wl_client* pClient, wl_resource* pManager, uint32_t uId, wl_resource*) {
        static constexpr struct zwp_tablet_seat_v2_interface REQUESTS { DestroyResource };
        Of(pManager).AddDevices(
            MakeResource(pClient, zwp_tablet_seat_v2_interface, 1, uId, &REQUESTS, &Of(pManager)));
    }
    static void Bind(wl_client* pClient, void* pData, uint32_t, uint32_t uId) {
        static constexpr struct zwp_tablet_manager_v2_interface REQUESTS { GetSeat, DestroyResource };
        MakeResource(pClient, zwp_tablet_manager_v2_interface, 1, uId, &REQUESTS, pData);
    }
};

CTestTablet::CTestTablet(CCompositor& compositor, wl_display* pDisplay) : m_compositor(compositor) {
    wl_global_create(pDisplay, &zwp_tablet_manager_v2_interface, 1, this, CTabletRequests::Bind);
}

void CTestTablet::AddDevices(wl_resource* pSeat) {
    if (m_pTablet) return; // it belongs to the first program
    static constexpr struct zwp_tablet_v2_interface TABLET { DestroyResource };
    static constexpr struct zwp_tablet_tool_v2_interface TOOL { CTabletRequests::SetCursor, DestroyResource };
    wl_client* pClient = wl_resource_get_client(pSeat);
    m_pTablet = MakeResource(pClient, zwp_tablet_v2_interface, 1, 0, &TABLET, this);
    zwp_tablet_seat_v2_send_tablet_added(pSeat, m_pTablet);
    zwp_tablet_v2_send_name(m_pTablet, "Test Tablet");
    zwp_tablet_v2_send_done(m_pTablet);
    for (const ETool tool : {PEN, ERASER}) {
        wl_resource* pTool = MakeResource(pClient, zwp_tablet_tool_v2_interface, 1, 0, &TOOL, this);
        m_apTools[tool] = pTool;
        zwp_tablet_seat_v2_send_tool_added(pSeat, pTool);
        zwp_tablet_tool_v2_send_type(pTool, tool == PEN ? ZWP_TABLET_TOOL_V2_TYPE_PEN
                                                        : ZWP_TABLET_TOOL_V2_TYPE_ERASER);
        zwp_tablet_tool_v2_send_hardware_serial(pTool, 0, PEN_SERIAL);
        zwp_tablet_tool_v2_send_capability(pTool, ZWP_TABLET_TOOL_V2_CAPABILITY_PRESSURE);
        zwp_tablet_tool_v2_send_capability(pTool, ZWP_TABLET_TOOL_V2_CAPABILITY_TILT);
        zwp_tablet_tool_v2_send_done(pTool);
    }
}

void CTestTablet::Enter(ETool tool, const TSurface& surface, const TPenSample& sample) {
    m_abNear[tool] = true;
    zwp_tablet_tool_v2_send_proximity_in(m_apTools[tool], m_compositor.NextSerial(), m_pTablet,
                                         surface.pResource);
    Send(tool, sample);
}

void CTestTablet::Move(ETool tool, const TPenSample& sample) { Send(tool, sample); }

void CTestTablet::Send(ETool tool, const TPenSample& sample) {
    wl_resource* pTool = m_apTools[tool];
    zwp_tablet_tool_v2_send_motion(pTool, wl_fixed_from_double(sample.pt.x()),
                                   wl_fixed_from_double(sample.pt.y()));
    zwp_tablet_tool_v2_send_tilt(pTool, wl_fixed_from_double(sample.dTiltX),
                                 wl_fixed_from_double(sample.dTiltY));
    const bool bDown = sample.dPressure > 0;
    if (bDown && !m_abDown[tool]) zwp_tablet_tool_v2_send_down(pTool, m_compositor.NextSerial());
    zwp_tablet_tool_v2_send_pressure(pTool, static_cast<uint32_t>(std::lround(sample.dPressure * AXIS_MAX)));
    if (!bDown && m_abDown[tool]) zwp_tablet_tool_v2_send_up(pTool);
    m_abDown[tool] = bDown;
    Frame(tool);
}

void CTestTablet::Button(ETool tool, uint32_t uButton, bool bDown) {
    zwp_tablet_tool_v2_send_button(m_apTools[tool], m_compositor.NextSerial(), uButton, bDown ? 1 : 0);
    Frame(tool);
}

// As the protocol says a pen that is taken away while it touches is lifted in the same frame.
void CTestTablet::Leave(ETool tool) {
    if (!std::exchange(m_abNear[tool], false)) return;
    if (m_abDown[tool]) zwp_tablet_tool_v2_send_up(m_apTools[tool]);
    zwp_tablet_tool_v2_send_proximity_out(m_apTools[tool]);
    m_abDown[tool] = false;
    Frame(tool);
}

void CTestTablet::Frame(ETool tool) {
    zwp_tablet_tool_v2_send_frame(m_apTools[tool], NowMs());
    m_compositor.Flush();
}
