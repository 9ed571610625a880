#include "core/Base/Text.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr uint32_t REPLACEMENT = 0xFFFD;
constexpr bool PAIRS = sizeof(wchar_t) == 2; ///< wide text is UTF-16 here, else UTF-32

template <class Char>
bool EqualFolded(std::basic_string_view<Char> a, std::basic_string_view<Char> b) {
    auto fold = [](Char c) { return c >= 'A' && c <= 'Z' ? static_cast<Char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](Char x, Char y) { return fold(x) == fold(y); });
}

// Decodes one code point at `i` and moves past it; skips one byte of an ill-formed sequence.
uint32_t DecodeOne(std::string_view s, size_t& i) {
    const auto byte = [&](size_t n) { return static_cast<uint8_t>(s[n]); };
    const uint8_t uLead = byte(i);
    const int nTail = uLead < 0x80   ? 0
                      : uLead < 0xC2 ? -1
                      : uLead < 0xE0 ? 1
                      : uLead < 0xF0 ? 2
                      : uLead < 0xF5 ? 3
                                     : -1;
    if (nTail < 0 || i + static_cast<size_t>(nTail) >= s.size()) {
        ++i;
        return REPLACEMENT;
    }
    uint32_t uCode = nTail == 0 ? uLead : uLead & (0x3Fu >> nTail);
    for (int n = 1; n <= nTail; ++n) {
        if ((byte(i + static_cast<size_t>(n)) & 0xC0) != 0x80) {
            ++i;
            return REPLACEMENT;
        }
        uCode = uCode << 6 | (byte(i + static_cast<size_t>(n)) & 0x3Fu);
    }
    const bool bOverlong = (nTail == 2 && uCode < 0x800) || (nTail == 3 && uCode < 0x10000);
    if (bOverlong || uCode > 0x10FFFF || (uCode >= 0xD800 && uCode < 0xE000)) {
        ++i;
        return REPLACEMENT;
    }
    i += static_cast<size_t>(nTail) + 1;
    return uCode;
}

// Takes one code point at `i` and moves past it.
uint32_t TakeWide(std::wstring_view strText, size_t& i) {
    const uint32_t u = static_cast<uint32_t>(strText[i++]);
    const bool bFirst = PAIRS && u >= 0xD800 && u < 0xDC00;
    if (bFirst && i < strText.size() && strText[i] >= 0xDC00 && strText[i] < 0xE000)
        return 0x10000 + ((u & 0x3FF) << 10) + (static_cast<uint32_t>(strText[i++]) & 0x3FF);
    return u > 0x10FFFF || (u >= 0xD800 && u < 0xE000) ? REPLACEMENT : u;
}

} // namespace

void AppendCodePoint(std::wstring& strText, uint32_t uCode) {
    if (PAIRS && uCode >= 0x10000) {
        strText += static_cast<wchar_t>(0xD7C0 + (uCode >> 10));
        strText += static_cast<wchar_t>(0xDC00 + (uCode & 0x3FF));
    } else {
        strText += static_cast<wchar_t>(uCode);
    }
}

std::wstring FromUtf8(std::string_view strBytes) {
    std::wstring strText;
    strText.reserve(strBytes.size());
    for (size_t i = 0; i < strBytes.size();) AppendCodePoint(strText, DecodeOne(strBytes, i));
    return strText;
}

std::string ToUtf8(std::wstring_view strText) {
    std::string strBytes;
    strBytes.reserve(strText.size());
    for (size_t i = 0; i < strText.size();) {
        const uint32_t u = TakeWide(strText, i);
        if (u < 0x80) {
            strBytes += static_cast<char>(u);
        } else if (u < 0x800) {
            strBytes += static_cast<char>(0xC0 | u >> 6);
            strBytes += static_cast<char>(0x80 | (u & 0x3F));
        } else if (u < 0x10000) {
            strBytes += static_cast<char>(0xE0 | u >> 12);
            strBytes += static_cast<char>(0x80 | (u >> 6 & 0x3F));
            strBytes += static_cast<char>(0x80 | (u & 0x3F));
        } else {
            strBytes += static_cast<char>(0xF0 | u >> 18);
            strBytes += static_cast<char>(0x80 | (u >> 12 & 0x3F));
            strBytes += static_cast<char>(0x80 | (u >> 6 & 0x3F));
            strBytes += static_cast<char>(0x80 | (u & 0x3F));
        }
    }
    return strBytes;
}

bool EqualNoCase(std::string_view a, std::string_view b) { return EqualFolded(a, b); }
bool EqualNoCase(std::wstring_view a, std::wstring_view b) { return EqualFolded(a, b); }

std::wstring_view ExtensionOf(std::wstring_view strPath) {
    const std::wstring_view strName = FileNameOf(strPath);
    const size_t nDot = strName.rfind(L'.');
    return nDot == std::wstring_view::npos ? std::wstring_view{} : strName.substr(nDot);
}

std::wstring_view FileNameOf(std::wstring_view strPath) {
    const size_t nSlash = strPath.find_last_of(L"/\\");
    return nSlash == std::wstring_view::npos ? strPath : strPath.substr(nSlash + 1);
}
