#include "app/common/ScriptSettings.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "system/environment/Locations.h"
#include "system/files/FilePath.h"

#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr wchar_t SECTION[] = L"Session";

} // namespace

CScriptSettings::CScriptSettings(const fs::path& pathScript, bool bWindows, IFileStore& files)
    : m_pathScript(pathScript), m_files(files) {
    if (!fs::is_regular_file(pathScript))
        throw std::runtime_error(Utf8Of(pathScript) + ": there is no such script");
    CLocations locations;
    m_strStore = CIniConfig::FindPath(locations);
    const auto spSection = CIniConfig(m_strStore, m_files).GetSection(SECTION);
    const std::wstring strScript = TextOf(fs::absolute(pathScript));
    spSection->SetString(L"Script", strScript);
    spSection->SetInt(L"Windows", bWindows ? 1 : 0);
    if (spSection->GetString(L"Script", L"") != strScript)
        throw std::runtime_error(Utf8Of(pathScript) + ": the script's path is too long");
}

std::string CScriptSettings::GetFailure() const {
    const std::string strFailure =
        ToUtf8(CIniConfig(m_strStore, m_files).GetSection(SECTION)->GetString(L"Failure", L""));
    // The module knows the script by its absolute path.
    const std::string strPath = Utf8Of(fs::absolute(m_pathScript));
    return strFailure.starts_with(strPath) ? Utf8Of(m_pathScript) + strFailure.substr(strPath.size())
                                           : strFailure;
}
