#include "tests/wayland/Compositor.h"

#include "tests/wayland/Protocol.h"
#include "tests/wayland/Tablet.h"
#include <xdg-activation-v1-server-protocol.h>
#include <xdg-shell-server-protocol.h>

#include <QtGlobal>

#include <algorithm>
#include <cstring>

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// Two keys are enough: Control and Z, at their codes plus 8.
constexpr char KEYMAP[] = R"(xkb_keymap {
xkb_keycodes { minimum = 8; maximum = 255; <LCTL> = 37; <KEYZ> = 52; };
xkb_types { type "ONE_LEVEL" { modifiers = none; level_name[1] = "Any"; }; };
xkb_compatibility { interpret Control_L { action = SetMods(modifiers=Control); }; };
xkb_symbols { key <LCTL> { [ Control_L ] }; key <KEYZ> { [ z ] }; modifier_map Control { <LCTL> }; };
};)";
constexpr uint32_t CONTROL_MASK = 4;

int MakeKeymapFile() {
    const int nFile = memfd_create("keymap", 0);
    return write(nFile, KEYMAP, sizeof KEYMAP) == sizeof KEYMAP ? nFile : -1;
}

// Calls `fn` with a buffer's pixels, which stay the client's.
template <class Function>
void WithPicture(wl_resource* pBuffer, const Function& fn) {
    wl_shm_buffer* pShm = wl_shm_buffer_get(pBuffer);
    if (!pShm) return;
    wl_shm_buffer_begin_access(pShm);
    fn(QImage(static_cast<const uchar*>(wl_shm_buffer_get_data(pShm)), wl_shm_buffer_get_width(pShm),
              wl_shm_buffer_get_height(pShm), wl_shm_buffer_get_stride(pShm),
              QImage::Format_ARGB32_Premultiplied));
    wl_shm_buffer_end_access(pShm);
}

} // namespace

struct CProtocol {
    static CCompositor& Of(wl_resource* pResource) {
        return *static_cast<CCompositor*>(wl_resource_get_user_data(pResource));
    }
    // The surface of a resource of any of its roles.
    static TSurface* SurfaceOf(wl_resource* p) {
        for (TSurface& surface : Of(p).m_lstSurfaces)
            if (surface.pResource == p || surface.pXdg == p || surface.pToplevel == p) return &surface;
        return nullptr;
    }

    static void Attach(wl_client*, wl_resource* p, wl_resource* pBuffer, int32_t, int32_t) {
        SurfaceOf(p)->pBuffer = pBuffer;
    }
    static void AskFrame(wl_client* pClient, wl_resource* p, uint32_t uId) {
        SurfaceOf(p)->vFrames.push_back(
            MakeResource(pClient, wl_callback_interface, 1, uId, nullptr, nullptr));
    }
    static void SetScale(wl_client*, wl_resource* p, int32_t nScale) { SurfaceOf(p)->nScale = nScale; }
    static void Commit(wl_client*, wl_resource* p) {
        TSurface& surface = *SurfaceOf(p);
        if (surface.pToplevel && !std::exchange(surface.bConfigured, true)) Of(p).Configure(surface, true);
        if (wl_resource* pBuffer = std::exchange(surface.pBuffer, nullptr)) {
            WithPicture(pBuffer, [&](const QImage& picture) {
                surface.fnPainted ? surface.fnPainted(picture) : void(surface.picture = picture.copy());
            });
            wl_buffer_send_release(pBuffer);
        }
        for (wl_resource* pFrame : std::exchange(surface.vFrames, {})) {
            wl_callback_send_done(pFrame, 0);
            wl_resource_destroy(pFrame);
        }
    }
    static void SurfaceGone(wl_resource* p) {
        CCompositor& compositor = Of(p);
        if (compositor.m_pFocus == SurfaceOf(p)) compositor.m_pFocus = nullptr;
        compositor.m_lstSurfaces.remove_if([p](const TSurface& surface) { return surface.pResource == p; });
    }
    static void CreateSurface(wl_client* pClient, wl_resource* p, uint32_t uId) {
        static constexpr struct wl_surface_interface REQUESTS {
            DestroyResource, Attach, Ignore, AskFrame, Ignore, Ignore, Commit, Ignore, SetScale, Ignore,
                Ignore
        };
        Of(p).m_lstSurfaces.emplace_back().pResource = MakeResource(
            pClient, wl_surface_interface, wl_resource_get_version(p), uId, &REQUESTS, &Of(p), SurfaceGone);
    }
    static void CreateRegion(wl_client* pClient, wl_resource*, uint32_t uId) {
        static constexpr struct wl_region_interface REQUESTS { DestroyResource, Ignore, Ignore };
        MakeResource(pClient, wl_region_interface, 1, uId, &REQUESTS, nullptr);
    }
    static void BindCompositor(wl_client* pClient, void* pData, uint32_t uVersion, uint32_t uId) {
        static constexpr struct wl_compositor_interface REQUESTS { CreateSurface, CreateRegion };
        MakeResource(pClient, wl_compositor_interface, static_cast<int>(uVersion), uId, &REQUESTS, pData);
    }

