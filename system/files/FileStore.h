// Files on the disk.
#pragma once

#include "core/Platform/Files.h"

class ILocations;

/// Any number of stores may be used from any thread, also before main and while a module is unloaded. Only
/// plain files are read and written, never a device, a pipe or a folder.
class CFileStore : public IFileStore {
public:
    /// `pLocations` names the folder for the copies of files that are written in place, and outlives the
    /// store. Without it nothing is written in place.
    explicit CFileStore(ILocations* pLocations = nullptr) : m_pLocations(pLocations) {}

    TFileBytes Read(const std::wstring& strPath) override;
    TOpenedFile Open(const std::wstring& strPath) override;
    /// A write-protected file is not replaced, even where the folder would allow it. A new file's rights
    /// follow the process's mask and the folder.
    CFileOutcome ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) override;
    /// Waits up to five seconds for another program or thread; does not wait where no lock can be created
    /// (a read-only or missing folder). The system releases the lock of a process that dies. An exception
    /// of `edit` passes through and nothing is written.
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override;

private:
    ILocations* m_pLocations;
};
