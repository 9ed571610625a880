#include "system/environment/ManualFolder.h"

#include "system/environment/Modules.h"
#include "system/environment/Variables.h"

#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr char FOLDER[] = "vellumcraft/manual";
constexpr char FIRST_PAGE[] = "index.html";
constexpr char DATA_FOLDERS[] = "/usr/local/share:/usr/share";

bool IsManual(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path / FIRST_PAGE, error);
}

} // namespace

fs::path FindManual(const fs::path& pathModule, const std::string& strDataFolders) {
    for (fs::path folder = pathModule.parent_path();; folder = folder.parent_path()) {
        if (const fs::path found = folder / "share" / FOLDER; IsManual(found)) return found;
        if (!folder.has_relative_path()) break;
    }
    std::istringstream stream(strDataFolders);
    for (std::string strFolder; std::getline(stream, strFolder, ':');)
        if (const fs::path found = fs::path(strFolder) / FOLDER; found.is_absolute() && IsManual(found))
            return found;
    return {};
}

fs::path FindManual() {
    const std::string strFolders = GetVariable("XDG_DATA_DIRS");
    return FindManual(CModules::FindOwnFile(), strFolders.empty() ? DATA_FOLDERS : strFolders);
}
