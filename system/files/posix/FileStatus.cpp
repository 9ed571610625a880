#include "system/files/FileStatus.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr int MAX_LINKS = 40;

} // namespace

std::optional<EFileKind> KindOf(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0)
        return S_ISREG(status.st_mode) ? EFileKind::Plain : EFileKind::Other;
    if (errno == ENOENT) return EFileKind::Missing;
    return std::nullopt;
}

std::optional<EFileFailure> WhyProtected(const fs::path& path) {
    if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0) return std::nullopt;
    return errno == EROFS ? EFileFailure::ReadOnlyDisk : EFileFailure::NoWriteRight;
}

bool IsOpenFolder(const fs::path& pathFolder) { return access(pathFolder.c_str(), W_OK) == 0; }

fs::path ResolveLinks(fs::path path) {
    std::error_code error;
    for (int i = 0; i < MAX_LINKS && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        const fs::path pathTarget = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / pathTarget;
    }
    return path;
}

std::optional<TFileId> FileIdOf(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return TFileId(status.st_dev, status.st_ino);
}
