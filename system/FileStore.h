// Files on the disk.
#pragma once

#include "core/Platform/Files.h"

class ILocations;

/// Any number may be used from any thread, also before main and while a module is unloaded. Only plain files
/// are read and written: never a device, a pipe or a folder.
class CFileStore : public IFileStore {
public:
    /// `pLocations` tells of the folder for the copies of files that are written in place. It outlives the
    /// store; without it nothing is written in place.
    explicit CFileStore(ILocations* pLocations = nullptr) : m_pLocations(pLocations) {}

    TFileBytes Read(const std::wstring& strPath) override;
    TOpenedFile Open(const std::wstring& strPath) override;
    /// A file that may not be written is not replaced, also where the folder would allow it. A new file's
    /// rights follow the process's mask and the folder.
    CFileOutcome ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) override;
    /// Waits up to five seconds for another program or thread, and not at all where no lock can be made (a
    /// read-only folder, a missing one). The lock ends with the process that holds it, however that ends.
    /// An exception of `edit` passes through and nothing is written.
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override;

private:
    ILocations* m_pLocations;
};
