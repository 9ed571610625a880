#include "core/Base/Decimal.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cstdint>
#include <locale>

namespace {

constexpr int64_t LARGEST_PARTS = 1'000'000;
constexpr int64_t LARGEST = 1'000'000'000; ///< its millionths are exact in a double
constexpr int64_t MILLIONTH = 1'000'000;   ///< further digits change nothing

std::wstring_view Trim(std::wstring_view str) {
    constexpr std::wstring_view SPACES = L" \t　";
    const size_t nFirst = str.find_first_not_of(SPACES);
    if (nFirst == str.npos) return {};
    return str.substr(nFirst, str.find_last_not_of(SPACES) + 1 - nFirst);
}

std::optional<int> DigitOf(wchar_t c) {
    for (const wchar_t cZero : {L'0', L'０'})
        if (c >= cZero && c <= cZero + 9) return c - cZero;
    return {};
}

/// Digits with an optional point as millionths; more than LARGEST counts as LARGEST.
std::optional<int64_t> ParseMillionths(std::wstring_view str) {
    int64_t nWhole = 0, nFraction = 0, nUnit = MILLIONTH;
    bool bPoint = false, bDigit = false;
    for (const wchar_t c : str) {
        if ((c == L'.' || c == L'．') && !bPoint) {
            bPoint = true;
            continue;
        }
        const std::optional<int> digit = DigitOf(c);
        if (!digit) return {};
        bDigit = true;
        if (bPoint)
            nFraction += *digit * (nUnit /= 10);
        else
            nWhole = std::min(nWhole * 10 + *digit, LARGEST);
    }
    if (!bDigit) return {};
    return std::min(nWhole * MILLIONTH + nFraction, LARGEST * MILLIONTH);
}

} // namespace

std::wstring FormatParts(int nValue, int nParts) {
    const int64_t n = (int64_t{nValue} * 200 + nParts) / (int64_t{nParts} * 2);
    const std::wstring strHundredths = std::to_wstring(100 + n % 100);
    return std::to_wstring(n / 100) + L"." + strHundredths.substr(1);
}

std::optional<int> ParseParts(std::wstring_view str, int nParts) {
    const std::optional<int64_t> millionths = ParseMillionths(Trim(str));
    if (!millionths || *millionths > LARGEST_PARTS * MILLIONTH) return {};
    const int64_t nRounded = (2 * *millionths * nParts + MILLIONTH) / (2 * MILLIONTH);
    if (nRounded > LARGEST_PARTS) return {};
    return static_cast<int>(nRounded);
}

std::optional<double> ParseNumber(std::wstring_view str) {
    str = Trim(str);
    const bool bSign = !str.empty() && std::wstring_view(L"+＋-－−").find(str.front()) != str.npos;
    const bool bMinus = bSign && str.front() != L'+' && str.front() != L'＋';
    const std::optional<int64_t> millionths = ParseMillionths(str.substr(bSign ? 1 : 0));
    if (!millionths) return {};
    return static_cast<double>(bMinus ? -*millionths : *millionths) / MILLIONTH;
}

std::wstring FormatNumber(const wchar_t* pszFormat, double dValue) {
    return (boost::wformat(pszFormat, std::locale::classic()) % dValue).str();
}
