#include "system/files/FileLock.h"

#include "system/files/win32/FileHandle.h"

CFileLock::~CFileLock() {
    if (IsLocked()) CloseHandle(reinterpret_cast<HANDLE>(m_nHandle));
}

// The lock is a file that nobody else may open. The system closes and deletes it with the process.
CFileLock::EOutcome CFileLock::TryLock() {
    const std::filesystem::path path = LongPathOf(m_pathLock);
    const HANDLE hFile = CreateFileW(
        path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
        FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (hFile != INVALID_HANDLE_VALUE) {
        m_nHandle = reinterpret_cast<intptr_t>(hFile);
        return EOutcome::Locked;
    }
    const DWORD uError = GetLastError();
    if (uError == ERROR_SHARING_VIOLATION || uError == ERROR_DELETE_PENDING) return EOutcome::Busy;
    // A file that is being deleted is reported like a closed folder, but it can still be found.
    WIN32_FIND_DATAW found{};
    const HANDLE hFind =
        uError == ERROR_ACCESS_DENIED ? FindFirstFileW(path.c_str(), &found) : INVALID_HANDLE_VALUE;
    if (hFind == INVALID_HANDLE_VALUE) return EOutcome::Impossible;
    FindClose(hFind);
    return EOutcome::Busy;
}
