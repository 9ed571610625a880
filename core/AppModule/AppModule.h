// The application module: the outside that it was given, the message loop of each thread. It lives as long as
// the program or plug-in module that holds it.
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

    /// Gives the application its outside for a session, null at its end. The record outlives the session.
    /// Raises bad_alloc and leaves all as it was.
    void SetPlatform(const TPlatform* pPlatform);
    /// The outside; a self-check fails when no session runs.
    const TPlatform& GetPlatform() const;
    bool HasPlatform() const { return m_pPlatform != nullptr; }

    /// The settings store of the platform; a self-check fails when no session runs.
    CIniConfig& GetSettings() const;
    /// The session's keeper of snapshots; a self-check fails when no session runs.
    CRecovery& GetRecovery() const;

    /// Enters the calling thread's loop in the table, replacing an earlier one. False when the table cannot
    /// grow, which leaves the loop unregistered.
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
    mutable std::mutex m_mtxLoops; ///< the only lock of the session around its table
    /// With room for every session that there is as a rule: one whose loop is missing here does no idle work.
    boost::container::small_flat_map<std::thread::id, boost::shared_ptr<CMessageLoop>, 4> m_mapLoops;
};

extern CAppModule g_AppModule;

/// True in the plug-in module: a host owns the picture, so New, Open and Save are off and closing the last
/// canvas ends the session. Each executable links its own definition.
extern const bool g_bFilterBuild;
