#include "core/ImageFile/SvgText.h"

#include "core/Base/Text.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int64_t THOUSANDTHS_TO_UNIT = 1000 / 8; ///< a path unit is an eighth of a pixel

bool IsAllowed(wchar_t ch) { return ch >= 0x20 && (ch < 0x7F || ch > 0x9F) && ch != 0xFFFE && ch != 0xFFFF; }

void AppendPoint(std::string& strText, CPoint pt) {
    AppendThousandths(strText, pt.x * THOUSANDTHS_TO_UNIT);
    strText += ' ';
    AppendThousandths(strText, pt.y * THOUSANDTHS_TO_UNIT);
}

} // namespace

void AppendThousandths(std::string& strText, int64_t nThousandths) {
    if (nThousandths < 0) strText += '-';
    const auto uValue = static_cast<uint64_t>(nThousandths < 0 ? -nThousandths : nThousandths);
    strText += std::to_string(uValue / 1000);
    std::string strPart = std::to_string(1000 + uValue % 1000);
    strPart[0] = '.';
    while (strPart.back() == '0') strPart.pop_back();
    if (strPart.size() > 1) strText += strPart;
}

void AppendAttribute(std::string& strText, std::wstring_view strValue) {
    std::wstring strAllowed;
    std::copy_if(strValue.begin(), strValue.end(), std::back_inserter(strAllowed), IsAllowed);
    for (const char ch : ToUtf8(strAllowed)) {
        switch (ch) {
        case '&':
            strText += "&amp;";
            break;
        case '<':
            strText += "&lt;";
            break;
        case '>':
            strText += "&gt;";
            break;
        case '"':
            strText += "&quot;";
            break;
        default:
            strText += ch;
        }
    }
}

void AppendColor(std::string& strText, TColor color) {
    constexpr char DIGITS[] = "0123456789abcdef";
    strText += '#';
    for (const uint8_t u : {RedOf(color), GreenOf(color), BlueOf(color)}) {
        strText += DIGITS[u >> 4];
        strText += DIGITS[u & 15];
    }
}

void AppendCurve(std::string& strText, const TPolyBezier& vCurve) {
    for (size_t n = 0; n < vCurve.size(); ++n) {
        strText += n == 0 ? 'M' : n == 1 ? 'C' : ' ';
        AppendPoint(strText, vCurve[n]);
    }
    strText += 'Z';
}

void AppendBase64(std::string& strText, std::string_view strBytes) {
    constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    strText.reserve(strText.size() + (strBytes.size() + 2) / 3 * 4);
    for (size_t n = 0; n < strBytes.size(); n += 3) {
        const size_t nCount = std::min<size_t>(3, strBytes.size() - n);
        uint32_t u = 0;
        for (size_t i = 0; i < 3; ++i)
            u = u << 8 | (i < nCount ? static_cast<uint8_t>(strBytes[n + i]) : uint8_t{0});
        for (size_t i = 0; i < 4; ++i) strText += i > nCount ? '=' : DIGITS[u >> (18 - 6 * i) & 63];
    }
}
