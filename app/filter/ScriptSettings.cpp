#include "app/filter/ScriptSettings.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "system/Locations.h"

#include <cstdlib>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr wchar_t SECTION[] = L"Session";

} // namespace

CScriptSettings::CScriptSettings(const fs::path& pathScript, bool bWindows, IFileStore& files)
    : m_files(files) {
    if (!fs::is_regular_file(pathScript))
        throw std::runtime_error(pathScript.native() + ": there is no such script");
    std::string strFolder = (fs::temp_directory_path() / "vellumcraft-XXXXXX").native();
    if (!mkdtemp(strFolder.data()))
        throw std::runtime_error(strFolder + ": no folder for the script's settings");
    m_pathFolder = strFolder;
    setenv("XDG_CONFIG_HOME", strFolder.c_str(), 1);

    CLocations locations;
    m_strStore = CIniConfig::FindPath(locations);
    const auto spSection = CIniConfig(m_strStore, m_files).GetSection(SECTION);
    const std::wstring strScript = FromUtf8(fs::absolute(pathScript).native());
    spSection->SetString(L"Script", strScript);
    spSection->SetInt(L"Windows", bWindows ? 1 : 0);
    if (spSection->GetString(L"Script", L"") != strScript)
        throw std::runtime_error(pathScript.native() + ": the script's path is too long");
}

CScriptSettings::~CScriptSettings() {
    std::error_code error;
    fs::remove_all(m_pathFolder, error);
}

std::string CScriptSettings::GetFailure() const {
    return ToUtf8(CIniConfig(m_strStore, m_files).GetSection(SECTION)->GetString(L"Failure", L""));
}
