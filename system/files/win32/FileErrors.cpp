#include "system/files/FileErrors.h"

#include <windows.h>

int LastFileError() { return static_cast<int>(GetLastError()); }

EFileFailure ReadFailure(int nError) {
    switch (nError) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return EFileFailure::Missing;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_CANT_RESOLVE_FILENAME:
        return EFileFailure::NotPlain;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return EFileFailure::NoReadRight;
    case ERROR_WRITE_PROTECT:
        return EFileFailure::ReadOnlyDisk;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_NOT_ENOUGH_QUOTA:
        return EFileFailure::DiskFull;
    case ERROR_FILE_TOO_LARGE:
        return EFileFailure::TooBigForDisk;
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BUFFER_OVERFLOW:
        return EFileFailure::NameTooLong;
    case ERROR_TOO_MANY_OPEN_FILES:
        return EFileFailure::TooManyOpen;
    case ERROR_CRC:
    case ERROR_NOT_READY:
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
        return EFileFailure::DiskError;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
        return EFileFailure::NoMemory;
    default:
        return EFileFailure::Unknown;
    }
}

EFileFailure WriteFailure(int nError) {
    // Another program has the file open and does not share it.
    if (nError == ERROR_SHARING_VIOLATION || nError == ERROR_LOCK_VIOLATION ||
        nError == ERROR_USER_MAPPED_FILE)
        return EFileFailure::NoWriteRight;
    const EFileFailure failure = ReadFailure(nError);
    if (failure == EFileFailure::Missing) return EFileFailure::NoFolder;
    return failure == EFileFailure::NoReadRight ? EFileFailure::FolderClosed : failure;
}

bool IsMissing(int nError) { return nError == ERROR_FILE_NOT_FOUND || nError == ERROR_PATH_NOT_FOUND; }

bool IsTaken(int nError) { return nError == ERROR_FILE_EXISTS || nError == ERROR_ALREADY_EXISTS; }

bool IsFolderClosed(int nError) { return nError == ERROR_ACCESS_DENIED || nError == ERROR_WRITE_PROTECT; }
