#include "core/Base/Decimal.h"

#include <cstdint>

namespace {

constexpr int64_t LARGEST = 1'000'000;
constexpr int64_t MILLIONTH = 1'000'000; ///< further digits change nothing

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

} // namespace

std::wstring FormatParts(int nValue, int nParts) {
    const int64_t n = (int64_t{nValue} * 200 + nParts) / (int64_t{nParts} * 2);
    const std::wstring strHundredths = std::to_wstring(100 + n % 100);
    return std::to_wstring(n / 100) + L"." + strHundredths.substr(1);
}

std::optional<int> ParseParts(std::wstring_view str, int nParts) {
    const size_t nFirst = str.find_first_not_of(L" \t　");
    if (nFirst == str.npos) return {};
    str = str.substr(nFirst, str.find_last_not_of(L" \t　") + 1 - nFirst);
    int64_t nWhole = 0, nFraction = 0, nUnit = MILLIONTH;
    bool bPoint = false, bDigit = false;
    for (const wchar_t c : str) {
        if (c == L'.' && !bPoint) {
            bPoint = true;
            continue;
        }
        if (!IsDigit(c)) return {};
        bDigit = true;
        if (!bPoint)
            nWhole = nWhole * 10 + (c - L'0');
        else
            nFraction += (c - L'0') * (nUnit /= 10);
        if (nWhole > LARGEST) return {};
    }
    if (!bDigit) return {};
    const int64_t n = (nWhole * MILLIONTH + nFraction) * nParts;
    const int64_t nRounded = (2 * n + MILLIONTH) / (2 * MILLIONTH);
    if (nRounded > LARGEST) return {};
    return static_cast<int>(nRounded);
}
