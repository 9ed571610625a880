#include "app/desktop/Handover.h"

#include "system/files/FilePath.h"

#include <charconv>
#include <cstdio>

namespace {

constexpr size_t LENGTH_DIGITS = 8;

// The length of the rest of the message, nullopt when it is no length.
std::optional<size_t> ReadLength(std::string_view strBytes) {
    const std::string_view strDigits = strBytes.substr(0, LENGTH_DIGITS);
    size_t nLength = 0;
    const auto [pEnd, error] =
        std::from_chars(strDigits.data(), strDigits.data() + strDigits.size(), nLength, 16);
    const bool bNumber = error == std::errc() && pEnd == strDigits.data() + LENGTH_DIGITS;
    return bNumber && nLength <= MAX_HANDOVER ? std::optional(nLength) : std::nullopt;
}

} // namespace

std::vector<std::string> WithActivation(const std::vector<std::string>& vPaths, const std::string& strToken) {
    std::vector<std::string> vEntries = vPaths;
    if (!strToken.empty()) vEntries.insert(vEntries.begin(), std::string(ACTIVATION) + strToken);
    return vEntries;
}

std::string PackPaths(const std::vector<std::string>& vPaths) {
    std::string strPaths;
    for (const std::string& strPath : vPaths) strPaths += strPath + '\0';
    char szLength[LENGTH_DIGITS + 1];
    std::snprintf(szLength, sizeof szLength, "%08zx", strPaths.size());
    return szLength + strPaths;
}

bool IsHandoverWhole(std::string_view strBytes) {
    if (strBytes.size() < LENGTH_DIGITS) return false;
    const auto nLength = ReadLength(strBytes);
    return !nLength || strBytes.size() >= LENGTH_DIGITS + *nLength;
}

std::optional<std::vector<std::string>> UnpackPaths(std::string_view strBytes) {
    if (strBytes.size() < LENGTH_DIGITS) return std::nullopt;
    const auto nLength = ReadLength(strBytes);
    strBytes.remove_prefix(LENGTH_DIGITS);
    if (!nLength || strBytes.size() != *nLength) return std::nullopt;
    std::vector<std::string> vPaths;
    while (!strBytes.empty()) {
        const size_t nEnd = strBytes.find('\0');
        const std::string_view strPath = strBytes.substr(0, nEnd);
        const bool bToken = vPaths.empty() && strPath.starts_with(ACTIVATION);
        if (nEnd == std::string_view::npos ||
            !(PathOf(strPath).is_absolute() || strPath == NEW_DOCUMENT || bToken))
            return std::nullopt;
        vPaths.emplace_back(strPath);
        strBytes.remove_prefix(nEnd + 1);
    }
    return vPaths;
}
