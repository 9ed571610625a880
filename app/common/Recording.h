// Records a session if the user enabled it.
#pragma once

#include "session/recorder/Recorder.h"
#include "system/files/LineFile.h"

#include <optional>
#include <string>

class CIniConfig;

/// The environment variable that passes the record's path from a program to the module that it loads.
constexpr char RECORD_VARIABLE[] = "VELLUMCRAFT_RECORD";

/// The path of the record: the variable's value, else the setting "Record" of section "Session". Empty for
/// no record.
std::wstring FindRecordPath(CIniConfig& config);

class CRecording : boost::noncopyable {
public:
    /// An empty path records nothing. The file is created when the session opens its window; a failure is
    /// reported in an error box. `platform` outlives this.
    CRecording(const TPlatform& platform, std::wstring strPath);
    ~CRecording();

    /// The platform to pass to the session.
    const TPlatform& GetPlatform() const { return m_recorder ? m_recorder->GetPlatform() : m_platform; }
    /// Records a script's line that bypasses the platform interface.
    void NoteLine(const std::string& strLine);

private:
    bool Write(std::string_view strLine);

    const TPlatform& m_platform;
    const std::wstring m_strPath;
    std::optional<CLineFile> m_file;
    std::optional<CRecorder> m_recorder;
};
