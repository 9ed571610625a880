#include "system/files/NewFile.h"

#include <cerrno>
#include <random>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

constexpr int TRIES = 100;
/// Bytes of the old name that the new name keeps, few enough for the limit of every file system.
constexpr size_t KEPT_BYTES = 40;
constexpr size_t RANDOM_LETTERS = 6;

// The start of a name, not cut inside a UTF-8 character.
std::string BeginningOf(const std::string& strName) {
    size_t n = KEPT_BYTES;
    if (strName.size() <= n) return strName;
    while (n > 0 && (static_cast<unsigned char>(strName[n]) & 0xC0) == 0x80) --n;
    return strName.substr(0, n);
}

fs::path NewNameFor(const fs::path& path) {
    static constexpr char LETTERS[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string strName = BeginningOf(path.filename().native()) + '.';
    for (size_t i = 0; i < RANDOM_LETTERS; ++i) strName += LETTERS[random() % (sizeof LETTERS - 1)];
    return path.parent_path() / strName;
}

// Syncs the folder, so that a rename survives a power failure.
void SyncFolder(const fs::path& path) {
    const CDescriptor fd(open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd >= 0) fsync(fd);
}

CDescriptor MakeBeside(const fs::path& path, mode_t mode, fs::path& pathNew) {
    for (int n = 0;; ++n) {
        pathNew = NewNameFor(path);
        CDescriptor fd(open(pathNew.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (fd >= 0 || errno != EEXIST || n == TRIES) return fd;
    }
}

} // namespace

CNewFile::CNewFile(const fs::path& path, mode_t mode)
    : m_path(path), m_fd(MakeBeside(path, mode, m_pathNew)) {
    if (m_fd >= 0) return;
    Fail();
    m_pathNew.clear();
}

CNewFile::~CNewFile() {
    if (!m_pathNew.empty()) unlink(m_pathNew.c_str());
}

bool CNewFile::Fail() {
    if (m_nError == 0) m_nError = errno;
    return false;
}

bool CNewFile::Write(std::string_view strBytes) {
    while (!strBytes.empty()) {
        const ssize_t n = write(m_fd, strBytes.data(), strBytes.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return Fail();
        strBytes.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}

bool CNewFile::TakePlace() {
    if (fsync(m_fd) != 0 || rename(m_pathNew.c_str(), m_path.c_str()) != 0) return Fail();
    m_pathNew.clear();
    SyncFolder(m_path.parent_path());
    return true;
}
