#include "app/session/win32/CommandText.h"

#include "core/Base/Text.h"

namespace {

// Backslashes stand for themselves but before a quotation mark.
std::wstring Quoted(const std::wstring& strArgument) {
    if (!strArgument.empty() && strArgument.find_first_of(L" \t\"") == std::wstring::npos) return strArgument;
    std::wstring strText = L"\"";
    size_t nSlashes = 0;
    for (const wchar_t ch : strArgument) {
        if (ch == L'"') strText.append(nSlashes + 1, L'\\');
        nSlashes = ch == L'\\' ? nSlashes + 1 : 0;
        strText += ch;
    }
    return strText.append(nSlashes, L'\\') += L'"';
}

} // namespace

std::wstring CommandText(const std::vector<std::string>& vCommand) {
    std::wstring strText;
    for (const std::string& strArgument : vCommand) {
        if (!strText.empty()) strText += L' ';
        strText += Quoted(FromUtf8(strArgument));
    }
    return strText;
}
