// The platform of the application for a session that a script plays.
#pragma once

#include "core/Platform/Platform.h"
#include "session/scripts/Script.h"
#include "session/seam/SessionLog.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <memory>
#include <string>

class CSessionManual;
class CSessionSnapshots;
class CSessionWindows;
class CVirtualClock;
class IMessageQueue;
class ISnapshotStore;

/// The parts of a session. All of them outlive the session.
struct TSessionParts {
    IFileStore& files;
    ILocations& locations;
    IModules& modules;
    IImageCodecs& codecs;

    /// Real windows that show the session's own, and the queue that they post to; both or none.
    IWindowFactory* pWindows = nullptr;
    IMessageQueue* pQueue = nullptr;
    /// Null for a private clipboard.
    IClipboard* pClipboard = nullptr;
    /// Null for snapshots in memory.
    ISnapshotStore* pSnapshots = nullptr;
    /// Saves a picture of the real main window; false when that fails. Without real windows the active
    /// canvas window's pixels are saved instead.
    boost::function<bool(const std::wstring&)> fnScreenshot = {};
};

/// One session. It is the queue's pump for as long as it lives. One thread.
class CSessionPlatform : boost::noncopyable {
public:
    /// Plays the lines at the script's head that prepare the session. Without a script the main window is
    /// closed as soon as the session is idle.
    explicit CSessionPlatform(const TSessionParts& parts, TScript script = {});
    ~CSessionPlatform();

    const TPlatform& GetPlatform() const;
    /// The first failure, "FILE:LINE: reason", empty for none. Called after the session: an unexpected
    /// error box and steps that were not reached are failures too.
    std::string GetFailure() const;

    /// `fnWatch` is called with every script line that bypasses the platform interface, before it is
    /// played.
    void SetWatch(boost::function<void(const std::string&)> fnWatch);

    const CSessionLog& GetLog() const;
    CVirtualClock& GetClock();
    /// The session's own windows.
    CSessionWindows& GetWindows();
    CSessionManual& GetManual();
    /// The snapshots in memory; empty when the session was given a store.

private:
    struct TParts;
    std::unique_ptr<TParts> m_pParts;
};
