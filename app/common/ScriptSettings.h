// Passes a script to the filter module in separate settings.
#pragma once

#include "app/common/SettingsFolder.h"
#include "core/Platform/Files.h"

#include <string>

class CScriptSettings : boost::noncopyable {
public:
    /// Sets the script for the module, which must be loaded after this. Raises std::runtime_error when
    /// there is no such script or no folder can be created.
    CScriptSettings(const std::filesystem::path& pathScript, bool bWindows, IFileStore& files);

    /// The script's failure as reported by the module, with the script named as here; empty for none.
    std::string GetFailure() const;

private:
    const std::filesystem::path m_pathScript;
    CSettingsFolder m_folder;
    IFileStore& m_files;
    std::wstring m_strStore;
};
