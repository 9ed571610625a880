// Reasons why a file operation failed, with advice for the user.
#pragma once

#include <string>
#include <utility>

/// Kinds of failure, distinguished where the user has to act differently. Each has its row in AdviceFor.
enum class EFileFailure {
    Unknown,
    Missing,          ///< there is no such file
    NoFolder,         ///< the folder to write into does not exist
    NotPlain,         ///< a folder, a device, a pipe
    NoReadRight,      ///< the user may not read the file
    NoWriteRight,     ///< the user may not change the file
    FolderClosed,     ///< the user may not create files in the folder
    ReadOnlyDisk,     ///< the disk is write-protected
    DiskFull,         ///< no space left, or quota exceeded
    TooBigForDisk,    ///< exceeds the largest file size of the disk's file system
    NameTooLong,      ///< the name or the whole path is too long
    TooManyOpen,      ///< too many files are open in this process or on this machine
    DiskError,        ///< the device failed
    NoSafetyCopy,     ///< the file must be written in place, but no backup copy can be made
    HalfWritten,      ///< writing in place was interrupted; the backup copy is kept
    NoMemory,         ///< memory ran out while the file was read or written
    DamagedDocument,  ///< a project file whose content is inconsistent
    UnknownEnding,    ///< no format that can be written has this extension
    UnknownPicture,   ///< the content is in no readable format
    WriteOnlyPicture, ///< the content is in a format that can only be written
    DamagedPicture,   ///< truncated or inconsistent
    PictureTooLarge,  ///< exceeds MAX_IMAGE_SIDE or the decoder's limit
    NoCodec,          ///< the installed program lacks the codec for the format
};

/// The cause and the remedy in Japanese, one or more sentences without a line break.
const wchar_t* AdviceFor(EFileFailure failure);

/// The result of a file operation, or the reason for its failure. `Holder` can be empty: an optional or a
/// pointer.
template <class Holder>
struct TOrFailure : Holder {
    using Holder::Holder;
    TOrFailure(Holder holder) : Holder(std::move(holder)) {}
    TOrFailure(EFileFailure why) : failure(why) {}
    EFileFailure failure = EFileFailure::Unknown; ///< valid only while the holder is empty
};

/// The outcome of writing a file; true when it was written completely.
class CFileOutcome {
public:
    CFileOutcome() : m_bWhole(true) {}
    CFileOutcome(EFileFailure failure) : m_failure(failure) {}
    explicit operator bool() const { return m_bWhole; }
    /// Undefined after success.
    EFileFailure GetFailure() const { return m_failure; }

private:
    bool m_bWhole = false;
    EFileFailure m_failure = EFileFailure::Unknown;
};
