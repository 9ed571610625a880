#include "system/files/OpenFile.h"

#include "system/files/posix/Descriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int FlagsOf(COpenFile::EAccess access) {
    switch (access) {
    case COpenFile::EAccess::Read:
        return O_RDONLY | O_NONBLOCK;
    case COpenFile::EAccess::Create:
        return O_WRONLY | O_CREAT | O_EXCL;
    case COpenFile::EAccess::Append:
        return O_WRONLY | O_CREAT | O_TRUNC | O_APPEND;
    case COpenFile::EAccess::InPlace:
        break;
    }
    return O_WRONLY | O_NOFOLLOW | O_NONBLOCK;
}

} // namespace

COpenFile::COpenFile(const std::filesystem::path& path, EAccess access, bool bPrivate)
    : m_nHandle(open(path.c_str(), FlagsOf(access) | O_CLOEXEC, bPrivate ? 0600 : 0666)) {
    struct stat status {};
    if (!IsOpen() || access != EAccess::Read ||
        (fstat(DescriptorOf(*this), &status) == 0 && S_ISREG(status.st_mode)))
        return;
    Close();
    errno = ENXIO;
}

void COpenFile::Close() {
    if (!IsOpen()) return;
    close(DescriptorOf(*this));
    m_nHandle = NONE;
}

std::optional<uint64_t> COpenFile::GetSize() const {
    struct stat status {};
    if (fstat(DescriptorOf(*this), &status) != 0) return std::nullopt;
    return static_cast<uint64_t>(status.st_size);
}

std::optional<size_t> COpenFile::ReadAt(uint64_t uFrom, void* pTo, size_t nLength) const {
    for (;;) {
        const ssize_t n = pread(DescriptorOf(*this), pTo, nLength, static_cast<off_t>(uFrom));
        if (n >= 0) return static_cast<size_t>(n);
        if (errno != EINTR) return std::nullopt;
    }
}

bool COpenFile::Write(std::string_view strBytes) {
    while (!strBytes.empty()) {
        const ssize_t n = write(DescriptorOf(*this), strBytes.data(), strBytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        strBytes.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

bool COpenFile::WriteAt(uint64_t uAt, std::string_view strBytes) {
    while (!strBytes.empty()) {
        const ssize_t n =
            pwrite(DescriptorOf(*this), strBytes.data(), strBytes.size(), static_cast<off_t>(uAt));
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        strBytes.remove_prefix(static_cast<size_t>(n));
        uAt += static_cast<uint64_t>(n);
    }
    return true;
}

bool COpenFile::SetSize(uint64_t uSize) {
    return ftruncate(DescriptorOf(*this), static_cast<off_t>(uSize)) == 0;
}

bool COpenFile::Flush() { return fsync(DescriptorOf(*this)) == 0; }
