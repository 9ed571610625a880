// A Wayland compositor without a screen, on a thread of its own: it keeps the pictures of its clients'
// windows and plays a seat's events to them.
#pragma once

#include "tests/support/TempFolder.h"

#include <wayland-server.h>

#include <QImage>

#include <boost/noncopyable.hpp>

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class CTestTablet;

/// A client's surface. Only to be read under the compositor's lock.
struct TSurface {
    wl_resource* pResource = nullptr;
    wl_resource* pXdg = nullptr;      ///< null for surfaces that are no windows
    wl_resource* pToplevel = nullptr; ///< null for popups
    wl_resource* pBuffer = nullptr;   ///< attached by the next commit
    bool bConfigured = false;
    int nScale = 1;
    std::vector<wl_resource*> vFrames; ///< callbacks of the next commit
    std::string strTitle, strAppId;
    QImage picture; ///< of the last commit, in buffer pixels
    /// When set, gets each picture instead, which is not copied.
    std::function<void(const QImage&)> fnPainted;
};

class CCompositor : boost::noncopyable {
public:
    using CLock = std::unique_lock<std::recursive_mutex>;

    /// Starts and names itself in the environment, so that programs started from now on find it. Windows'
    /// scale is `nScale`.
    explicit CCompositor(int nScale = 1);
    ~CCompositor();

    /// Other threads hold this while they read surfaces or send events.
    CLock Lock() { return CLock(m_mutex); }
    /// Sends what was written.
    void Flush() { wl_display_flush_clients(m_pDisplay); }

    /// The window whose title contains `strTitle`; null for none.
    TSurface* FindWindow(const std::string& strTitle);
    CTestTablet& GetTablet() { return *m_pTablet; }
    uint32_t NextSerial() { return wl_display_next_serial(m_pDisplay); }

    /// Asks the client to answer when it has handled all that was sent before.
    void Ping();
    bool IsAnswered() const { return m_bAnswered; }

    /// The programs whose windows it can show.
    size_t CountClients() {
        const CLock lock = Lock();
        return m_vShells.size();
    }
    /// The tokens by which clients have asked for their windows to come to the front.
    std::vector<std::string> GetActivations() {
        const CLock lock = Lock();
        return m_vActivations;
    }

    /// Gives the keyboard to a window, or takes it away with null. `bActive`: the window is shown as the
    /// active one.
    void FocusKeyboard(TSurface* pSurface);
    /// `uKey`: an evdev code of the keymap, which has KEY_CONTROL and KEY_Z.
    void Key(uint32_t uKey, bool bDown);
    static constexpr uint32_t KEY_CONTROL = 29, KEY_Z = 44;

private:
    friend struct CProtocol; ///< the requests of clients

    void MakeGlobals();
    void Work();
    void Configure(TSurface& surface, bool bActive);

    CTempFolder m_folder;
    int m_nScale;
    wl_display* m_pDisplay = nullptr;
    std::recursive_mutex m_mutex;
    std::list<TSurface> m_lstSurfaces;
    std::vector<wl_resource*> m_vShells, m_vKeyboards;
    std::vector<std::string> m_vActivations;
    TSurface* m_pFocus = nullptr;
    std::atomic<bool> m_bAnswered{true}, m_bEnds{false};
    std::unique_ptr<CTestTablet> m_pTablet;
    std::thread m_thread;
};
