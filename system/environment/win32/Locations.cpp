#include "system/environment/Locations.h"

#include "core/Base/Text.h"
#include "system/environment/Variables.h"

#include <filesystem>

#include <windows.h>

#include <shlobj.h>

namespace {

namespace fs = std::filesystem;

std::wstring FindKnownFolder(const KNOWNFOLDERID& id) {
    PWSTR pszPath = nullptr;
    std::wstring strPath;
    if (SUCCEEDED(SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, &pszPath))) strPath = pszPath;
    CoTaskMemFree(pszPath);
    return strPath;
}

} // namespace

const char* const CLocations::APP_DATA_VARIABLE = "VELLUMCRAFT_APPDATA";

std::wstring CLocations::GetAppData() {
    std::wstring strPath = FromUtf8(GetVariable(APP_DATA_VARIABLE));
    if (!fs::path(strPath).is_absolute()) strPath = FindKnownFolder(FOLDERID_RoamingAppData);
    while (strPath.size() > 3 && (strPath.back() == L'\\' || strPath.back() == L'/')) strPath.pop_back();
    return strPath;
}

// New folders inherit the rights of the user's own.
void CLocations::MakeFolder(const std::wstring& strPath) {
    std::error_code error;
    fs::create_directories(fs::path(strPath), error);
}
