#include "system/files/PutInPlace.h"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// Syncs the folder, so that a rename survives a power failure.
void SyncFolder(const fs::path& path) {
    const int fd = open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

} // namespace

bool PutInPlace(COpenFile& file, const fs::path& pathNew, const fs::path& path, bool) {
    if (rename(pathNew.c_str(), path.c_str()) != 0) return false;
    file.Close();
    SyncFolder(path.parent_path());
    return true;
}
