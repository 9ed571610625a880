#include "core/IniConfig/IniConfig.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniText.h"
#include "core/Platform/Files.h"

#include <boost/make_shared.hpp>

namespace {

constexpr wchar_t FOLDER_NAME[] = L"Vellumcraft";
constexpr wchar_t PATH_SEPARATOR = L'/';
constexpr size_t MAX_STRING = 1023;

int DigitOf(char ch) {
    if (ch >= '0' && ch <= '9') return ch - '0';
    if (ch >= 'a' && ch <= 'f') return ch - 'a' + 10;
    if (ch >= 'A' && ch <= 'F') return ch - 'A' + 10;
    return 16;
}

int32_t ReadNumber(std::string_view str) {
    const bool bMinus = str.starts_with('-');
    if (bMinus || str.starts_with('+')) str.remove_prefix(1);
    const bool bHex = str.starts_with("0x") || str.starts_with("0X");
    if (bHex) str.remove_prefix(2);
    const uint32_t uBase = bHex ? 16 : 10;
    uint32_t uValue = 0;
    for (const char ch : str) {
        const uint32_t uDigit = static_cast<uint32_t>(DigitOf(ch));
        if (uDigit >= uBase) break;
        uValue = uValue * uBase + uDigit;
    }
    return static_cast<int32_t>(bMinus ? 0u - uValue : uValue);
}

std::optional<std::string> ReadValue(IFileStore& files, const std::wstring& strPath,
                                     const std::wstring& strSection, const std::wstring& strKey) {
    const auto strFile = files.Read(strPath);
    return strFile ? FindIniValue(*strFile, ToUtf8(strSection), ToUtf8(strKey)) : std::nullopt;
}

} // namespace

CIniConfigData::CIniConfigData(std::wstring strPath, std::wstring strSection, IFileStore& files)
    : m_strPath(std::move(strPath)), m_strSection(std::move(strSection)), m_files(files) {}

boost::shared_ptr<CIniConfigData> CIniConfigData::GetSection(const std::wstring& strName) {
    return boost::make_shared<CIniConfigData>(m_strPath, m_strSection + L'\\' + strName, m_files);
}

std::wstring CIniConfigData::GetString(const std::wstring& strKey, const std::wstring& strDefault) {
    const auto strValue = ReadValue(m_files, m_strPath, m_strSection, strKey);
    return (strValue ? FromUtf8(*strValue) : strDefault).substr(0, MAX_STRING);
}

int32_t CIniConfigData::GetInt(const std::wstring& strKey, int32_t nDefault) {
    const auto strValue = ReadValue(m_files, m_strPath, m_strSection, strKey);
    return strValue && !strValue->empty() ? ReadNumber(*strValue) : nDefault;
}

void CIniConfigData::SetString(const std::wstring& strKey, const std::wstring& strValue) {
    SetStrings({{strKey, strValue}});
}

void CIniConfigData::SetStrings(const std::vector<std::pair<std::wstring, std::wstring>>& vValues) {
    m_files.Update(m_strPath, [&](std::string& strFile) {
        bool bChanged = false;
        for (const auto& [strKey, strValue] : vValues)
            bChanged |= SetIniValue(strFile, ToUtf8(m_strSection), ToUtf8(strKey), ToUtf8(strValue));
        return bChanged;
    });
}

void CIniConfigData::SetInts(const std::vector<std::pair<std::wstring, int32_t>>& vValues) {
    std::vector<std::pair<std::wstring, std::wstring>> vTexts;
    for (const auto& [strKey, nValue] : vValues) vTexts.emplace_back(strKey, std::to_wstring(nValue));
    SetStrings(vTexts);
}

void CIniConfigData::SetInt(const std::wstring& strKey, int32_t nValue) {
    SetString(strKey, std::to_wstring(nValue));
}

CIniConfig::CIniConfig(std::wstring strPath, IFileStore& files)
    : m_strPath(std::move(strPath)), m_files(files) {}

boost::shared_ptr<CIniConfigData> CIniConfig::GetSection(const std::wstring& strName) {
    return boost::make_shared<CIniConfigData>(m_strPath, strName, m_files);
}

std::wstring CIniConfig::FindPath(ILocations& locations) {
    return FindProfilePath(locations, std::wstring(FOLDER_NAME) + L".ini");
}

std::wstring FindProfilePath(ILocations& locations, const std::wstring& strFileName) {
    std::wstring strPath = locations.GetAppData();
    if (strPath.empty()) return {};
    strPath = strPath + PATH_SEPARATOR + FOLDER_NAME;
    locations.MakeFolder(strPath);
    return strPath + PATH_SEPARATOR + strFileName;
}
