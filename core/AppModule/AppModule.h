// The application module: the platform of the session and the message loop of each thread. It lives as long
// as the program or plug-in module that contains it.
#pragma once

#include "core/AppModule/MessageLoop.h"
#include "core/Platform/Platform.h"

#include <boost/container/flat_map.hpp>
#include <boost/container/small_vector.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <mutex>
#include <thread>

class CIniConfig;
class CRecovery;
class IWindow;

class CAppModule : boost::noncopyable {
public:
    CAppModule();
    ~CAppModule();

    /// Sets the platform for a session; null ends it. The record must outlive the session. On bad_alloc
    /// nothing changes.
    void SetPlatform(const TPlatform* pPlatform);
    /// The platform of the running session; a self-check fails when no session runs.
    const TPlatform& GetPlatform() const;
    bool HasPlatform() const { return m_pPlatform != nullptr; }

    /// The settings store of the platform; a self-check fails when no session runs.
    CIniConfig& GetSettings() const;
    /// The session's snapshot manager; a self-check fails when no session runs.
    CRecovery& GetRecovery() const;

    /// Registers the calling thread's loop, replacing an earlier one. Returns false, without registering
    /// it, when the table cannot grow.
    bool AddMessageLoop(const boost::shared_ptr<CMessageLoop>& spLoop);
    void RemoveMessageLoop();
    /// The calling thread's loop, null when there is none.
    boost::shared_ptr<CMessageLoop> GetMessageLoop() const;

    /// The main frame's window, owner of the error box; null while there is none.
    void SetMainWindow(IWindow* pWindow) { m_pMainWindow = pWindow; }
    IWindow* GetMainWindow() const { return m_pMainWindow; }

private:
    const TPlatform* m_pPlatform = nullptr;
    std::unique_ptr<CIniConfig> m_pSettings;
    std::unique_ptr<CRecovery> m_pRecovery;
    IWindow* m_pMainWindow = nullptr;
    mutable std::mutex m_mtxLoops; ///< protects the table; the only lock of the session
    /// Reserved for the usual number of sessions: a session whose loop is missing here does no idle work.
    boost::container::small_flat_map<std::thread::id, boost::shared_ptr<CMessageLoop>, 4> m_mapLoops;
};

extern CAppModule g_AppModule;

/// True in the plug-in module: a host owns the picture, so New, Open and Save are off and closing the last
/// canvas ends the session. Each executable links its own definition.
extern const bool g_bFilterBuild;
