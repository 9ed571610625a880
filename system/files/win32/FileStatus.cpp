#include "system/files/FileStatus.h"

#include "system/files/win32/FileHandle.h"

namespace fs = std::filesystem;

namespace {

constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Opens a file or folder for questions only.
COpenHandle OpenToAsk(const fs::path& path) {
    return COpenHandle(CreateFileW(LongPathOf(path).c_str(), FILE_READ_ATTRIBUTES, SHARED, nullptr,
                                   OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

} // namespace

std::optional<EFileKind> KindOf(const fs::path& path) {
    if (HasLongName(path)) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return std::nullopt;
    }
    const DWORD uAttributes = GetFileAttributesW(LongPathOf(path).c_str());
    if (uAttributes == INVALID_FILE_ATTRIBUTES) {
        // A missing folder is found out when the new file is created in it.
        const DWORD uError = GetLastError();
        if (uError == ERROR_FILE_NOT_FOUND || uError == ERROR_PATH_NOT_FOUND) return EFileKind::Missing;
        return std::nullopt;
    }
    const bool bPlain = (uAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
    return bPlain ? EFileKind::Plain : EFileKind::Other;
}

std::optional<EFileFailure> WhyProtected(const fs::path& path) {
    const fs::path whole = LongPathOf(path);
    const DWORD uAttributes = GetFileAttributesW(whole.c_str());
    if (uAttributes != INVALID_FILE_ATTRIBUTES && (uAttributes & FILE_ATTRIBUTE_READONLY) != 0)
        return EFileFailure::NoWriteRight;
    const COpenHandle handle(
        CreateFileW(whole.c_str(), FILE_WRITE_DATA, SHARED, nullptr, OPEN_EXISTING, 0, nullptr));
    // Another program may have the file open; whether it can be replaced shows later.
    if (handle.IsOpen() || GetLastError() == ERROR_SHARING_VIOLATION) return std::nullopt;
    return GetLastError() == ERROR_WRITE_PROTECT ? EFileFailure::ReadOnlyDisk : EFileFailure::NoWriteRight;
}

bool IsOpenFolder(const fs::path& pathFolder) {
    // The right to add files; the read-only attribute of folders means nothing.
    return COpenHandle(CreateFileW(LongPathOf(pathFolder).c_str(), FILE_ADD_FILE, SHARED, nullptr,
                                   OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr))
        .IsOpen();
}

fs::path ResolveLinks(fs::path path) {
    const DWORD uAttributes = GetFileAttributesW(LongPathOf(path).c_str());
    if (uAttributes == INVALID_FILE_ATTRIBUTES || (uAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return path;
    const COpenHandle handle = OpenToAsk(path);
    if (!handle.IsOpen()) return path;
    std::wstring strFinal(GetFinalPathNameByHandleW(handle.Get(), nullptr, 0, 0), L'\0');
    strFinal.resize(
        GetFinalPathNameByHandleW(handle.Get(), strFinal.data(), static_cast<DWORD>(strFinal.size()), 0));
    return strFinal.empty() ? path : fs::path(strFinal);
}

std::optional<TFileId> FileIdOf(const fs::path& path) {
    const COpenHandle handle = OpenToAsk(path);
    BY_HANDLE_FILE_INFORMATION info{};
    if (!handle.IsOpen() || !GetFileInformationByHandle(handle.Get(), &info)) return std::nullopt;
    return TFileId(info.dwVolumeSerialNumber, uint64_t{info.nFileIndexHigh} << 32 | info.nFileIndexLow);
}
