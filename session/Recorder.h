// Records a session: stands between the application and any platform, and writes what comes from outside as
// a script that does the same.
#pragma once

#include "core/Platform/Platform.h"
#include "session/Record.h"

#include <boost/noncopyable.hpp>

#include <memory>
#include <string>

/// Lives as long as the session. One thread. A line is written before what it tells of is handled, so that a
/// session that breaks off has recorded the cause.
class CRecorder : boost::noncopyable {
public:
    /// The session has not begun; its main window will begin the record. `platform` outlives the recorder.
    CRecorder(const TPlatform& platform, TWriteLine fnWrite);
    ~CRecorder();

    /// What the application is to be given.
    const TPlatform& GetPlatform() const;
    /// A script's line that acts past the platform's seam, before it is played.
    void NoteLine(const std::string& strLine);
    /// True when a line could not be written; the record ends there.
    bool HasFailed() const;

private:
    struct TParts;
    std::unique_ptr<TParts> m_pParts;
};
