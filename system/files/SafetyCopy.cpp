#include "system/files/SafetyCopy.h"

#include "core/Base/Text.h"
#include "system/files/FileErrors.h"
#include "system/files/FileLock.h"
#include "system/files/FilePath.h"
#include "system/files/FileStore.h"
#include "system/files/OpenFile.h"
#include "system/files/SnapshotFiles.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds LOCK_WAIT{5000};
constexpr uint64_t PIECE = 1 << 18; ///< bytes in memory at a time

// FNV-1a of the path's bytes, which every process computes alike for a file.
uint64_t HashOf(const fs::path& path) {
    uint64_t uHash = 0xcbf29ce484222325u;
    for (const char ch : Utf8Of(path)) uHash = (uHash ^ static_cast<uint8_t>(ch)) * 0x100000001b3u;
    return uHash;
}

fs::path WholePath(const fs::path& path) {
    std::error_code error;
    fs::path pathWhole = fs::weakly_canonical(path, error);
    return error ? path : pathWhole;
}

// Copies the bytes from `uBegin` to `uEnd`; returns the reason of a failure.
std::optional<EFileFailure> CopyRange(const COpenFile& from, COpenFile& to, uint64_t uBegin, uint64_t uEnd) {
    std::vector<char> vBytes(static_cast<size_t>(uEnd > uBegin ? std::min(uEnd - uBegin, PIECE) : 0));
    for (uint64_t uAt = uBegin; uAt < uEnd;) {
        const auto nRead = from.ReadAt(uAt, vBytes.data(), static_cast<size_t>(std::min(uEnd - uAt, PIECE)));
        if (nRead && *nRead == 0) return EFileFailure::DiskError; // the copy has become shorter
        if (!nRead || !to.WriteAt(uAt, {vBytes.data(), *nRead})) return WriteFailure(LastFileError());
        uAt += *nRead;
    }
    return std::nullopt;
}

// Writes the part that extends the file first: if there is no room for it, the old bytes are unchanged.
CFileOutcome CopyOver(const fs::path& pathFrom, const fs::path& pathTo) {
    const COpenFile from(pathFrom, COpenFile::EAccess::Read);
    if (!from.IsOpen()) return WriteFailure(LastFileError());
    COpenFile to(pathTo, COpenFile::EAccess::InPlace);
    if (!to.IsOpen()) return WriteFailure(LastFileError());
    const auto uNew = from.GetSize();
    const auto uOld = to.GetSize();
    if (!uNew || !uOld) return WriteFailure(LastFileError());
    auto failure = CopyRange(from, to, *uOld, *uNew);
    if (!failure && !to.Flush()) failure = WriteFailure(LastFileError());
    if (failure) return to.SetSize(*uOld) ? *failure : EFileFailure::HalfWritten;
    if (CopyRange(from, to, 0, std::min(*uOld, *uNew)) || !to.SetSize(*uNew) || !to.Flush())
        return EFileFailure::HalfWritten;
    return {};
}

} // namespace

CSafetyCopy::CSafetyCopy(const fs::path& path, ILocations& locations)
    : m_path(WholePath(path)), m_locations(locations) {
    const fs::path pathFolder = SnapshotFiles::FindRecoveryFolder(locations);
    if (pathFolder.empty()) return;
    m_pathSession = pathFolder / SnapshotFiles::SessionName(HashOf(m_path));
    m_pathCopy = fs::path(m_pathSession) += std::string("-1") + SnapshotFiles::DOCUMENT;
    m_pathNote = fs::path(m_pathSession) += std::string("-1") + SnapshotFiles::NOTE;
}

CFileOutcome CSafetyCopy::Keep(const TFillBytes& fnFill) {
    const std::wstring strPath = TextOf(m_path);
    const TSnapshotNote note{strPath, std::wstring(FileNameOf(strPath)), {}};
    CFileStore files;
    // The note comes first: without one the copy could not be assigned to its file.
    const CFileOutcome outcome = files.Replace(TextOf(m_pathNote), SnapshotFiles::NoteText(note, true));
    return outcome ? files.ReplaceBy(TextOf(m_pathCopy), fnFill) : outcome;
}

CFileOutcome CSafetyCopy::WriteOver(const TFillBytes& fnFill) {
    if (m_pathSession.empty()) return EFileFailure::NoSafetyCopy;
    SnapshotFiles::MakeRecoveryFolder(m_locations);
    const CFileLock lock(m_pathSession, LOCK_WAIT);
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
