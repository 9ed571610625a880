#include "core/Commands/Shortcuts.h"

#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Base/Table.h"
#include "core/Base/Text.h"
#include "core/Commands/Commands.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Controls.h"
#include "core/Platform/System.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace {

constexpr int MAX_KEY = 254;
constexpr wchar_t SECTION[] = L"Shortcuts";
constexpr int32_t MAX_COUNT = 1000; ///< limits a damaged count

struct TKeyName {
    int nKey;
    const wchar_t* pszName;
};

// Keys that are neither letters, digits nor function keys.
constexpr TKeyName KEY_NAMES[] = {
    {0x08, L"Backspace"}, {0x09, L"Tab"},      {0x0D, L"Enter"}, {0x1B, L"Esc"},    {0x20, L"Space"},
    {0x21, L"PageUp"},    {0x22, L"PageDown"}, {0x23, L"End"},   {0x24, L"Home"},   {0x25, L"Left"},
    {0x26, L"Up"},        {0x27, L"Right"},    {0x28, L"Down"},  {0x2D, L"Insert"}, {0x2E, L"Delete"},
    {0x6A, L"*"},         {0x6B, L"+"},        {0x6D, L"-"},     {0x6E, L"."},      {0x6F, L"/"},
    {0xBA, L";"},         {0xBB, L"+"},        {0xBC, L","},     {0xBD, L"-"},      {0xBE, L"."},
    {0xBF, L"/"},         {0xC0, L"`"},        {0xDB, L"["},     {0xDC, L"\\"},     {0xDD, L"]"},
    {0xDE, L"'"},
};

bool IsModifier(int nKey) { return nKey == VK_Shift || nKey == VK_Control || nKey == VK_Alt; }

TShortcut ParseRow(const std::vector<std::string>& vFields) {
    const auto has = [&](char ch) { return vFields[0].find(ch) != std::string::npos; };
    if (vFields[0].empty() || vFields[0].find_first_not_of("CSAN-") != std::string::npos)
        throw deserialize_error();
    TShortcut shortcut{{0, has('C'), has('S'), has('A')}, has('N'), FindCommandId(vFields[2])};
    const std::string& strKey = vFields[1];
    const char* pEnd = strKey.data() + strKey.size();
    const auto result = std::from_chars(strKey.data(), pEnd, shortcut.key.nKey, 16);
    const int nKey = shortcut.key.nKey;
    if (result.ec != std::errc() || result.ptr != pEnd || nKey < 1 || nKey > MAX_KEY || IsModifier(nKey))
        throw deserialize_error();
    return shortcut;
}

} // namespace

TKey KeyOf(const TMessage& msg, IKeyState& keys) {
    const auto nKey = static_cast<int>(msg.wParam);
    if ((msg.id != EMessage::KeyDown && msg.id != EMessage::SysKeyDown) || IsModifier(nKey)) return {};
    return {nKey, keys.IsKeyDown(VK_Control), keys.IsKeyDown(VK_Shift), keys.IsKeyDown(VK_Alt)};
}

TKey KeyOfValue(int nValue) {
    return {nValue & 0xFF, (nValue & KEY_CONTROL) != 0, (nValue & KEY_SHIFT) != 0, (nValue & KEY_ALT) != 0};
}

int ValueOfKey(const TKey& key) {
    return key.nKey | (key.bControl ? KEY_CONTROL : 0) | (key.bShift ? KEY_SHIFT : 0) |
           (key.bAlt ? KEY_ALT : 0);
}

std::wstring NameOfKey(const TKey& key) {
    std::wstring strName;
    if (key.bControl) strName += L"Ctrl+";
    if (key.bShift) strName += L"Shift+";
    if (key.bAlt) strName += L"Alt+";
    const int nKey = key.nKey;
    const auto* pName = std::ranges::find(KEY_NAMES, nKey, &TKeyName::nKey);
    if (pName != std::end(KEY_NAMES)) return strName + pName->pszName;
    if (0x70 <= nKey && nKey <= 0x87) return strName + L"F" + std::to_wstring(nKey - 0x6F);
    return strName + static_cast<wchar_t>(0x60 <= nKey && nKey <= 0x69 ? nKey - 0x30 : nKey);
}

std::wstring NamesOfKeys(const std::vector<TKey>& vKeys) {
    std::vector<std::wstring> vNames;
    for (const TKey& key : vKeys)
        if (const std::wstring strName = NameOfKey(key); std::ranges::count(vNames, strName) == 0)
            vNames.push_back(strName);
    return boost::algorithm::join(vNames, L", ");
}

const CShortcuts& CShortcuts::GetDefault() {
    static const CShortcuts shortcuts = Parse(FindResource("accelerators.tsv"));
    return shortcuts;
}

CShortcuts CShortcuts::Parse(std::string_view strText) {
    const auto vRows = ParseTable(strText, 3);
    if (vRows.empty()) throw deserialize_error();
    CShortcuts shortcuts;
    for (const auto& vFields : vRows) {
        const TShortcut shortcut = ParseRow(vFields);
        if (!shortcut.nCommand) continue;
        shortcuts.Add(shortcut.key, shortcut.nCommand);
        shortcuts.m_vShortcuts.back().bNoRepeat = shortcut.bNoRepeat;
    }
    return shortcuts;
}

