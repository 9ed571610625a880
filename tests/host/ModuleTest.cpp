#include "core/Base/Resource.h"

#include <gtest/gtest.h>

namespace {

TEST(Module, ThePropertyListIsWhatHostsRead) {
    for (const auto& [pszFile, pszCodeKey] : {std::pair("pipl64.bin", "4668"), {"pipl32.bin", "68xw"}}) {
        std::string strExpected("\1\0\0\0\0\0\x09\0\0\0", 10);
        const auto add = [&](const std::string& strKey, std::string strValue, size_t cb) {
            strValue.resize(cb);
            strExpected += "MIB8" + strKey + std::string(4, '\0') + static_cast<char>(cb) +
                           std::string(3, '\0') + strValue;
        };
        add("dnik", "MFB8", 4);
        add("eman", "\x0BVellumcraft", 16);
        add("gtac", "\x0BVellumcraft", 16);
        add("srev", {0, 0, 4, 0}, 4);
        add(pszCodeKey, "PluginMain", 12);
        add("edom", "\x10", 4);
        add("lbne", "in (PSHOP_ImageMode, RGBMode)", 32);
        add("23sm", {'\x80', '\x84', 30, 0, '\x80', '\x84', 30, 0}, 8); // 2,000,000 per side
        add("icif", {1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2, 0}, 28);
        EXPECT_EQ(FindResource(pszFile), strExpected) << pszFile;
    }
}

} // namespace
