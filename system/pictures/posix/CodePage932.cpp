#include "system/pictures/CodePage932.h"

#include <iconv.h>

#include <bit>
#include <cstdint>

namespace {

// Owns the C library's converter from wide characters.
class CConverter {
public:
    CConverter() : m_converter(iconv_open("CP932", "WCHAR_T")) {}
    ~CConverter() {
        if (IsOpen()) iconv_close(m_converter);
    }
    CConverter(const CConverter&) = delete;
    CConverter& operator=(const CConverter&) = delete;

    /// Encodes one character; empty when the code page lacks it or the machine has no table.
    std::string Encode(wchar_t ch) {
        if (ch >= 0 && ch < 0x80) return {static_cast<char>(ch)};
        char bytes[4];
        char* pIn = reinterpret_cast<char*>(&ch);
        char* pOut = bytes;
        size_t nIn = sizeof ch;
        size_t nOut = sizeof bytes;
        if (!IsOpen() || iconv(m_converter, &pIn, &nIn, &pOut, &nOut) == static_cast<size_t>(-1)) return {};
        return {bytes, pOut};
    }

private:
    bool IsOpen() const { return m_converter != std::bit_cast<iconv_t>(intptr_t{-1}); }

    iconv_t m_converter;
};

} // namespace

std::string EncodeCodePage932(std::wstring_view strText, size_t nLimit) {
    CConverter converter;
    std::string strBytes;
    for (const wchar_t ch : strText) {
        std::string strChar = converter.Encode(ch);
        if (strChar.empty()) strChar.push_back('?');
        if (strBytes.size() + strChar.size() > nLimit) break;
        strBytes += strChar;
    }
    return strBytes;
}
