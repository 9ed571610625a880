#include "system/environment/Locations.h"

#include "core/Base/Text.h"
#include "system/environment/Variables.h"

#include <filesystem>
#include <vector>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The variable's value when it is an absolute path, else empty.
std::string AbsoluteVariable(const char* pszName) {
    const std::string strValue = GetVariable(pszName);
    return strValue.starts_with('/') ? strValue : std::string();
}

std::string HomeOfUser() {
    constexpr size_t ENTRY_BYTES = 16384;
    std::vector<char> vBuffer(ENTRY_BYTES);
    passwd entry{};
    passwd* pFound = nullptr;
    if (getpwuid_r(getuid(), &entry, vBuffer.data(), vBuffer.size(), &pFound) != 0 || !pFound) return {};
    return pFound->pw_dir && *pFound->pw_dir == '/' ? pFound->pw_dir : std::string();
}

// The folder that the variable names, else the one in the home folder.
std::wstring FindFolder(const char* pszVariable, const char* pszInHome) {
    std::string strPath = AbsoluteVariable(pszVariable);
    if (strPath.empty()) {
        std::string strHome = AbsoluteVariable("HOME");
        if (strHome.empty()) strHome = HomeOfUser();
        if (strHome.empty()) return {};
        strPath = strHome + pszInHome;
    }
    while (strPath.size() > 1 && strPath.ends_with('/')) strPath.pop_back();
    return FromUtf8(strPath);
}

void MakeFolders(const std::filesystem::path& path) {
    if (path.empty() || mkdir(path.c_str(), 0700) == 0 || errno != ENOENT || !path.has_relative_path())
        return;
    MakeFolders(path.parent_path());
    mkdir(path.c_str(), 0700);
}

} // namespace

const char* const CLocations::APP_DATA_VARIABLE = "XDG_CONFIG_HOME";

std::wstring CLocations::GetAppData() { return FindFolder(APP_DATA_VARIABLE, "/.config"); }
std::wstring CLocations::GetUserData() { return FindFolder("XDG_DATA_HOME", "/.local/share"); }

void CLocations::MakeFolder(const std::wstring& strPath) { MakeFolders(ToUtf8(strPath)); }
