// A session that is recorded when the user wants it.
#pragma once

#include "session/Recorder.h"
#include "system/LineFile.h"

#include <optional>
#include <string>

class CIniConfig;

/// The variable by which a program tells the module it loads where to record.
constexpr char RECORD_VARIABLE[] = "VELLUMCRAFT_RECORD";

/// Where sessions are recorded: what the variable says, else the setting "Record" of section "Session". Empty
/// for nowhere.
std::wstring FindRecordPath(CIniConfig& config);

class CRecording : boost::noncopyable {
public:
    /// An empty path records nothing. The file is begun when the session opens its window; that it cannot be
    /// is told by an error box. `platform` outlives this.
    CRecording(const TPlatform& platform, std::wstring strPath);
    ~CRecording();

    /// What the session is to be given.
    const TPlatform& GetPlatform() const { return m_recorder ? m_recorder->GetPlatform() : m_platform; }
    bool IsOn() const { return m_recorder.has_value(); }
    /// A script's line that acts past the platform's seam.
    void NoteLine(const std::string& strLine);

private:
    bool Write(std::string_view strLine);

    const TPlatform& m_platform;
    const std::wstring m_strPath;
    std::optional<CLineFile> m_file;
    std::optional<CRecorder> m_recorder;
};
