#include "system/files/OutputFile.h"

#include "core/Base/Text.h"
#include "system/files/Descriptor.h"
#include "system/files/FileStore.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

bool WriteAll(int fd, std::string_view strBytes) {
    while (!strBytes.empty()) {
        const ssize_t n = write(fd, strBytes.data(), strBytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        strBytes.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

bool WriteOver(const std::filesystem::path& path, std::string_view strBytes) {
    const CDescriptor fd(open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NONBLOCK));
    if (fd < 0) return false;
    if (WriteAll(fd, strBytes)) return true;
    // Nothing is better than a part; that this fails too cannot be helped.
    return ftruncate(fd, 0) != 0 && false;
}

} // namespace

CFileOutcome WriteOutput(const std::filesystem::path& path, std::string_view strBytes) {
    CFileStore files;
    const CFileOutcome outcome = files.Replace(FromUtf8(path.native()), strBytes);
    return outcome || WriteOver(path, strBytes) ? CFileOutcome() : outcome;
}
