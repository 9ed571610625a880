#include "system/files/FileStore.h"

#include "system/files/FileErrors.h"
#include "system/files/FileLock.h"
#include "system/files/FilePath.h"
#include "system/files/FileStatus.h"
#include "system/files/NewFile.h"
#include "system/files/OpenFile.h"
#include "system/files/SafetyCopy.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds LOCK_WAIT{5000};

class CFileReader : public IFileReader {
public:
    CFileReader(COpenFile file, uint64_t uSize) : m_file(std::move(file)), m_uSize(uSize) {}
    uint64_t GetSize() const override { return m_uSize; }
    bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
        while (nLength > 0) {
            const auto n = m_file.ReadAt(uFrom, pTo, nLength);
            if (!n || *n == 0) return false;
            pTo += *n;
            uFrom += *n;
            nLength -= *n;
        }
        return true;
    }

private:
    COpenFile m_file;
    const uint64_t m_uSize;
};

// Returns the failure's number.
std::optional<int> ReadWhole(const fs::path& path, std::string& strBytes) {
    strBytes.clear();
    const COpenFile file(path, COpenFile::EAccess::Read);
    if (!file.IsOpen()) return LastFileError();
    const auto uSize = file.GetSize();
    if (!uSize) return LastFileError();
    // The size is only a hint, because the file may be growing; one byte more detects its end.
    size_t nDone = 0;
    strBytes.resize(static_cast<size_t>(*uSize) + 1);
    for (;;) {
        const auto n = file.ReadAt(nDone, strBytes.data() + nDone, strBytes.size() - nDone);
        if (!n) return LastFileError();
        if (*n == 0) break;
        nDone += *n;
        if (nDone == strBytes.size()) strBytes.resize(strBytes.size() * 2);
    }
    strBytes.resize(nDone);
    return std::nullopt;
}

// `path` is no link. Without `pSafety` nothing is written in place.
CFileOutcome ReplaceFile(const fs::path& path, const TFillBytes& fnFill, CSafetyCopy* pSafety = nullptr) {
    const auto kind = KindOf(path);
    if (!kind) return WriteFailure(LastFileError());
    if (*kind == EFileKind::Other || path.filename().empty()) return EFileFailure::NotPlain;
    const bool bOld = *kind == EFileKind::Plain;
    if (const auto why = bOld ? WhyProtected(path) : std::nullopt) return *why;
    CNewFile file(path, bOld);
    if (file.IsOpen()) {
        if (!fnFill([&](std::string_view strBytes) { return file.Write(strBytes); }))
            return file.GetError() != 0 ? WriteFailure(file.GetError()) : EFileFailure::Unknown;
        if (file.TakePlace()) return {};
    }
    if (bOld && pSafety && IsFolderClosed(file.GetError())) return pSafety->WriteOver(fnFill);
    return WriteFailure(file.GetError());
}

} // namespace

TFileBytes CFileStore::Read(const std::wstring& strPath) {
    std::string strBytes;
    if (const auto nError = ReadWhole(PathOf(strPath), strBytes)) return ReadFailure(*nError);
    return strBytes;
}

TOpenedFile CFileStore::Open(const std::wstring& strPath) {
    COpenFile file(PathOf(strPath), COpenFile::EAccess::Read);
    const auto uSize = file.IsOpen() ? file.GetSize() : std::nullopt;
    if (!uSize) return ReadFailure(LastFileError());
    return std::make_unique<CFileReader>(std::move(file), *uSize);
}

CFileOutcome CFileStore::ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) {
    const fs::path path = ResolveLinks(PathOf(strPath));
    if (!m_pLocations) return ReplaceFile(path, fnFill);
    CSafetyCopy safety(path, *m_pLocations);
    const CFileOutcome outcome = ReplaceFile(path, fnFill, &safety);
    if (outcome) safety.Drop();
    return outcome;
}

bool CFileStore::Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) {
    // Resolved first, so that two names of one file share the lock.
    const fs::path path = ResolveLinks(PathOf(strPath));
    if (path.filename().empty()) return false;
    const CFileLock lock(path, LOCK_WAIT);
    if (!lock.IsLocked()) return false;
    std::string strBytes;
    const auto nError = ReadWhole(path, strBytes);
    if ((nError && !IsMissing(*nError)) || !edit(strBytes)) return false;
    return static_cast<bool>(
        ReplaceFile(path, [&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); }));
}
