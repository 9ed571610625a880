#include "core/Base/Decimal.h"

#include <gtest/gtest.h>

namespace {

TEST(Decimal, NumbersAsUsersTypeThem) {
    EXPECT_EQ(ParseNumber(L"-12"), -12);
    EXPECT_EQ(ParseNumber(L" \t+0.1　"), 0.1);
    EXPECT_EQ(ParseNumber(L"－１２．５"), -12.5);
    EXPECT_EQ(ParseNumber(L"＋９"), 9);
    EXPECT_EQ(ParseNumber(L"−.25"), -0.25);
    EXPECT_EQ(ParseNumber(L"99999999999999999999999"), 1e9);
    EXPECT_EQ(ParseNumber(L"-1000000000.5"), -1e9);
    for (const wchar_t* psz : {L"", L" ", L"-", L"--1", L"- 1", L"1-", L".", L"1.2.3", L"1 2", L"12px",
                               L"0x1", L"1e3", L"／", L"："})
        EXPECT_FALSE(ParseNumber(psz)) << psz;
}

} // namespace
