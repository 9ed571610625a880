#include "core/Commands/MenuTable.h"

#include "core/Base/Failure.h"
#include "core/Base/Resource.h"
#include "core/Base/Table.h"
#include "core/Base/Text.h"
#include "core/Commands/Commands.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/split.hpp>

#include <charconv>
#include <string>
#include <string_view>

namespace {

using TFields = std::vector<std::string>;

// The rows of a resource's table.
std::vector<TFields> ReadTable(std::string_view strName, size_t nFields) {
    try {
        const std::vector<TFields> vRows = ParseTable(FindResource(strName), nFields);
        if (!vRows.empty()) return vRows;
    } catch (const deserialize_error&) {
        throw internal_error(L"ReadTable: bad row in " + FromUtf8(strName));
    }
    throw internal_error(L"ReadTable: no table " + FromUtf8(strName));
}

int ToNumber(const std::string& str) {
    int n = 0;
    const auto [pEnd, error] = std::from_chars(str.data(), str.data() + str.size(), n);
    if (error != std::errc() || pEnd != str.data() + str.size())
        throw internal_error(L"ReadTable: bad number.");
    return n;
}

// The id of a command named in a table, 0 for a line without one.
int ToCommand(const std::string& strName) {
    if (strName == "-") return 0;
    const int nId = FindCommandId(strName);
    if (!nId) throw internal_error(L"ReadTable: no command " + FromUtf8(strName));
    return nId;
}

} // namespace

std::vector<TMenuItem> LoadMenu(int nMenu) {
    const std::string strMenu = std::to_string(nMenu);
    TMenuItem root;
    for (const TFields& vFields : ReadTable("menus.tsv", 4)) {
        std::vector<std::string> vMenus;
        boost::split(vMenus, vFields[0], boost::is_any_of(","));
        if (std::find(vMenus.begin(), vMenus.end(), strMenu) == vMenus.end()) continue;
        TMenuItem* pParent = &root;
        for (int nLevel = ToNumber(vFields[1]); nLevel > 0; --nLevel) {
            if (pParent->vChildren.empty()) throw internal_error(L"LoadMenu: an item without its popup.");
            pParent = &pParent->vChildren.back();
        }
        std::string strText = vFields[3];
        boost::replace_all(strText, "\\t", "\t");
        pParent->vChildren.push_back({ToCommand(vFields[2]), FromUtf8(strText), {}});
    }
    return root.vChildren;
}

std::vector<int> LoadToolBar() {
    std::vector<int> vIds;
    for (const TFields& vFields : ReadTable("toolbar.tsv", 1)) vIds.push_back(ToCommand(vFields[0]));
    return vIds;
}

std::wstring PlainTextOf(std::wstring strMenuText) {
    strMenuText.resize(std::min(strMenuText.size(), strMenuText.find(L'\t')));
    if (strMenuText.ends_with(L"...")) strMenuText.resize(strMenuText.size() - 3);
    const size_t nMark = strMenuText.find(L'&');
    if (nMark == std::wstring::npos) return strMenuText;
    // A Japanese text has its mnemonic in brackets behind it.
    const bool bBracketed = nMark > 0 && strMenuText[nMark - 1] == L'(';
    return strMenuText.erase(bBracketed ? nMark - 1 : nMark, bBracketed ? 4 : 1);
}

std::vector<int> ListCommands(const std::vector<TMenuItem>& vMenu) {
    std::vector<int> vIds;
    for (const TMenuItem& item : vMenu) {
        if (item.nId) vIds.push_back(item.nId);
        const std::vector<int> vBelow = ListCommands(item.vChildren);
        vIds.insert(vIds.end(), vBelow.begin(), vBelow.end());
    }
    return vIds;
}
