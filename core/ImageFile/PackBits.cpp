#include "core/ImageFile/PackBits.h"

#include <algorithm>

namespace {

constexpr ptrdiff_t MAX_REPEAT = 128;
constexpr ptrdiff_t MAX_LITERAL = 127; ///< one less than the format allows

} // namespace

void AppendPackBits(std::string& strBytes, const uint8_t* pRow, size_t nCount) {
    const uint8_t* const pEnd = pRow + nCount;
    while (pRow != pEnd) {
        const uint8_t* const pLimit = pRow + std::min(MAX_REPEAT, pEnd - pRow);
        const uint8_t uValue = *pRow;
        const uint8_t* p = std::find_if(pRow + 1, pLimit, [&](uint8_t u) { return u != uValue; });
        if (p - pRow >= 2) {
            strBytes += static_cast<char>(257 - (p - pRow));
            strBytes += static_cast<char>(uValue);
        } else {
            // Two equal bytes inside a literal are cheaper than the two packets needed to split it.
            const uint8_t* const pStop = pRow + std::min(MAX_LITERAL, pEnd - pRow);
            while (p != pStop && (pEnd - p < 3 || p[0] != p[1] || p[0] != p[2])) ++p;
            strBytes += static_cast<char>(p - pRow - 1);
            strBytes.append(reinterpret_cast<const char*>(pRow), static_cast<size_t>(p - pRow));
        }
        pRow = p;
    }
}
