// The built module as a file: what it exports and the property list inside it.
#include "core/Base/Resource.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string OutputOf(const std::string& strCommand) {
    std::string strOutput;
    FILE* const pPipe = popen(strCommand.c_str(), "r");
    char szLine[512];
    while (pPipe && std::fgets(szLine, sizeof szLine, pPipe)) strOutput += szLine;
    EXPECT_TRUE(pPipe && pclose(pPipe) == 0) << strCommand;
    return strOutput;
}

/// Takes little-endian numbers and bytes off the front.
struct CTaker {
    std::string_view strRest;
    std::string Bytes(size_t n) {
        EXPECT_GE(strRest.size(), n);
        const std::string str(strRest.substr(0, n));
        strRest.remove_prefix(std::min(n, strRest.size()));
        return str;
    }
    uint32_t Number(size_t n) {
        uint32_t u = 0;
        const std::string str = Bytes(n);
        for (size_t i = 0; i < str.size(); ++i)
            u |= static_cast<uint32_t>(static_cast<uint8_t>(str[i])) << 8 * i;
        return u;
    }
    std::string Code() {
        const std::string str = Bytes(4);
        return {str.rbegin(), str.rend()};
    }
};

std::string Padded(std::string str, size_t n) { return str.resize(n), str; }

TEST(Module, PluginMainIsTheOnlyExport) {
    const std::string strSymbols = OutputOf("nm -D --defined-only '" VELLUM_MODULE "'");
    EXPECT_EQ(std::count(strSymbols.begin(), strSymbols.end(), '\n'), 1) << strSymbols;
    EXPECT_NE(strSymbols.find(" T PluginMain\n"), std::string::npos) << strSymbols;
}

TEST(Module, CarriesThePropertyListInItsOwnSection) {
    CTempFolder folder;
    const std::string strFile = folder.File("pipl").native();
    OutputOf("objcopy -O binary --only-section=.pipl '" VELLUM_MODULE "' '" + strFile + "'");
    std::ifstream stream(strFile, std::ios::binary);
    const std::string strSection{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(strSection, FindResource("pipl64.bin"));
}

TEST(Module, StoredPropertyListsAreWhatTheTableGives) {
    EXPECT_EQ(std::system("python3 '" VELLUM_SOURCE "/tools/make_pipl.py' --check"), 0);
}

TEST(Module, PropertyListReadsAsHostsReadIt) {
    for (const auto& [pszFile, pszCodeKey] : {std::pair("pipl64.bin", "8664"), {"pipl32.bin", "wx86"}}) {
        const std::string_view strFile = FindResource(pszFile);
        ASSERT_EQ(strFile.size(), 278u);
        CTaker taker{strFile};
        EXPECT_EQ(taker.Number(2), 1u);
        EXPECT_EQ(taker.Number(4), 0u);
        ASSERT_EQ(taker.Number(4), 9u);
        std::vector<std::string> vKeys;
        std::map<std::string, std::string> mapValues;
        for (int i = 0; i < 9; ++i) {
            EXPECT_EQ(taker.Code(), "8BIM");
            vKeys.push_back(taker.Code());
            EXPECT_EQ(taker.Number(4), 0u);
            const uint32_t uLength = taker.Number(4);
            EXPECT_EQ(uLength % 4, 0u);
            mapValues[vKeys.back()] = taker.Bytes(uLength);
        }
        EXPECT_TRUE(taker.strRest.empty());
        EXPECT_EQ(vKeys, (std::vector<std::string>{"kind", "name", "catg", "vers", pszCodeKey, "mode", "enbl",
                                                   "ms32", "fici"}));
        EXPECT_EQ(mapValues["kind"], "MFB8");
        EXPECT_EQ(mapValues["name"], Padded("\x0BVellumcraft", 16));
        EXPECT_EQ(mapValues["catg"], mapValues["name"]);
        EXPECT_EQ(CTaker{mapValues["vers"]}.Number(4), 0x00040000u);
        EXPECT_EQ(mapValues[pszCodeKey], Padded("PluginMain", 12));
        EXPECT_EQ(mapValues["mode"], Padded("\x10", 4));
        EXPECT_EQ(mapValues["enbl"], Padded("in (PSHOP_ImageMode, RGBMode)", 32));
        CTaker sides{mapValues["ms32"]};
        EXPECT_EQ(sides.Number(4), 2000000u);
        EXPECT_EQ(sides.Number(4), 2000000u);
        EXPECT_EQ(mapValues["fici"].size(), 28u);
        for (size_t i = 0; i < 28; i += 4)
            EXPECT_EQ(mapValues["fici"].substr(i, 4), Padded("\x01\x01\x02", 4)) << i;
    }
}

} // namespace
