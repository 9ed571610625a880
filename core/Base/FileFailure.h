// Why a file could not be used, and what its user can do about it.
#pragma once

#include <string>
#include <utility>

/// Kinds of failure that call for different answers of the user. Each has its row in AdviceFor.
enum class EFileFailure {
    Unknown,
    Missing,         ///< there is no such file
    NoFolder,        ///< there is no such folder to write into
    NotPlain,        ///< a folder, a device, a pipe
    NoReadRight,     ///< the user may not read the file
    NoWriteRight,    ///< the user may not change the file
    FolderClosed,    ///< the user may make nothing in the folder
    ReadOnlyDisk,    ///< the disk takes no changes
    DiskFull,        ///< no space, or the user's share of it is used up
    TooBigForDisk,   ///< the disk's file system has no files of this size
    NameTooLong,     ///< the name or the whole path
    TooManyOpen,     ///< files open in this process or on this machine
    DiskError,       ///< the device failed
    NoSafetyCopy,    ///< the file must be written in place, and no copy can be kept meanwhile
    HalfWritten,     ///< writing in place broke off; the copy is kept
    NoMemory,        ///< while the file was read or made
    DamagedDocument, ///< a project file whose content is inconsistent
    UnknownEnding,   ///< the name says no format that can be written
    UnknownPicture,  ///< the content is of no format that can be read
    DamagedPicture,  ///< cut short or inconsistent
    PictureTooLarge, ///< over MAX_IMAGE_SIDE or what can be decoded
    NoCodec,         ///< the part of the installation that knows the format is missing
};

/// In Japanese what happened and what to do, one or more sentences without a line break.
const wchar_t* AdviceFor(EFileFailure failure);

/// The result of a file operation, or the reason why there is none. `Holder` can be empty: an optional or a
/// pointer.
template <class Holder>
struct TOrFailure : Holder {
    using Holder::Holder;
    TOrFailure(Holder holder) : Holder(std::move(holder)) {}
    TOrFailure(EFileFailure why) : failure(why) {}
    EFileFailure failure = EFileFailure::Unknown; ///< means nothing unless the holder is empty
};

/// How writing a file ended; true when it is whole.
class CFileOutcome {
public:
    CFileOutcome() : m_bWhole(true) {}
    CFileOutcome(EFileFailure failure) : m_failure(failure) {}
    explicit operator bool() const { return m_bWhole; }
    /// Means nothing for a whole file.
    EFileFailure GetFailure() const { return m_failure; }

private:
    bool m_bWhole = false;
    EFileFailure m_failure = EFileFailure::Unknown;
};
