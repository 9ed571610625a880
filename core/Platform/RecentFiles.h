// The list of recent documents that the desktop's programs share.
#pragma once

#include <string>

class IRecentFiles {
public:
    virtual ~IRecentFiles() = default;
    /// Enters a file that was opened or saved now. Failures are not reported.
    virtual void Add(const std::wstring& strPath) = 0;
};
