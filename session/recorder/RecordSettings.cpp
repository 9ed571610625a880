#include "core/Base/Text.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/IniConfig/IniText.h"
#include "core/Platform/Files.h"
#include "session/recorder/Record.h"

#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view BLANKS = " \t\r";

/// A store that is one file in memory.
class COneFile : public IFileStore {
public:
    TFileBytes Read(const std::wstring&) override { return m_strBytes; }
    TOpenedFile Open(const std::wstring&) override { return EFileFailure::Unknown; }
    CFileOutcome ReplaceBy(const std::wstring&, const TFillBytes&) override { return EFileFailure::Unknown; }
    bool Update(const std::wstring&, const std::function<bool(std::string&)>& edit) override {
        return edit(m_strBytes);
    }

private:
    std::string m_strBytes;
};

std::string BytesOf(const TGlobalSwitches& switches) {
    COneFile file;
    CIniConfig config(L"switches", file);
    switches.Save(config);
    return file.Read({}).value_or("");
}

std::string_view Trim(std::string_view str) {
    str.remove_prefix(std::min(str.find_first_not_of(BLANKS), str.size()));
    return str.substr(0, str.find_last_not_of(BLANKS) + 1);
}

using TName = std::pair<std::string, std::string>; ///< section and key

// All names in order, without duplicates.
std::vector<TName> ListNames(std::string_view strFile) {
    std::vector<TName> vNames;
    std::set<TName> setSeen;
    std::string strSection;
    while (!strFile.empty()) {
        const size_t nEnd = strFile.find('\n');
        const std::string_view strLine = Trim(strFile.substr(0, nEnd));
        strFile.remove_prefix(nEnd == std::string_view::npos ? strFile.size() : nEnd + 1);
        const size_t nEqual = strLine.find('=');
        if (strLine.starts_with('[')) {
            strSection = Trim(strLine.substr(1, strLine.find(']') - 1));
        } else if (!strLine.starts_with(';') && nEqual != std::string_view::npos) {
            const TName name(strSection, Trim(strLine.substr(0, nEqual)));
            if (!name.first.empty() && !name.second.empty() && setSeen.insert(name).second)
                vNames.push_back(name);
        }
    }
    return vNames;
}

bool IsOfDocuments(const std::string& strSection) {
    const std::string_view strFirst = std::string_view(strSection).substr(0, strSection.find('\\'));
    return !EqualNoCase(strFirst, "Windows") && !EqualNoCase(strFirst, "Session") &&
           !EqualNoCase(strFirst, "Global");
}

void WriteSetting(CRecord& record, const TName& name, const std::string& strValue) {
    record.Write("set", {{"section", name.first}, {"key", name.second}, {"value", strValue}});
}

} // namespace

void WriteSettings(CRecord& record, const TPlatform& platform) {
    // The store holds the switches of the program's start; they may have changed since.
    const std::string strDefault = BytesOf({}), strNow = BytesOf(g_Switches);
    for (const TName& name : ListNames(strNow)) {
        const auto strValue = FindIniValue(strNow, name.first, name.second);
        if (strValue && strValue != FindIniValue(strDefault, name.first, name.second))
            WriteSetting(record, name, *strValue);
    }
    const std::string strFile = platform.files.Read(CIniConfig::FindPath(platform.locations)).value_or("");
    for (const TName& name : ListNames(strFile)) {
        const auto strValue = FindIniValue(strFile, name.first, name.second);
        if (strValue && IsOfDocuments(name.first)) WriteSetting(record, name, *strValue);
    }
}