std::string CShortcuts::Format() const {
    std::string strText;
    for (const TShortcut& shortcut : m_vShortcuts) {
        std::string strFlags;
        for (const auto& [bSet, ch] :
             {std::pair(shortcut.key.bControl, 'C'), std::pair(shortcut.key.bShift, 'S'),
              std::pair(shortcut.key.bAlt, 'A'), std::pair(shortcut.bNoRepeat, 'N')})
            if (bSet) strFlags += ch;
        char szKey[8];
        std::snprintf(szKey, sizeof szKey, "%02X", static_cast<unsigned>(shortcut.key.nKey));
        strText += (strFlags.empty() ? "-" : strFlags) + "\t" + szKey + "\t" +
                   FindCommandName(shortcut.nCommand) + "\n";
    }
    return strText;
}

CShortcuts CShortcuts::Read(CIniConfig& config) {
    const auto spSection = config.GetSection(SECTION);
    const int32_t nCount = std::clamp(spSection->GetInt(L"Count", 0), 0, MAX_COUNT);
    std::string strText;
    for (int32_t n = 1; n <= nCount; ++n) {
        std::string strLine = ToUtf8(spSection->GetString(std::to_wstring(n), L""));
        std::ranges::replace(strLine, ' ', '\t');
        strText += strLine + '\n';
    }
    try {
        return nCount > 0 ? Parse(strText) : GetDefault();
    } catch (const deserialize_error&) {
        return GetDefault();
    }
}

void CShortcuts::Write(CIniConfig& config) const {
    std::vector<std::pair<std::wstring, std::wstring>> vValues{{L"Count", L"0"}};
    if (!(*this == GetDefault())) {
        std::vector<std::string> vLines;
        const std::string strText = Format();
        boost::split(vLines, strText, boost::is_any_of("\n"));
        vLines.pop_back();
        for (std::string& strLine : vLines) {
            std::ranges::replace(strLine, '\t', ' ');
            vValues.emplace_back(std::to_wstring(vValues.size()), FromUtf8(strLine));
        }
        vValues.front().second = std::to_wstring(vLines.size());
    }
    config.GetSection(SECTION)->SetStrings(vValues);
}

void CShortcuts::Label(std::vector<TMenuItem>& vMenu) const {
    for (TMenuItem& item : vMenu) {
        Label(item.vChildren);
        const size_t nText = std::min(item.strText.size(), item.strText.find(L'\t'));
        const bool bNamed = nText < item.strText.size();
        if (item.nId == 0 || (bNamed && GetKeys(item.nId) == GetDefault().GetKeys(item.nId))) continue;
        item.strText.resize(nText);
        item.strText += NameKeys(item.nId, L"\t");
    }
}

std::wstring CShortcuts::NameKeys(int nCommand, const wchar_t* pszBefore, const wchar_t* pszBehind) const {
    const std::wstring strNames = NamesOfKeys(GetKeys(nCommand));
    return strNames.empty() ? strNames : pszBefore + strNames + pszBehind;
}

int CShortcuts::FindCommand(const TKey& key) const {
    const auto it = std::ranges::find(m_vShortcuts, key, &TShortcut::key);
    return it == m_vShortcuts.end() ? 0 : it->nCommand;
}

int CShortcuts::FindCommand(const TMessage& msg, IKeyState& keys) const {
    const TKey key = KeyOf(msg, keys);
    const auto it = std::ranges::find(m_vShortcuts, key, &TShortcut::key);
    if (key.nKey == 0 || it == m_vShortcuts.end()) return 0;
    return it->bNoRepeat && msg.lParam ? 0 : it->nCommand;
}

std::vector<TKey> CShortcuts::GetKeys(int nCommand) const {
    std::vector<TKey> vKeys;
    for (const TShortcut& shortcut : m_vShortcuts)
        if (shortcut.nCommand == nCommand) vKeys.push_back(shortcut.key);
    return vKeys;
}

void CShortcuts::Add(const TKey& key, int nCommand) {
    Remove(key);
    m_vShortcuts.push_back({key, false, nCommand});
}

void CShortcuts::Assign(const TKey& key, int nCommand) {
    Add(key, nCommand);
    const auto repeats = [=](const TShortcut& shortcut) {
        return shortcut.nCommand == nCommand && !shortcut.bNoRepeat;
    };
    m_vShortcuts.back().bNoRepeat = std::ranges::none_of(GetDefault().m_vShortcuts, repeats);
}

void CShortcuts::Remove(const TKey& key) {
    std::erase_if(m_vShortcuts, [&](const TShortcut& shortcut) { return shortcut.key == key; });
}

void CShortcuts::Reset(int nCommand) {
    Clear(nCommand);
    for (const TKey& key : GetDefault().GetKeys(nCommand)) Assign(key, nCommand);
}

void CShortcuts::Clear(int nCommand) {
    std::erase_if(m_vShortcuts, [=](const TShortcut& shortcut) { return shortcut.nCommand == nCommand; });
}