    static void SetTitle(wl_client*, wl_resource* p, const char* psz) { SurfaceOf(p)->strTitle = psz; }
    static void SetAppId(wl_client*, wl_resource* p, const char* psz) { SurfaceOf(p)->strAppId = psz; }
    static void RoleGone(wl_resource* p) {
        for (TSurface& surface : Of(p).m_lstSurfaces) {
            if (surface.pToplevel == p) surface.pToplevel = nullptr, surface.bConfigured = false;
            if (surface.pXdg == p) surface.pXdg = nullptr;
        }
    }
    static void GetToplevel(wl_client* pClient, wl_resource* p, uint32_t uId) {
        static constexpr struct xdg_toplevel_interface REQUESTS {
            DestroyResource, Ignore, SetTitle, SetAppId, Ignore, Ignore, Ignore, Ignore, Ignore, Ignore,
                Ignore, Ignore, Ignore, Ignore
        };
        SurfaceOf(p)->pToplevel =
            MakeResource(pClient, xdg_toplevel_interface, 1, uId, &REQUESTS, &Of(p), RoleGone);
    }
    static void GetPopup(wl_client* pClient, wl_resource* p, uint32_t uId, wl_resource*, wl_resource*) {
        static constexpr struct xdg_popup_interface REQUESTS { DestroyResource, Ignore, Ignore };
        wl_resource* pPopup = MakeResource(pClient, xdg_popup_interface, 1, uId, &REQUESTS, nullptr);
        xdg_popup_send_configure(pPopup, 0, 0, 200, 300);
        xdg_surface_send_configure(p, Of(p).NextSerial());
    }
    static void GetXdgSurface(wl_client* pClient, wl_resource* p, uint32_t uId, wl_resource* pSurface) {
        static constexpr struct xdg_surface_interface REQUESTS {
            DestroyResource, GetToplevel, GetPopup, Ignore, Ignore
        };
        SurfaceOf(pSurface)->pXdg =
            MakeResource(pClient, xdg_surface_interface, 1, uId, &REQUESTS, &Of(p), RoleGone);
    }
    static void MakePositioner(wl_client* pClient, wl_resource*, uint32_t uId) {
        static constexpr struct xdg_positioner_interface REQUESTS {
            DestroyResource, Ignore, Ignore, Ignore, Ignore, Ignore, Ignore, Ignore, Ignore, Ignore
        };
        MakeResource(pClient, xdg_positioner_interface, 1, uId, &REQUESTS, nullptr);
    }
    // Another program has ended.
    static void Forget(wl_resource* p) {
        std::erase(Of(p).m_vShells, p);
        std::erase(Of(p).m_vKeyboards, p);
    }
    static void Pong(wl_client*, wl_resource* p, uint32_t) { Of(p).m_bAnswered = true; }
    static void BindShell(wl_client* pClient, void* pData, uint32_t, uint32_t uId) {
        static constexpr struct xdg_wm_base_interface REQUESTS {
            DestroyResource, MakePositioner, GetXdgSurface, Pong
        };
        auto& compositor = *static_cast<CCompositor*>(pData);
        compositor.m_vShells.push_back(
            MakeResource(pClient, xdg_wm_base_interface, 1, uId, &REQUESTS, pData, Forget));
    }

    static void GetKeyboard(wl_client* pClient, wl_resource* p, uint32_t uId) {
        static constexpr struct wl_keyboard_interface REQUESTS { DestroyResource };
        wl_resource* pKeyboard =
            MakeResource(pClient, wl_keyboard_interface, 1, uId, &REQUESTS, &Of(p), Forget);
        Of(p).m_vKeyboards.push_back(pKeyboard);
        const int nFile = MakeKeymapFile();
        wl_keyboard_send_keymap(pKeyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, nFile, sizeof KEYMAP);
        close(nFile);
    }
    static void BindSeat(wl_client* pClient, void* pData, uint32_t, uint32_t uId) {
        static constexpr struct wl_seat_interface REQUESTS { Ignore, GetKeyboard, Ignore, DestroyResource };
        wl_seat_send_capabilities(MakeResource(pClient, wl_seat_interface, 1, uId, &REQUESTS, pData),
                                  WL_SEAT_CAPABILITY_KEYBOARD);
    }
    static void CommitToken(wl_client*, wl_resource* p) { xdg_activation_token_v1_send_done(p, "made"); }
    static void MakeToken(wl_client* pClient, wl_resource*, uint32_t uId) {
        static constexpr struct xdg_activation_token_v1_interface REQUESTS {
            Ignore, Ignore, Ignore, CommitToken, DestroyResource
        };
        MakeResource(pClient, xdg_activation_token_v1_interface, 1, uId, &REQUESTS, nullptr);
    }
    static void Activate(wl_client*, wl_resource* p, const char* pszToken, wl_resource*) {
        Of(p).m_vActivations.emplace_back(pszToken);
    }
    static void BindActivation(wl_client* pClient, void* pData, uint32_t, uint32_t uId) {
        static constexpr struct xdg_activation_v1_interface REQUESTS { DestroyResource, MakeToken, Activate };
        MakeResource(pClient, xdg_activation_v1_interface, 1, uId, &REQUESTS, pData);
    }
    static void BindOutput(wl_client* pClient, void* pData, uint32_t, uint32_t uId) {
        wl_resource* p = MakeResource(pClient, wl_output_interface, 2, uId, nullptr, pData);
        wl_output_send_geometry(p, 0, 0, 500, 300, 0, "Test", "Screen", 0);
        wl_output_send_mode(p, WL_OUTPUT_MODE_CURRENT, 1920 * Of(p).m_nScale, 1200 * Of(p).m_nScale, 60000);
        wl_output_send_scale(p, Of(p).m_nScale);
        wl_output_send_done(p);
    }
};

