// Files as whole strings of bytes or piece by piece, and where the application keeps its own.
#pragma once

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

class IFileStore {
public:
    virtual ~IFileStore() = default;
    /// The whole file, nullopt when it cannot be opened or read.
    virtual std::optional<std::string> Read(const std::wstring& strPath) = 0;
    /// Opens a file to be read in pieces, for files too big to be held beside what is made of them. Null when
    /// it cannot be opened.
    virtual std::unique_ptr<IFileReader> Open(const std::wstring& strPath) = 0;
    /// Replaces the file by what `fnFill` hands on: written beside it, flushed to the disk, then renamed over
    /// it, so that at any moment the path holds the old file or the new one whole. False, and the old file
    /// untouched, on any failure or when `fnFill` answers false; its exceptions pass through. A link is
    /// followed; the old file's rights are kept.
    virtual bool ReplaceBy(const std::wstring& strPath,
                           const std::function<bool(const TWriteBytes&)>& fnFill) = 0;
    /// The same for bytes at hand.
    bool Replace(const std::wstring& strPath, std::string_view strBytes) {
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
