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

#include <string_view>
#include <vector>

namespace {

constexpr std::string_view TABLE_BEGIN = "<!-- keys -->";
constexpr std::string_view TABLE_END = "<!-- /keys -->";
constexpr std::string_view KEY_BEGIN = "<kbd data-command=\"";
constexpr std::string_view KEY_END = "</kbd>";
constexpr char NO_KEY[] = "キーなし";
const std::string SEPARATOR = ", "; ///< between a command's keys
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

// All commands with their keys behind their texts. Menus leave keys out, and name some that are no shortcuts:
// those that the tools take.
std::vector<TMenuItem> ListCommandsWithKeys(const CShortcuts& shortcuts) {
    std::vector<TMenuItem> vCommands = ListKeyCommands();
    shortcuts.Label(vCommands);
    ForEachCommand(vCommands, [&](TMenuItem& item) {
        const std::wstring strKeys = shortcuts.NameKeys(item.nId, L"\t");
        if (!strKeys.empty()) item.strText = PlainTextOf(item.strText) + strKeys;
    });
    return vCommands;
}

std::wstring KeysOf(const TMenuItem& item) {
    const size_t nTab = item.strText.find(L'\t');
    return nTab == std::wstring::npos ? std::wstring() : item.strText.substr(nTab + 1);
}

// Appends a row for each command with a key. `strWay` names the popups above.
void AppendRows(std::string& strRows, const std::vector<TMenuItem>& vMenu, const std::wstring& strWay) {
    for (const TMenuItem& item : vMenu) {
        const std::wstring strText = strWay + PlainTextOf(item.strText);
        AppendRows(strRows, item.vChildren, strText + BELOW);
        if (const std::wstring strKeys = KeysOf(item); !strKeys.empty())
            strRows +=
                "<tr><td>" + ToHtml(strText) + "</td><td><kbd>" + ToHtml(strKeys) + "</kbd></td></tr>\n";
    }
}

std::string MakeTable(const std::vector<TMenuItem>& vCommands) {
    std::string strTable;
    for (const TMenuItem& popup : vCommands) {
        std::string strRows;
        AppendRows(strRows, popup.vChildren, {});
        if (strRows.empty()) continue;
        strTable += "<tr><th colspan=\"2\">" + ToHtml(PlainTextOf(popup.strText)) + "</th></tr>\n" + strRows;
    }
    return "\n<table>\n" + strTable + "</table>\n";
}

// The text of a key beside the command's name: the one that stands there if it still is the command's.
std::string KeyText(const std::string& strCommand, const std::string& strText,
                    const std::vector<TMenuItem>& vCommands) {
    std::string strKeys;
    const int nCommand = FindCommandId(strCommand);
    ForEachCommand(vCommands, [&](const TMenuItem& item) {
        if (item.nId == nCommand) strKeys = ToHtml(KeysOf(item));
    });
    if ((SEPARATOR + strKeys + SEPARATOR).find(SEPARATOR + strText + SEPARATOR) != std::string::npos)
        return strText;
    return strKeys.empty() ? NO_KEY : strKeys.substr(0, strKeys.find(SEPARATOR));
}

boost::shared_ptr<CIniConfigData> OpenSection() {
    return g_AppModule.GetSettings().GetSection(L"Windows")->GetSection(L"Manual");
}

} // namespace

std::string FillKeys(std::string strHtml, const CShortcuts& shortcuts) {
    const std::vector<TMenuItem> vCommands = ListCommandsWithKeys(shortcuts);
    const size_t nTable = strHtml.find(TABLE_BEGIN);
    const size_t nEnd = strHtml.find(TABLE_END);
    if (nTable < nEnd && nEnd != std::string::npos) {
        const size_t nFrom = nTable + TABLE_BEGIN.size();
        strHtml.replace(nFrom, nEnd - nFrom, MakeTable(vCommands));
    }
    for (size_t n = strHtml.find(KEY_BEGIN); n != std::string::npos; n = strHtml.find(KEY_BEGIN, n)) {
        n += KEY_BEGIN.size();
        const size_t nName = strHtml.find("\">", n);
        const size_t nClose = strHtml.find(KEY_END, n);
        if (nName >= nClose || nClose == std::string::npos) break;
        const size_t nText = nName + 2;
        strHtml.replace(
            nText, nClose - nText,
            KeyText(strHtml.substr(n, nName - n), strHtml.substr(nText, nClose - nText), vCommands));
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