CCompositor::CCompositor(int nScale) : m_nScale(nScale), m_pDisplay(wl_display_create()) {
    qputenv("XDG_RUNTIME_DIR", m_folder.GetPath().c_str());
    qputenv("WAYLAND_DISPLAY", wl_display_add_socket_auto(m_pDisplay));
    wl_display_init_shm(m_pDisplay);
    wl_global_create(m_pDisplay, &wl_compositor_interface, 4, this, CProtocol::BindCompositor);
    wl_global_create(m_pDisplay, &wl_output_interface, 2, this, CProtocol::BindOutput);
    wl_global_create(m_pDisplay, &wl_seat_interface, 1, this, CProtocol::BindSeat);
    wl_global_create(m_pDisplay, &xdg_wm_base_interface, 1, this, CProtocol::BindShell);
    wl_global_create(m_pDisplay, &xdg_activation_v1_interface, 1, this, CProtocol::BindActivation);
    m_pTablet = std::make_unique<CTestTablet>(*this, m_pDisplay);
    m_thread = std::thread([this] { Work(); });
}

CCompositor::~CCompositor() {
    m_bEnds = true;
    m_thread.join();
    wl_display_destroy_clients(m_pDisplay);
    wl_display_destroy(m_pDisplay);
}

void CCompositor::Work() {
    wl_event_loop* pLoop = wl_display_get_event_loop(m_pDisplay);
    while (!m_bEnds) {
        pollfd file{wl_event_loop_get_fd(pLoop), POLLIN, 0};
        poll(&file, 1, 20);
        const CLock lock = Lock();
        wl_event_loop_dispatch(pLoop, 0);
        Flush();
    }
}

TSurface* CCompositor::FindWindow(const std::string& strTitle) {
    const auto it = std::ranges::find_if(m_lstSurfaces, [&](const TSurface& surface) {
        return surface.pToplevel && surface.strTitle.find(strTitle) != std::string::npos;
    });
    return it == m_lstSurfaces.end() ? nullptr : &*it;
}

void CCompositor::Ping() {
    const CLock lock = Lock();
    m_bAnswered = false;
    for (wl_resource* pShell : m_vShells) xdg_wm_base_send_ping(pShell, NextSerial());
    Flush();
}

void CCompositor::Configure(TSurface& surface, bool bActive) {
    wl_array states;
    wl_array_init(&states);
    if (bActive)
        *static_cast<uint32_t*>(wl_array_add(&states, sizeof(uint32_t))) = XDG_TOPLEVEL_STATE_ACTIVATED;
    xdg_toplevel_send_configure(surface.pToplevel, 0, 0, &states);
    wl_array_release(&states);
    xdg_surface_send_configure(surface.pXdg, NextSerial());
}

void CCompositor::FocusKeyboard(TSurface* pSurface) {
    const CLock lock = Lock();
    wl_array keys;
    wl_array_init(&keys);
    TSurface* pOld = std::exchange(m_pFocus, pSurface);
    for (wl_resource* pKeyboard : m_vKeyboards) {
        if (pOld) wl_keyboard_send_leave(pKeyboard, NextSerial(), pOld->pResource);
        if (pSurface) wl_keyboard_send_enter(pKeyboard, NextSerial(), pSurface->pResource, &keys);
    }
    if (pOld) Configure(*pOld, false);
    if (pSurface) Configure(*pSurface, true);
    Flush();
}

void CCompositor::Key(uint32_t uKey, bool bDown) {
    const CLock lock = Lock();
    for (wl_resource* pKeyboard : m_vKeyboards) {
        wl_keyboard_send_key(pKeyboard, NextSerial(), 0, uKey, bDown ? 1 : 0);
        if (uKey == KEY_CONTROL)
            wl_keyboard_send_modifiers(pKeyboard, NextSerial(), bDown ? CONTROL_MASK : 0, 0, 0, 0);
    }
    Flush();
}
