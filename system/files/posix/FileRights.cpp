#include "system/files/FileRights.h"

#include "system/files/posix/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr char ACCESS_LIST[] = "system.posix_acl_access";
constexpr size_t MAX_ATTRIBUTE = 65536; ///< bytes of a value, and of all names

// An access list is a 4-byte version and entries of 8 bytes: tag, rights, id; low byte first.
constexpr size_t LIST_HEADER = 4;
constexpr size_t LIST_ENTRY = 8;
constexpr char TAG_OWNING_GROUP = 4;

// True for an attribute that is about the old bytes (a signature) or must not be copied.
bool IsLeftBehind(std::string_view strName) {
    return strName == ACCESS_LIST || strName == "security.ima" || strName == "security.evm" ||
           strName == "security.capability";
}

std::optional<std::string> ReadAttribute(const fs::path& path, const char* pszName) {
    std::string strValue(MAX_ATTRIBUTE, '\0');
    const ssize_t n = getxattr(path.c_str(), pszName, strValue.data(), strValue.size());
    if (n < 0) return std::nullopt;
    strValue.resize(static_cast<size_t>(n));
    return strValue;
}

std::vector<std::string> ListAttributes(const fs::path& path) {
    std::string strNames(MAX_ATTRIBUTE, '\0');
    const ssize_t n = listxattr(path.c_str(), strNames.data(), strNames.size());
    std::vector<std::string> vNames;
    // Every name ends with a zero byte.
    for (size_t nAt = 0; n > 0 && nAt < static_cast<size_t>(n); nAt += vNames.back().size() + 1)
        vNames.emplace_back(strNames.c_str() + nAt);
    return vNames;
}

bool WriteAttribute(int fd, const char* pszName, const std::string& strValue) {
    return fsetxattr(fd, pszName, strValue.data(), strValue.size(), 0) == 0;
}

// Skips attributes that the user may not set or the file system does not support.
bool CopyAttributes(const fs::path& path, int fdNew) {
    for (const std::string& strName : ListAttributes(path)) {
        if (IsLeftBehind(strName)) continue;
        const auto strValue = ReadAttribute(path, strName.c_str());
        if (strValue && !WriteAttribute(fdNew, strName.c_str(), *strValue) &&
            (errno == ENOSPC || errno == EDQUOT))
            return false;
    }
    return true;
}

void TakeRightsOfOwningGroup(std::string& strList) {
    for (size_t nAt = LIST_HEADER; nAt + LIST_ENTRY <= strList.size(); nAt += LIST_ENTRY)
        if (strList[nAt] == TAG_OWNING_GROUP && strList[nAt + 1] == 0)
            std::fill_n(strList.begin() + static_cast<ptrdiff_t>(nAt) + 2, 2, '\0');
}

} // namespace

bool KeepRights(const fs::path& path, const COpenFile& fileNew) {
    const int fdNew = DescriptorOf(fileNew);
    struct stat status {};
    struct stat statNew {};
    if (stat(path.c_str(), &status) != 0 || fstat(fdNew, &statNew) != 0) return false;
    // Attributes come first, while the file is still the user's own and writable.
    if (!CopyAttributes(path, fdNew)) return false;
    const bool bBoth = (statNew.st_uid == status.st_uid && statNew.st_gid == status.st_gid) ||
                       fchown(fdNew, status.st_uid, status.st_gid) == 0;
    const bool bOwner = bBoth || statNew.st_uid == status.st_uid;
    const bool bGroup =
        bBoth || statNew.st_gid == status.st_gid || fchown(fdNew, static_cast<uid_t>(-1), status.st_gid) == 0;
    mode_t mode = status.st_mode & 07777;
    if (!bOwner) mode &= ~static_cast<mode_t>(S_ISUID);
    if (!bGroup) mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG);
    auto strList = ReadAttribute(path, ACCESS_LIST);
    if (!strList) {
        // The folder may have set a default list.
        fremovexattr(fdNew, ACCESS_LIST);
        fchmod(fdNew, mode);
        return true;
    }
    if (!bGroup) TakeRightsOfOwningGroup(*strList);
    // With a list the group's bits are its mask: only the list sets them.
    fchmod(fdNew, mode & ~static_cast<mode_t>(S_IRWXG));
    WriteAttribute(fdNew, ACCESS_LIST, *strList);
    return true;
}
