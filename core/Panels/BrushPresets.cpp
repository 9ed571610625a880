#include "core/Panels/BrushPresets.h"

#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Base/Table.h"
#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <algorithm>
#include <ranges>

namespace {

constexpr wchar_t SECTION[] = L"BrushPreset";
constexpr int32_t MAX_COUNT = 1000;   ///< limits a damaged count, which would delay the start
constexpr size_t MAX_NAME = 100;      ///< characters; the settings cut long values
constexpr wchar_t NO_VALUES[] = L"-"; ///< in place of the values when all are the defaults

using TValues = std::vector<std::pair<std::wstring, int32_t>>;

TValues ListValues(const TBrushPreset& preset) {
    TValues vValues = ListBrushParam(preset.param);
    const TValues vFreehand = ListFreehandParam(preset.freehand);
    vValues.insert(vValues.end(), vFreehand.begin(), vFreehand.end());
    return vValues;
}

std::wstring FormatValues(const TBrushPreset& preset) {
    const TValues vDefaults = ListValues({});
    std::wstring strText;
    for (const auto& value : ListValues(preset)) {
        if (std::ranges::count(vDefaults, value) != 0) continue;
        if (!strText.empty()) strText += L' ';
        strText += value.first + L"=" + std::to_wstring(value.second);
    }
    return strText.empty() ? NO_VALUES : strText;
}

TBrushPreset ParseValues(const std::wstring& strText, const std::wstring& strName) {
    std::map<std::wstring, int32_t> mapValues;
    std::vector<std::wstring> vWords;
    boost::split(vWords, strText, boost::is_any_of(L" "));
    if (strText == NO_VALUES) vWords.clear();
    for (const std::wstring& strWord : vWords) {
        const size_t nEquals = strWord.find(L'=');
        int32_t nValue = 0;
        if (nEquals == std::wstring::npos ||
            !boost::conversion::try_lexical_convert(strWord.substr(nEquals + 1), nValue))
            throw deserialize_error();
        mapValues[strWord.substr(0, nEquals)] = nValue;
    }
    const auto find = [&](const std::wstring& strKey, int32_t nDefault) {
        const auto it = mapValues.find(strKey);
        return it == mapValues.end() ? nDefault : it->second;
    };
    TBrushPreset preset{boost::trim_copy(boost::trim_copy(strName).substr(0, MAX_NAME)), ReadBrushParam(find),
                        ReadFreehandParam(find)};
    preset.freehand.m_clrBrush = TFreehandParam().m_clrBrush;
    preset.freehand.m_clrBack = TFreehandParam().m_clrBack;
    return preset;
}

TBrushPresets ReadStored(CIniConfigData& section, int32_t nCount) {
    TBrushPresets vPresets;
    for (int32_t n = 1; n <= std::min(nCount, MAX_COUNT); ++n) {
        const std::wstring strLine = section.GetString(std::to_wstring(n), L"");
        const size_t nTab = strLine.find(L'\t');
        if (nTab == std::wstring::npos) continue;
        try {
            vPresets.push_back(ParseValues(strLine.substr(0, nTab), strLine.substr(nTab + 1)));
        } catch (const deserialize_error&) {
            continue; // the others are still of use
        }
    }
    return vPresets;
}

} // namespace

std::string FormatPresets(const TPresetsOfTools& presets) {
    std::string strText = "# Vellumcraft brushes: tool, values other than the defaults, name.\n";
    for (const auto& [strTool, vPresets] : presets)
        for (const TBrushPreset& preset : vPresets)
            strText += ToUtf8(strTool + L'\t' + FormatValues(preset) + L'\t' + preset.strName + L'\n');
    return strText;
}

TPresetsOfTools ParsePresets(std::string_view strText) {
    TPresetsOfTools presets;
    for (const std::vector<std::string>& vFields : ParseTable(strText, 3))
        presets[FromUtf8(vFields[0])].push_back(ParseValues(FromUtf8(vFields[1]), FromUtf8(vFields[2])));
    if (presets.empty()) throw deserialize_error();
    return presets;
}

void CBrushPresets::Read(CIniConfig& config) {
    m_presets = ParsePresets(FindResource("brushes.tsv"));
    for (auto& [strTool, vPresets] : m_presets) {
        const auto spSection = config.GetSection(SECTION)->GetSection(strTool);
        const int32_t nCount = spSection->GetInt(L"Count", -1);
        if (nCount >= 0) vPresets = ReadStored(*spSection, nCount);
    }
    m_read = m_presets;
}

void CBrushPresets::Write(CIniConfig& config) {
    for (const auto& [strTool, vPresets] : m_presets) {
        if (m_read[strTool] == vPresets) continue;
        std::vector<std::pair<std::wstring, std::wstring>> vValues{
            {L"Count", std::to_wstring(vPresets.size())}};
        for (const TBrushPreset& preset : vPresets)
            vValues.emplace_back(std::to_wstring(vValues.size()),
                                 FormatValues(preset) + L'\t' + preset.strName);
        config.GetSection(SECTION)->GetSection(strTool)->SetStrings(vValues);
        m_read[strTool] = vPresets;
    }
}

void CBrushPresets::Append(const TPresetsOfTools& presets) {
    for (const auto& [strTool, vPresets] : presets) {
        const auto it = m_presets.find(strTool);
        if (it == m_presets.end()) continue; // of a tool that this version does not have
        for (const TBrushPreset& preset : vPresets)
            if (std::ranges::count(it->second, preset) == 0) it->second.push_back(preset);
    }
}
