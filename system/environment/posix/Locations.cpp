#include "system/environment/Locations.h"

#include "core/Base/Text.h"
#include "system/environment/posix/UserFolder.h"

#include <cerrno>
#include <filesystem>

#include <sys/stat.h>

namespace {

void MakeFolders(const std::filesystem::path& path) {
    if (path.empty() || mkdir(path.c_str(), 0700) == 0 || errno != ENOENT || !path.has_relative_path())
        return;
    MakeFolders(path.parent_path());
    mkdir(path.c_str(), 0700);
}

} // namespace

const char* const CLocations::APP_DATA_VARIABLE = "XDG_CONFIG_HOME";

std::wstring CLocations::GetAppData() { return FindUserFolder(APP_DATA_VARIABLE, "/.config"); }

void CLocations::MakeFolder(const std::wstring& strPath) { MakeFolders(ToUtf8(strPath)); }
