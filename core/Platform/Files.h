// File access as whole strings of bytes or piece by piece, and the application's own folders.
#pragma once

#include "core/Base/FileFailure.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// A file opened for reading. It keeps reading the same file when the path is replaced.
class IFileReader {
public:
    virtual ~IFileReader() = default;
    /// The file's size in bytes when it was opened.
    virtual uint64_t GetSize() const = 0;
    /// Reads `nLength` bytes at offset `uFrom` into `pTo`. False when they cannot be read or the file has
    /// become shorter.
    virtual bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) = 0;
};

/// Writes the next bytes of a file; false on failure.
using TWriteBytes = std::function<bool(std::string_view)>;

/// Passes bytes to the writer piece by piece in order; returns false when the writer failed, or to abort.
using TFillBytes = std::function<bool(const TWriteBytes&)>;

using TFileBytes = TOrFailure<std::optional<std::string>>;
using TOpenedFile = TOrFailure<std::unique_ptr<IFileReader>>;

class IFileStore {
public:
    virtual ~IFileStore() = default;
    /// Reads the whole file.
    virtual TFileBytes Read(const std::wstring& strPath) = 0;
    /// Opens a file to be read in pieces, for files too large to be held in memory beside the decoded
    /// document.
    virtual TOpenedFile Open(const std::wstring& strPath) = 0;
    /// Replaces the file by the bytes from `fnFill`: written to a temporary file, flushed to the disk, then
    /// renamed, so that the path always holds the complete old or new file. In a folder that forbids this,
    /// a store may overwrite the file while it keeps a backup copy elsewhere, and may call `fnFill` a
    /// second time. On any failure but HalfWritten, or when `fnFill` returns false, the old file is
    /// unchanged; its exceptions propagate. Links are followed; the old file's owner, group, permissions
    /// and attributes are kept as far as allowed.
    virtual CFileOutcome ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) = 0;
    /// ReplaceBy for bytes in memory.
    CFileOutcome Replace(const std::wstring& strPath, std::string_view strBytes) {
        return ReplaceBy(strPath, [&](const TWriteBytes& fnWrite) { return fnWrite(strBytes); });
    }
    /// Reads, edits and replaces under a lock that other processes and threads respect. `edit` changes the
    /// present bytes (empty for no file) in place and returns false to write nothing. False when nothing
    /// was written.
    virtual bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) = 0;
};

class ILocations {
public:
    virtual ~ILocations() = default;
    /// The user's folder for application data, without a trailing separator; empty when there is none.
    virtual std::wstring GetAppData() = 0;
    /// Creates a folder if it is missing; failures are not reported.
    virtual void MakeFolder(const std::wstring& strPath) = 0;
};

/// Information about a loaded module.
struct TModuleInfo {
    std::wstring strPath;    ///< empty when there is no such module
    bool bResource = false;  ///< has a version resource
    std::wstring strVersion; ///< empty without a version in the resource
};

class IModules {
public:
    virtual ~IModules() = default;
    /// The program that this process runs.
    virtual TModuleInfo GetProgram() = 0;
    /// A library by name ("wintab32"), if it is loaded.
    virtual TModuleInfo GetLibrary(const std::wstring& strName) = 0;
};
