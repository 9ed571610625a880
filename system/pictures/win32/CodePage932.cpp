#include "system/pictures/CodePage932.h"

#include <windows.h>

namespace {

constexpr UINT CODE_PAGE = 932;

// Encodes one character of one or two units; empty when the code page lacks it.
std::string Encode(std::wstring_view strUnits) {
    char bytes[4];
    BOOL bReplaced = FALSE;
    const int n =
        WideCharToMultiByte(CODE_PAGE, WC_NO_BEST_FIT_CHARS, strUnits.data(),
                            static_cast<int>(strUnits.size()), bytes, sizeof bytes, nullptr, &bReplaced);
    return bReplaced || n <= 0 ? std::string() : std::string(bytes, static_cast<size_t>(n));
}

} // namespace

std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit) {
    std::string strBytes;
    while (!strText.empty()) {
        const bool bPair = strText.size() > 1 && IS_SURROGATE_PAIR(strText[0], strText[1]);
        const std::wstring_view strUnits = strText.substr(0, bPair ? 2 : 1);
        strText.remove_prefix(strUnits.size());
        std::string strChar = Encode(strUnits);
        if (strChar.empty()) strChar.push_back('?');
        if (strBytes.size() + strChar.size() > nLimit) break;
        strBytes += strChar;
    }
    return strBytes;
}
