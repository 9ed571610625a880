#include "system/files/FileStore.h"

#include "core/Base/Text.h"
#include "system/files/Descriptor.h"
#include "system/files/FileErrors.h"
#include "system/files/FileLock.h"
#include "system/files/FileRights.h"
#include "system/files/NewFile.h"
#include "system/files/SafetyCopy.h"

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds LOCK_WAIT{5000};
constexpr int MAX_LINKS = 40;

// Follows links to the file that a path means; the file need not exist.
fs::path ResolveLinks(fs::path path) {
    std::error_code error;
    for (int i = 0; i < MAX_LINKS && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        const fs::path pathTarget = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / pathTarget;
    }
    return path;
}

// Opens a plain file and reads its status; negative when it cannot be opened.
CDescriptor OpenPlain(const fs::path& path, struct stat& status) {
    // Opening a pipe would wait for its other end.
    CDescriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (fd < 0) return fd;
    if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) return fd;
    errno = ENXIO;
    return CDescriptor();
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

// Returns 0 or the error number.
int ReadWhole(const fs::path& path, std::string& strBytes) {
    strBytes.clear();
    struct stat status {};
    const CDescriptor fd = OpenPlain(path, status);
    if (fd < 0) return errno;
    // The size is only a hint, because the file may be growing; one byte more detects its end.
    size_t nDone = 0;
    strBytes.resize(static_cast<size_t>(status.st_size) + 1);
    for (;;) {
        const ssize_t n = read(fd, strBytes.data() + nDone, strBytes.size() - nDone);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return errno;
        if (n == 0) break;
        nDone += static_cast<size_t>(n);
        if (nDone == strBytes.size()) strBytes.resize(strBytes.size() * 2);
    }
    strBytes.resize(nDone);
    return 0;
}

// True when the folder does not allow a new file or a rename.
bool IsFolderClosed(int nError) {
    return nError == EACCES || nError == EPERM || nError == EROFS || nError == EBUSY;
}

// `path` is no link. Without `pSafety` nothing is written in place.
CFileOutcome ReplaceFile(const fs::path& path, const TFillBytes& fnFill, CSafetyCopy* pSafety = nullptr) {
    struct stat status {};
    const bool bOld = stat(path.c_str(), &status) == 0;
    if (!bOld && errno != ENOENT) return WriteFailure(errno);
    if (bOld ? !S_ISREG(status.st_mode) : path.filename().empty()) return EFileFailure::NotPlain;
    if (bOld && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        return errno == EROFS ? EFileFailure::ReadOnlyDisk : EFileFailure::NoWriteRight;
    CNewFile file(path, bOld ? S_IRUSR | S_IWUSR : 0666);
    if (file.IsOpen()) {
        if (!fnFill([&](std::string_view strBytes) { return file.Write(strBytes); }))
            return file.GetError() != 0 ? WriteFailure(file.GetError()) : EFileFailure::Unknown;
        if (bOld && !KeepRights(path, status, file.GetHandle())) return WriteFailure(errno);
        if (file.TakePlace()) return {};
    }
    if (bOld && pSafety && IsFolderClosed(file.GetError())) return pSafety->WriteOver(fnFill);
    return WriteFailure(file.GetError());
}

} // namespace

TFileBytes CFileStore::Read(const std::wstring& strPath) {
    std::string strBytes;
    if (const int nError = ReadWhole(ToUtf8(strPath), strBytes)) return ReadFailure(nError);
    return strBytes;
}

TOpenedFile CFileStore::Open(const std::wstring& strPath) {
    struct stat status {};
    CDescriptor fd = OpenPlain(ToUtf8(strPath), status);
    if (fd < 0) return ReadFailure(errno);
    return std::make_unique<CFileReader>(std::move(fd), static_cast<uint64_t>(status.st_size));
}

CFileOutcome CFileStore::ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) {
    const fs::path path = ResolveLinks(ToUtf8(strPath));
    if (!m_pLocations) return ReplaceFile(path, fnFill);
    CSafetyCopy safety(path, *m_pLocations);
    const CFileOutcome outcome = ReplaceFile(path, fnFill, &safety);
    if (outcome) safety.Drop();
    return outcome;
}

bool CFileStore::Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) {
    // Resolved first, so that two names of one file share the lock.
    const fs::path path = ResolveLinks(ToUtf8(strPath));
    if (path.filename().empty()) return false;
    const CFileLock lock(path.native(), LOCK_WAIT);
    if (!lock.IsLocked()) return false;
    std::string strBytes;
    const int nError = ReadWhole(path, strBytes);
    if ((nError != 0 && nError != ENOENT) || !edit(strBytes)) return false;
    return static_cast<bool>(
        ReplaceFile(path, [&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); }));
}
