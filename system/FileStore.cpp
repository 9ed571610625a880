#include "system/FileStore.h"

#include "core/Base/Text.h"
#include "system/FileLock.h"

#include <QSaveFile>
#include <QString>

#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds LOCK_WAIT{5000};
constexpr int MAX_LINKS = 40;

class CDescriptor : boost::noncopyable {
public:
    explicit CDescriptor(int fd) : m_fd(fd) {}
    ~CDescriptor() {
        if (m_fd >= 0) close(m_fd);
    }
    CDescriptor(CDescriptor&& other) : m_fd(std::exchange(other.m_fd, -1)) {}
    operator int() const { return m_fd; }

private:
    int m_fd;
};

// The file that a path means: links are followed to their end, which need not exist.
fs::path ResolveLinks(fs::path path) {
    std::error_code error;
    for (int i = 0; i < MAX_LINKS && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        const fs::path pathTarget = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / pathTarget;
    }
    return path;
}

enum class ERead { Whole, Missing, Failed };

// A plain file and what is known of it; negative when it cannot be opened.
CDescriptor OpenPlain(const fs::path& path, struct stat& status) {
    // Opening a pipe would wait for its other end.
    CDescriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (fd < 0) return fd;
    if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) return fd;
    errno = EINVAL;
    return CDescriptor(-1);
}

class CFileReader : public IFileReader {
public:
    CFileReader(CDescriptor fd, uint64_t uSize) : m_fd(std::move(fd)), m_uSize(uSize) {}
    uint64_t GetSize() const override { return m_uSize; }
    bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
        while (nLength > 0) {
            const ssize_t n = pread(m_fd, pTo, nLength, static_cast<off_t>(uFrom));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return false;
            pTo += n;
            uFrom += static_cast<uint64_t>(n);
            nLength -= static_cast<size_t>(n);
        }
        return true;
    }

private:
    CDescriptor m_fd;
    const uint64_t m_uSize;
};

ERead ReadWhole(const fs::path& path, std::string& strBytes) {
    strBytes.clear();
    struct stat status {};
    const CDescriptor fd = OpenPlain(path, status);
    if (fd < 0) return errno == ENOENT ? ERead::Missing : ERead::Failed;
    // The size is a hint only, the file may be growing; one byte more shows its end.
    size_t nDone = 0;
    strBytes.resize(static_cast<size_t>(status.st_size) + 1);
    for (;;) {
        const ssize_t n = read(fd, strBytes.data() + nDone, strBytes.size() - nDone);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return ERead::Failed;
        if (n == 0) break;
        nDone += static_cast<size_t>(n);
        if (nDone == strBytes.size()) strBytes.resize(strBytes.size() * 2);
    }
    strBytes.resize(nDone);
    return ERead::Whole;
}

// Makes a rename last through a power failure.
void SyncFolder(const fs::path& path) {
    const CDescriptor fd(open(path.empty() ? "." : path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd >= 0) fsync(fd);
}

// A file that another user or group owns stays theirs where the process may say so.
void KeepOwner(const fs::path& path, int fdNew) {
    struct stat statOld {};
    struct stat statNew {};
    if (stat(path.c_str(), &statOld) != 0 || fstat(fdNew, &statNew) != 0) return;
    if (statOld.st_uid == statNew.st_uid && statOld.st_gid == statNew.st_gid) return;
    // Changing the owner takes rights away for safety, so they are set again.
    if (fchown(fdNew, statOld.st_uid, statOld.st_gid) == 0) fchmod(fdNew, statOld.st_mode & 07777);
}

// `path` is no link.
bool ReplaceFile(const fs::path& path, const std::function<bool(const TWriteBytes&)>& fnFill) {
    std::error_code error;
    const fs::file_type type = fs::status(path, error).type();
    if (type != fs::file_type::regular && type != fs::file_type::not_found) return false;
    QSaveFile file(QString::fromStdString(path.native()));
    file.setDirectWriteFallback(false);
    const auto write = [&](std::string_view strBytes) {
        const auto cbBytes = static_cast<qint64>(strBytes.size());
        return file.write(strBytes.data(), cbBytes) == cbBytes;
    };
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !fnFill(write)) return false;
    KeepOwner(path, file.handle());
    // commit() flushes too, but does not tell when the disk refused.
    if (fsync(file.handle()) != 0 || !file.commit()) return false;
    SyncFolder(path.parent_path());
    return true;
}

} // namespace

std::optional<std::string> CFileStore::Read(const std::wstring& strPath) {
    std::string strBytes;
    if (ReadWhole(ToUtf8(strPath), strBytes) != ERead::Whole) return std::nullopt;
    return strBytes;
}

std::unique_ptr<IFileReader> CFileStore::Open(const std::wstring& strPath) {
    struct stat status {};
    CDescriptor fd = OpenPlain(ToUtf8(strPath), status);
    if (fd < 0) return nullptr;
    return std::make_unique<CFileReader>(std::move(fd), static_cast<uint64_t>(status.st_size));
}

bool CFileStore::ReplaceBy(const std::wstring& strPath,
                           const std::function<bool(const TWriteBytes&)>& fnFill) {
    return ReplaceFile(ResolveLinks(ToUtf8(strPath)), fnFill);
}

bool CFileStore::Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) {
    // Resolved first, so that two names of one file share the lock.
    const fs::path path = ResolveLinks(ToUtf8(strPath));
    if (path.filename().empty()) return false;
    const CFileLock lock(path.native(), LOCK_WAIT);
    if (!lock.IsLocked()) return false;
    std::string strBytes;
    return ReadWhole(path, strBytes) != ERead::Failed && edit(strBytes) &&
           ReplaceFile(path, [&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); });
}
