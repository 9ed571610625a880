// Files as whole strings of bytes, and where the application keeps its own.
#pragma once

#include <functional>
#include <optional>
#include <string>

class IFileStore {
public:
    virtual ~IFileStore() = default;
    /// The whole file, nullopt when it cannot be opened or read.
    virtual std::optional<std::string> Read(const std::wstring& strPath) = 0;
    /// Replaces the file by `strBytes`: written beside it, flushed to the disk, then renamed over it, so that
    /// at any moment the path holds the old file or the new one whole. False, and the old file untouched, on
    /// any failure. A link is followed; the old file's rights are kept.
    virtual bool Replace(const std::wstring& strPath, const std::string& strBytes) = 0;
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
