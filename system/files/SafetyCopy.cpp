#include "system/files/SafetyCopy.h"

#include "core/Base/Text.h"
#include "system/files/Descriptor.h"
#include "system/files/FileErrors.h"
#include "system/files/FileLock.h"
#include "system/files/FileStore.h"
#include "system/files/SnapshotFiles.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds LOCK_WAIT{5000};
constexpr off_t PIECE = 1 << 18; ///< bytes in memory at a time

// FNV-1a of the path's bytes, which every process computes alike for a file.
uint64_t HashOf(const fs::path& path) {
    uint64_t uHash = 0xcbf29ce484222325u;
    for (const char ch : path.native()) uHash = (uHash ^ static_cast<uint8_t>(ch)) * 0x100000001b3u;
    return uHash;
}

fs::path WholePath(const fs::path& path) {
    std::error_code error;
    fs::path pathWhole = fs::weakly_canonical(path, error);
    return error ? path : pathWhole;
}

bool CopyRange(int fdFrom, int fdTo, off_t nBegin, off_t nEnd) {
    std::vector<char> vBytes(static_cast<size_t>(std::clamp<off_t>(nEnd - nBegin, 0, PIECE)));
    for (off_t nAt = nBegin; nAt < nEnd;) {
        const size_t nWanted = static_cast<size_t>(std::min(nEnd - nAt, PIECE));
        const ssize_t nRead = pread(fdFrom, vBytes.data(), nWanted, nAt);
        if (nRead < 0 && errno == EINTR) continue;
        if (nRead == 0) errno = EIO; // the copy has become shorter
        if (nRead <= 0) return false;
        for (ssize_t nDone = 0; nDone < nRead;) {
            const ssize_t n =
                pwrite(fdTo, vBytes.data() + nDone, static_cast<size_t>(nRead - nDone), nAt + nDone);
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) return false;
            nDone += n;
        }
        nAt += nRead;
    }
    return true;
}

// Writes the part that extends the file first: if there is no room for it, the old bytes are unchanged.
CFileOutcome CopyOver(const fs::path& pathFrom, const fs::path& pathTo) {
    const CDescriptor fdFrom(open(pathFrom.c_str(), O_RDONLY | O_CLOEXEC));
    const CDescriptor fdTo(open(pathTo.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat statNew {};
    struct stat statOld {};
    if (fdFrom < 0 || fdTo < 0 || fstat(fdFrom, &statNew) != 0 || fstat(fdTo, &statOld) != 0)
        return WriteFailure(errno);
    if (!CopyRange(fdFrom, fdTo, statOld.st_size, statNew.st_size) || fsync(fdTo) != 0) {
        const EFileFailure failure = WriteFailure(errno);
        return ftruncate(fdTo, statOld.st_size) == 0 ? failure : EFileFailure::HalfWritten;
    }
    if (!CopyRange(fdFrom, fdTo, 0, std::min(statOld.st_size, statNew.st_size)) ||
        ftruncate(fdTo, statNew.st_size) != 0 || fsync(fdTo) != 0)
        return EFileFailure::HalfWritten;
    return {};
}

} // namespace

CSafetyCopy::CSafetyCopy(const fs::path& path, ILocations& locations)
    : m_path(WholePath(path)), m_locations(locations) {
    const fs::path pathFolder = SnapshotFiles::FindRecoveryFolder(locations);
    if (pathFolder.empty()) return;
    m_pathSession = pathFolder / SnapshotFiles::SessionName(HashOf(m_path));
    m_pathCopy = m_pathSession.native() + "-1" + SnapshotFiles::DOCUMENT;
    m_pathNote = m_pathSession.native() + "-1" + SnapshotFiles::NOTE;
}

CFileOutcome CSafetyCopy::Keep(const TFillBytes& fnFill) {
    const std::wstring strPath = FromUtf8(m_path.native());
    const TSnapshotNote note{strPath, std::wstring(FileNameOf(strPath)), {}};
    CFileStore files;
    // The note comes first: without one the copy could not be assigned to its file.
    const CFileOutcome outcome =
        files.Replace(FromUtf8(m_pathNote.native()), SnapshotFiles::NoteText(note, true));
    return outcome ? files.ReplaceBy(FromUtf8(m_pathCopy.native()), fnFill) : outcome;
}

CFileOutcome CSafetyCopy::WriteOver(const TFillBytes& fnFill) {
    if (m_pathSession.empty()) return EFileFailure::NoSafetyCopy;
    SnapshotFiles::MakeRecoveryFolder(m_locations);
    const CFileLock lock(m_pathSession.native(), LOCK_WAIT);
    if (!lock.IsLocked()) return EFileFailure::NoSafetyCopy;
    // An earlier attempt's copy is removed only after the file is complete.
    std::error_code error;
    const bool bHalf = fs::exists(m_pathCopy, error);
    const CFileOutcome kept = Keep(fnFill);
    if (!kept) return kept;
    const CFileOutcome outcome = CopyOver(m_pathCopy, m_path);
    if (outcome || (!bHalf && outcome.GetFailure() != EFileFailure::HalfWritten)) Drop();
    return outcome;
}

void CSafetyCopy::Drop() {
    if (m_pathSession.empty()) return;
    SnapshotFiles::Delete(m_pathCopy);
    SnapshotFiles::Delete(m_pathNote);
}
