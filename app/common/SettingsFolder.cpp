#include "app/common/SettingsFolder.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

CSettingsFolder::CSettingsFolder() {
    std::string strFolder = (fs::temp_directory_path() / "vellumcraft-XXXXXX").native();
    if (!mkdtemp(strFolder.data()))
        throw std::runtime_error(strFolder + ": no folder for the script's settings");
    m_pathFolder = strFolder;
    setenv("XDG_CONFIG_HOME", strFolder.c_str(), 1);
}

CSettingsFolder::~CSettingsFolder() {
    std::error_code error;
    fs::remove_all(m_pathFolder, error);
}
