// Lists of recent documents.
#pragma once

#include <string>

class IFileStore;

class IRecentFiles {
public:
    virtual ~IRecentFiles() = default;
    /// Enters a file that was opened or saved now in the list that the desktop's programs share. Failures are
    /// not reported.
    virtual void Add(const std::wstring& strPath) = 0;
    /// The store that the application keeps its own list in as a profile file; null for an ordinary file
    /// beside the settings.
    virtual IFileStore* GetOwnStore() { return nullptr; }
};
