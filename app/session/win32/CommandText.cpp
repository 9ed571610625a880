#include "app/session/win32/CommandText.h"

#include "core/Base/Text.h"

std::wstring CommandText(const std::vector<std::string>& vCommand) {
    std::wstring strText;
    for (const std::string& strArgument : vCommand) {
        strText += strText.empty() ? L"\"" : L" \"";
        size_t nSlashes = 0;
        for (const wchar_t ch : FromUtf8(strArgument)) {
            // Backslashes stand for themselves but before a quotation mark.
            if (ch == L'"') strText.append(nSlashes + 1, L'\\');
            nSlashes = ch == L'\\' ? nSlashes + 1 : 0;
            strText += ch;
        }
        strText.append(nSlashes, L'\\') += L'"';
    }
    return strText;
}
