// Records a session: a layer between the application and any platform that writes external input as a
// script that reproduces it.
#pragma once

#include "core/Platform/Platform.h"
#include "session/recorder/Record.h"

#include <boost/noncopyable.hpp>

#include <memory>
#include <string>

/// Lives as long as the session. One thread. A line is written before its event is handled, so that the
/// record of a crashed session includes the cause.
class CRecorder : boost::noncopyable {
public:
    /// The record starts with the session's main window. `platform` outlives the recorder.
    CRecorder(const TPlatform& platform, TWriteLine fnWrite);
    ~CRecorder();

    /// The platform to pass to the application.
    const TPlatform& GetPlatform() const;
    /// Records a script's line that bypasses the platform interface, before it is played.
    void NoteLine(const std::string& strLine);
    /// True when a line could not be written; the record ends there.
    bool HasFailed() const;

private:
    struct TParts;
    std::unique_ptr<TParts> m_pParts;
};
