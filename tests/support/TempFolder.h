// A temporary folder of a test.
#pragma once

#include "core/Base/Text.h"
#include "system/files/FileStore.h"
#include <cstdlib>
#include <filesystem>
#include <string>

class CTempFolder {
public:
    CTempFolder() {
        std::string strName = (std::filesystem::temp_directory_path() / "vellum-XXXXXX").native();
        m_path = mkdtemp(strName.data()) ? strName : std::string();
    }
    ~CTempFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    std::filesystem::path File(const std::string& strName) const { return m_path / strName; }
    const std::filesystem::path& GetPath() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// The same, set as the folder of the program's settings.
struct CSettingsFolder : CTempFolder {
    CSettingsFolder() { setenv("XDG_CONFIG_HOME", GetPath().c_str(), 1); }
    ~CSettingsFolder() { unsetenv("XDG_CONFIG_HOME"); }
};
