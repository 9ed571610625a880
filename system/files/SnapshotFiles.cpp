#include "system/files/SnapshotFiles.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "core/IniConfig/IniText.h"
#include "core/Platform/Files.h"
#include "system/files/FilePath.h"
#include "system/files/PrivateFolder.h"

#include <boost/date_time/c_time.hpp>

#include <ctime>

namespace {

namespace fs = std::filesystem;

// Encodes line breaks, which a path may hold but a profile file may not, and the escape character as %XX.
std::string Escaped(const std::wstring& strText) {
    std::string strEscaped;
    for (const char ch : ToUtf8(strText)) {
        if (ch == '\n')
            strEscaped += "%0A";
        else if (ch == '\r')
            strEscaped += "%0D";
        else if (ch == '%')
            strEscaped += "%25";
        else
            strEscaped += ch;
    }
    return strEscaped;
}

std::string PresentTime() {
    const std::time_t time = std::time(nullptr);
    std::tm parts{};
    char szTime[32];
    // The parts are in the system's own buffer if it has one, not in this one.
    const std::tm* pParts = boost::date_time::c_time::localtime(&time, &parts);
    return {szTime, std::strftime(szTime, sizeof szTime, "%Y-%m-%d %H:%M", pParts)};
}

} // namespace

namespace SnapshotFiles {

std::string SessionName(uint64_t uNumber) {
    std::string strName(SESSION_DIGITS, '0');
    for (size_t i = SESSION_DIGITS; i-- > 0; uNumber >>= 4) strName[i] = "0123456789abcdef"[uNumber & 15];
    return strName;
}

fs::path FindRecoveryFolder(ILocations& locations) { return PathOf(FindProfilePath(locations, L"Recovery")); }

fs::path MakeRecoveryFolder(ILocations& locations) {
    const fs::path path = FindRecoveryFolder(locations);
    if (path.empty()) return path;
    locations.MakeFolder(TextOf(path));
    // Also for a folder that the user created or restored from a backup.
    MakePrivate(path);
    return path;
}

std::string NoteText(const TSnapshotNote& note, bool bFileCopy) {
    std::string strText;
    SetIniValue(strText, SECTION, "Path", Escaped(note.strPath));
    SetIniValue(strText, SECTION, "Title", Escaped(note.strTitle));
    SetIniValue(strText, SECTION, "Time", PresentTime());
    if (bFileCopy) SetIniValue(strText, SECTION, "Copy", "1");
    return strText;
}

void Delete(const fs::path& path) {
    std::error_code error;
    fs::remove(path, error);
}

} // namespace SnapshotFiles
