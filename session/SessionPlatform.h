// The outside of the application for a session that a script plays.
#pragma once

#include "core/Platform/Platform.h"
#include "session/Script.h"
#include "session/SessionLog.h"

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <memory>
#include <string>

class CSessionSnapshots;
class CSessionWindows;
class CVirtualClock;
class IMessageQueue;
class ISnapshotStore;

/// What a session is made from. Everything outlives the session.
struct TSessionParts {
    IFileStore& files;
    ILocations& locations;
    IModules& modules;
    IImageCodecs& codecs;

    /// Real windows that show the session's own, and the queue that they post to; both or none.
    IWindowFactory* pWindows = nullptr;
    IMessageQueue* pQueue = nullptr;
    /// Null for a clipboard that nobody else sees.
    IClipboard* pClipboard = nullptr;
    /// Null for snapshots in memory.
    ISnapshotStore* pSnapshots = nullptr;
    /// Writes a picture of the real main window; false when that fails. Without real windows the active
    /// canvas window's pixels are saved instead.
    boost::function<bool(const std::wstring&)> fnScreenshot = {};
};

/// One session. It becomes the queue's pump for as long as it lives. One thread.
class CSessionPlatform : boost::noncopyable {
public:
    /// Plays the lines at the script's head that prepare the session. Without a script the main window is
    /// closed as soon as there is nothing else to do.
    explicit CSessionPlatform(const TSessionParts& parts, TScript script = {});
    ~CSessionPlatform();

    const TPlatform& GetPlatform() const;
    /// What went wrong first, "FILE:LINE: reason", empty when nothing did. Asked after the session: an error
    /// box that the script did not expect and steps that were not reached are failures too.
    std::string GetFailure() const;

    /// Hears every line of the script that acts past the platform's seam, before it is played.
    void SetWatch(boost::function<void(const std::string&)> fnWatch);

    const CSessionLog& GetLog() const;
    CVirtualClock& GetClock();
    /// The session's own windows.
    CSessionWindows& GetWindows();
    /// The snapshots in memory; empty when the session was given a store.
    const CSessionSnapshots& GetSnapshots() const;

private:
    struct TParts;
    std::unique_ptr<TParts> m_pParts;
};
