// How a program names a script for the filter module: in settings of the session's own.
#pragma once

#include "app/common/SettingsFolder.h"
#include "core/Platform/Files.h"

#include <string>

class CScriptSettings : boost::noncopyable {
public:
    /// Names the script for the module, which must be loaded after this. Raises std::runtime_error when there
    /// is no such script or no folder can be made.
    CScriptSettings(const std::filesystem::path& pathScript, bool bWindows, IFileStore& files);

    /// What the module says went wrong with the script, which is named as it was here; empty when nothing
    /// did.
    std::string GetFailure() const;

private:
    const std::filesystem::path m_pathScript;
    CSettingsFolder m_folder;
    IFileStore& m_files;
    std::wstring m_strStore;
};
