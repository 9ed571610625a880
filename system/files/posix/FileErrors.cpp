#include "system/files/FileErrors.h"

#include <cerrno>

int LastFileError() { return errno; }

EFileFailure ReadFailure(int nError) {
    switch (nError) {
    case ENOENT:
    case ENOTDIR:
        return EFileFailure::Missing;
    case EISDIR:
    case ELOOP:
    case ENXIO:
        return EFileFailure::NotPlain;
    case EACCES:
    case EPERM:
        return EFileFailure::NoReadRight;
    case EROFS:
        return EFileFailure::ReadOnlyDisk;
    case ENOSPC:
    case EDQUOT:
        return EFileFailure::DiskFull;
    case EFBIG:
        return EFileFailure::TooBigForDisk;
    case ENAMETOOLONG:
        return EFileFailure::NameTooLong;
    case EMFILE:
    case ENFILE:
        return EFileFailure::TooManyOpen;
    case EIO:
        return EFileFailure::DiskError;
    case ENOMEM:
        return EFileFailure::NoMemory;
    default:
        return EFileFailure::Unknown;
    }
}

EFileFailure WriteFailure(int nError) {
    const EFileFailure failure = ReadFailure(nError);
    if (failure == EFileFailure::Missing) return EFileFailure::NoFolder;
    return failure == EFileFailure::NoReadRight ? EFileFailure::FolderClosed : failure;
}

bool IsMissing(int nError) { return nError == ENOENT; }

bool IsTaken(int nError) { return nError == EEXIST; }

bool IsFolderClosed(int nError) {
    return nError == EACCES || nError == EPERM || nError == EROFS || nError == EBUSY;
}
