// Files as whole strings of bytes or piece by piece, and where the application keeps its own.
#pragma once

#include "core/Base/FileFailure.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// A file opened for reading: the one that the path meant then, also when another has taken its place.
class IFileReader {
public:
    virtual ~IFileReader() = default;
    /// Bytes in the file when it was opened.
    virtual uint64_t GetSize() const = 0;
    /// Fills `pTo` with `nLength` bytes from `uFrom` on. False when they cannot be read or the file has
    /// become shorter.
    virtual bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) = 0;
};

/// Takes the next bytes of a file being written; false when they cannot be.
using TWriteBytes = std::function<bool(std::string_view)>;

/// Hands bytes on piece by piece in their order; false when one of them was not taken, or to give up.
using TFillBytes = std::function<bool(const TWriteBytes&)>;

using TFileBytes = TOrFailure<std::optional<std::string>>;
using TOpenedFile = TOrFailure<std::unique_ptr<IFileReader>>;

class IFileStore {
public:
    virtual ~IFileStore() = default;
    /// The whole file.
    virtual TFileBytes Read(const std::wstring& strPath) = 0;
    /// Opens a file to be read in pieces, for files too big to be held beside what is made of them.
    virtual TOpenedFile Open(const std::wstring& strPath) = 0;
    /// Replaces the file by what `fnFill` hands on: written beside it, flushed to the disk, then renamed over
    /// it, so that at any moment the path holds the old file or the new one whole. Not so in a folder that
    /// refuses this: there a store may write over the file while it keeps a whole copy elsewhere, and may
    /// call `fnFill` a second time. On any failure but HalfWritten, or when `fnFill` answers false, the old
    /// file is untouched; its exceptions pass through. A link is followed; the old file's owner, group,
    /// rights and attributes are kept as far as the user may.
    virtual CFileOutcome ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) = 0;
    /// The same for bytes at hand.
    CFileOutcome Replace(const std::wstring& strPath, std::string_view strBytes) {
        return ReplaceBy(strPath, [&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); });
    }
    /// Reads, edits and replaces under a lock that other processes and threads respect. `edit` gets the
    /// present bytes (empty for no file) and changes them in place; a `false` from it writes nothing.
    /// False when nothing was written.
    virtual bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) = 0;
};

class ILocations {
public:
    virtual ~ILocations() = default;
    /// The user's folder for application data, without a separator at its end; empty when there is none.
    virtual std::wstring GetAppData() = 0;
    /// Makes a folder if it is missing; the outcome is not reported.
    virtual void MakeFolder(const std::wstring& strPath) = 0;
};

/// What is known of a loaded module.
struct TModuleInfo {
    std::wstring strPath;    ///< empty when there is no such module
    bool bResource = false;  ///< it carries a version resource
    std::wstring strVersion; ///< empty when the resource names none
};

class IModules {
public:
    virtual ~IModules() = default;
    /// The program that this process runs.
    virtual TModuleInfo GetProgram() = 0;
    /// A library by name ("wintab32"), if it is loaded.
    virtual TModuleInfo GetLibrary(const std::wstring& strName) = 0;
};
