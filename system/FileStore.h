// Files on the disk.
#pragma once

#include "core/Platform/Files.h"

/// Holds no state, so that any number may be used from any thread, also before main and while a module is
/// unloaded. Only plain files are read and written: never a device, a pipe or a folder.
class CFileStore : public IFileStore {
public:
    std::optional<std::string> Read(const std::wstring& strPath) override;
    std::unique_ptr<IFileReader> Open(const std::wstring& strPath) override;
    /// The folder must be writable too. A new file's rights follow the process's mask.
    bool ReplaceBy(const std::wstring& strPath,
                   const std::function<bool(const TWriteBytes&)>& fnFill) override;
    /// Waits up to five seconds for another program or thread, and not at all where no lock can be made (a
    /// read-only folder, a missing one). The lock ends with the process that holds it, however that ends.
    /// An exception of `edit` passes through and nothing is written.
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override;
};
