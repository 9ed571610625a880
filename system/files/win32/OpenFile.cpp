#include "system/files/OpenFile.h"

#include "system/files/win32/FileHandle.h"

#include <algorithm>

namespace {

constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr size_t PIECE = size_t{1} << 30; ///< bytes of one call, whose counts have 32 bits

HANDLE Open(const wchar_t* pszPath, COpenFile::EAccess access) {
    switch (access) {
    case COpenFile::EAccess::Read:
        return CreateFileW(pszPath, GENERIC_READ, SHARED, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                           nullptr);
    case COpenFile::EAccess::Create:
        return CreateFileW(pszPath, GENERIC_WRITE, SHARED, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                           nullptr);
    case COpenFile::EAccess::Append:
        return CreateFileW(pszPath, GENERIC_WRITE, SHARED, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                           nullptr);
    case COpenFile::EAccess::InPlace:
        break;
    }
    return CreateFileW(pszPath, GENERIC_WRITE, SHARED, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT,
                       nullptr);
}

// A folder is refused like a file without rights.
DWORD PreciseError(const std::filesystem::path& path, DWORD uError) {
    if (HasLongName(path)) return ERROR_FILENAME_EXCED_RANGE;
    if (uError != ERROR_ACCESS_DENIED) return uError;
    const DWORD uAttributes = GetFileAttributesW(LongPathOf(path).c_str());
    const bool bFolder =
        uAttributes != INVALID_FILE_ATTRIBUTES && (uAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return bFolder ? ERROR_DIRECTORY : uError;
}

// An operation at a position. Such a call moves the file's own position as well.
OVERLAPPED At(uint64_t uAt) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(uAt);
    place.OffsetHigh = static_cast<DWORD>(uAt >> 32);
    return place;
}

} // namespace

// New files have the rights that their folder gives them, the user's own folders to the user alone.
COpenFile::COpenFile(const std::filesystem::path& path, EAccess access, bool)
    : m_nHandle(reinterpret_cast<intptr_t>(Open(LongPathOf(path).c_str(), access))) {
    // Names such as "nul" mean devices in every folder.
    if (IsOpen() && GetFileType(HandleOf(*this)) != FILE_TYPE_DISK) {
        Close();
        SetLastError(ERROR_INVALID_NAME);
    }
    if (!IsOpen()) SetLastError(PreciseError(path, GetLastError()));
}

void COpenFile::Close() {
    if (!IsOpen()) return;
    CloseHandle(HandleOf(*this));
    m_nHandle = NONE;
}

std::optional<uint64_t> COpenFile::GetSize() const {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(HandleOf(*this), &size)) return std::nullopt;
    return static_cast<uint64_t>(size.QuadPart);
}

std::optional<size_t> COpenFile::ReadAt(uint64_t uFrom, void* pTo, size_t nLength) const {
    OVERLAPPED place = At(uFrom);
    DWORD uRead = 0;
    if (!ReadFile(HandleOf(*this), pTo, static_cast<DWORD>(std::min(nLength, PIECE)), &uRead, &place) &&
        GetLastError() != ERROR_HANDLE_EOF)
        return std::nullopt;
    return uRead;
}

bool COpenFile::Write(std::string_view strBytes) {
    while (!strBytes.empty()) {
        DWORD uWritten = 0;
        if (!WriteFile(HandleOf(*this), strBytes.data(), static_cast<DWORD>(std::min(strBytes.size(), PIECE)),
                       &uWritten, nullptr))
            return false;
        strBytes.remove_prefix(uWritten);
    }
    return true;
}

bool COpenFile::WriteAt(uint64_t uAt, std::string_view strBytes) {
    while (!strBytes.empty()) {
        OVERLAPPED place = At(uAt);
        DWORD uWritten = 0;
        if (!WriteFile(HandleOf(*this), strBytes.data(), static_cast<DWORD>(std::min(strBytes.size(), PIECE)),
                       &uWritten, &place))
            return false;
        strBytes.remove_prefix(uWritten);
        uAt += uWritten;
    }
    return true;
}

bool COpenFile::SetSize(uint64_t uSize) {
    LARGE_INTEGER size{};
    size.QuadPart = static_cast<LONGLONG>(uSize);
    return SetFilePointerEx(HandleOf(*this), size, nullptr, FILE_BEGIN) && SetEndOfFile(HandleOf(*this));
}

bool COpenFile::Flush() { return FlushFileBuffers(HandleOf(*this)); }
