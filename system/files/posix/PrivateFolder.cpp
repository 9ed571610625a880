#include "system/files/PrivateFolder.h"

#include <cstdlib>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

fs::path MakeTempFolder(const std::string& strPrefix) {
    std::string strFolder = (fs::temp_directory_path() / (strPrefix + "XXXXXX")).native();
    if (!mkdtemp(strFolder.data())) throw std::runtime_error(strFolder + ": no temporary folder");
    return strFolder;
}

void MakePrivate(const fs::path& pathFolder) { chmod(pathFolder.c_str(), S_IRWXU); }
