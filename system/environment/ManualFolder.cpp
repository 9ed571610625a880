#include "system/environment/ManualFolder.h"

#include <cstdlib>
#include <sstream>

#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;

namespace {

constexpr char FOLDER[] = "vellumcraft/manual";
constexpr char FIRST_PAGE[] = "index.html";
constexpr char DATA_FOLDERS[] = "/usr/local/share:/usr/share";

bool IsManual(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path / FIRST_PAGE, error);
}

// The file that this code was loaded from.
fs::path FindOwnFile() {
    Dl_info info{};
    void* pExtra = nullptr;
    std::error_code error;
    if (dladdr1(reinterpret_cast<const void*>(&FindOwnFile), &info, &pExtra, RTLD_DL_LINKMAP) && pExtra) {
        // The program itself has an empty name.
        const char* pszName = static_cast<const link_map*>(pExtra)->l_name;
        if (pszName && *pszName) return fs::canonical(pszName, error);
    }
    return fs::read_symlink("/proc/self/exe", error);
}

} // namespace

fs::path FindManual(const fs::path& pathModule, const std::string& strDataFolders) {
    fs::path folder = pathModule.parent_path();
    while (folder.has_relative_path()) {
        folder = folder.parent_path();
        if (const fs::path found = folder / "share" / FOLDER; IsManual(found)) return found;
    }
    std::istringstream stream(strDataFolders);
    for (std::string strFolder; std::getline(stream, strFolder, ':');)
        if (const fs::path found = fs::path(strFolder) / FOLDER; found.is_absolute() && IsManual(found))
            return found;
    return {};
}

fs::path FindManual() {
    const char* pszFolders = std::getenv("XDG_DATA_DIRS");
    return FindManual(FindOwnFile(), pszFolders && *pszFolders ? pszFolders : DATA_FOLDERS);
}
