#include "core/MainFrame/Manual.h"

#include "core/AppModule/AppModule.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/Commands/Commands.h"
#include "core/Commands/MenuTable.h"
#include "core/Commands/Shortcuts.h"
#include "core/IniConfig/IniConfig.h"
#include "core/MainFrame/KeyCommands.h"
#include "core/Platform/Manual.h"
#include "core/Platform/Platform.h"

#include <boost/algorithm/string/replace.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view TABLE_BEGIN = "<!-- keys -->";
constexpr std::string_view TABLE_END = "<!-- /keys -->";
constexpr std::string_view KEY_BEGIN = "<kbd data-command=\"";
constexpr std::string_view KEY_END = "</kbd>";
constexpr wchar_t NO_KEY[] = L"キーなし";
constexpr wchar_t BELOW[] = L" → ";

constexpr wchar_t WIDTH[] = L"Width";
constexpr wchar_t HEIGHT[] = L"Height";
constexpr wchar_t ZOOM[] = L"Zoom";

std::string ToHtml(const std::wstring& strText) {
    std::string str = ToUtf8(strText);
    boost::replace_all(str, "&", "&amp;");
    boost::replace_all(str, "<", "&lt;");
    return str;
}

// Appends a row for each command with a key. `strWay` names the popups above.
void AppendRows(std::string& strRows, const std::vector<TMenuItem>& vMenu, const std::wstring& strWay,
                const CShortcuts& shortcuts) {
    for (const TMenuItem& item : vMenu) {
        const std::wstring strText = strWay + PlainTextOf(item.strText);
        AppendRows(strRows, item.vChildren, strText + BELOW, shortcuts);
        const std::vector<TKey> vKeys = item.nId ? shortcuts.GetKeys(item.nId) : std::vector<TKey>();
        if (vKeys.empty()) continue;
        strRows += "<tr><td>" + ToHtml(strText) + "</td><td><kbd>" + ToHtml(NamesOfKeys(vKeys)) +
                   "</kbd></td></tr>\n";
    }
}

std::string MakeTable(const CShortcuts& shortcuts) {
    std::string strTable;
    for (const TMenuItem& popup : ListKeyCommands()) {
        std::string strRows;
        AppendRows(strRows, popup.vChildren, {}, shortcuts);
        if (strRows.empty()) continue;
        strTable += "<tr><th colspan=\"2\">" + ToHtml(PlainTextOf(popup.strText)) + "</th></tr>\n" + strRows;
    }
    return "\n<table>\n" + strTable + "</table>\n";
}

// The text of a key beside the command's name: the one that stands there if it still is the command's.
std::string KeyText(const std::string& strCommand, const std::string& strText, const CShortcuts& shortcuts) {
    const std::vector<TKey> vKeys = shortcuts.GetKeys(FindCommandId(strCommand));
    const auto isText = [&](const TKey& key) { return ToHtml(NameOfKey(key)) == strText; };
    if (std::ranges::any_of(vKeys, isText)) return strText;
    return ToHtml(vKeys.empty() ? NO_KEY : NameOfKey(vKeys.front()));
}

boost::shared_ptr<CIniConfigData> OpenSection() {
    return g_AppModule.GetSettings().GetSection(L"Windows")->GetSection(L"Manual");
}

} // namespace

std::string FillKeys(std::string strHtml, const CShortcuts& shortcuts) {
    const size_t nTable = strHtml.find(TABLE_BEGIN);
    const size_t nEnd = strHtml.find(TABLE_END);
    if (nTable < nEnd && nEnd != std::string::npos) {
        const size_t nFrom = nTable + TABLE_BEGIN.size();
        strHtml.replace(nFrom, nEnd - nFrom, MakeTable(shortcuts));
    }
    for (size_t n = strHtml.find(KEY_BEGIN); n != std::string::npos; n = strHtml.find(KEY_BEGIN, n)) {
        n += KEY_BEGIN.size();
        const size_t nName = strHtml.find("\">", n);
        const size_t nClose = strHtml.find(KEY_END, n);
        if (nName >= nClose || nClose == std::string::npos) break;
        const size_t nText = nName + 2;
        strHtml.replace(
            nText, nClose - nText,
            KeyText(strHtml.substr(n, nName - n), strHtml.substr(nText, nClose - nText), shortcuts));
    }
    return strHtml;
}

void ShowManual(const TPlatform& platform, IWindow& owner, const CShortcuts& shortcuts) {
    const auto spSection = OpenSection();
    TManualSetup setup{
        {{spSection->GetInt(WIDTH, 0), spSection->GetInt(HEIGHT, 0)},
         spSection->GetInt(ZOOM, TManualLook().nZoom)},
        [&](std::string strHtml) { return FillKeys(std::move(strHtml), shortcuts); },
        [](const TManualLook& look) {
            OpenSection()->SetInts({{WIDTH, look.sz.cx}, {HEIGHT, look.sz.cy}, {ZOOM, look.nZoom}});
        }};
    if (!platform.manual.Show(owner, setup))
        throw refused_error(
            L"マニュアルのファイルが見つかりません。\nVellumcraft をインストールし直してください。");
}
