#include "system/environment/posix/UserFolder.h"

#include "core/Base/Text.h"
#include "system/environment/Variables.h"

#include <vector>

#include <pwd.h>
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

} // namespace

std::wstring FindUserFolder(const char* pszVariable, const char* pszInHome) {
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
