#include "system/files/PutInPlace.h"

#include "system/files/win32/FileHandle.h"

namespace {

namespace fs = std::filesystem;

constexpr int TRIES = 20;
constexpr DWORD WAIT_MS = 25;

// True for failures that pass: scanners and indexers open new files for a moment.
bool MayPass(DWORD uError) {
    return uError == ERROR_SHARING_VIOLATION || uError == ERROR_ACCESS_DENIED ||
           uError == ERROR_UNABLE_TO_REMOVE_REPLACED || uError == ERROR_UNABLE_TO_MOVE_REPLACEMENT;
}

bool Rename(const fs::path& pathFrom, const fs::path& pathTo) {
    return MoveFileExW(pathFrom.c_str(), pathTo.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

// Gives the new file the old one's name, attributes, access list and streams.
bool Replace(const fs::path& pathNew, const fs::path& path) {
    const fs::path pathBackup = fs::path(pathNew) += L"~";
    if (ReplaceFileW(path.c_str(), pathNew.c_str(), pathBackup.c_str(),
                     REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS, nullptr, nullptr)) {
        DeleteFileW(pathBackup.c_str());
        return true;
    }
    const DWORD uError = GetLastError();
    // The old file has its backup's name by now and the new one still its own.
    if (uError == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2) {
        if (Rename(pathNew, path)) {
            DeleteFileW(pathBackup.c_str());
            return true;
        }
        Rename(pathBackup, path);
    }
    // File systems without these attributes; ReplaceFile tells nothing more precise.
    if (uError == ERROR_INVALID_FUNCTION || uError == ERROR_NOT_SUPPORTED ||
        uError == ERROR_INVALID_PARAMETER || uError == ERROR_CALL_NOT_IMPLEMENTED ||
        uError == ERROR_FILE_NOT_FOUND)
        return Rename(pathNew, path);
    SetLastError(uError);
    return false;
}

} // namespace

bool PutInPlace(COpenFile& file, const fs::path& pathNew, const fs::path& path, bool bReplaces) {
    file.Close();
    const fs::path from = LongPathOf(pathNew), to = LongPathOf(path);
    for (int n = 0;; ++n) {
        if (bReplaces ? Replace(from, to) : Rename(from, to)) return true;
        const DWORD uError = GetLastError();
        if (!MayPass(uError) || n == TRIES) {
            SetLastError(uError);
            return false;
        }
        Sleep(WAIT_MS);
    }
}
