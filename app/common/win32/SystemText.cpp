#include "app/common/win32/SystemText.h"

#include "core/Base/Text.h"

std::string DescribeSystemError(DWORD uError) {
    wchar_t* pszText = nullptr;
    // Some texts have a place for the name of a file, which the system does not know any more.
    const DWORD uLength = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                             FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                         nullptr, uError, 0, reinterpret_cast<LPWSTR>(&pszText), 0, nullptr);
    std::wstring strText(pszText ? pszText : L"", uLength);
    LocalFree(pszText);
    if (const size_t nName = strText.find(L"%1"); nName != std::wstring::npos)
        strText.replace(nName, 2, L"the file");
    while (!strText.empty() && (strText.back() <= L' ' || strText.back() == L'.')) strText.pop_back();
    if (strText.empty()) return "error " + std::to_string(uError);
    return ToUtf8(strText) + " (" + std::to_string(uError) + ")";
}
