#include "core/Tools/PenCurve.h"

#include "core/IniConfig/IniConfig.h"
#include "core/Platform/Pen.h"
#include "tests/support/MemoryFiles.h"

#include <gtest/gtest.h>

TEST(PenCurve, StretchesAHandsPressuresOverTheWholeRange) {
    const TPenCurve curve{TPenCurve::FULL / 10, TPenCurve::FULL / 5, TPenCurve::FULL / 2};
    for (const uint32_t uRange : {1004u, 64225u}) {
        EXPECT_EQ(curve.Apply(0, uRange), 0u);
        EXPECT_EQ(curve.Apply(uRange / 2 + 1, uRange), uRange);
        EXPECT_EQ(curve.Apply(uRange, uRange), uRange);
        EXPECT_NEAR(curve.Apply(uRange / 5, uRange), uRange / 2, uRange / 100);
        // The lightest touch still reaches the tool, which counts to 1024.
        EXPECT_GE(uint64_t{curve.Apply(1, uRange)} * 1024 / uRange, 1u);
        EXPECT_LE(uint64_t{curve.Apply(uRange / 10, uRange)} * 1024 / uRange, 2u);
        for (uint32_t u = 1; u <= uRange; ++u) {
            ASSERT_GE(curve.Apply(u, uRange), curve.Apply(u - 1, uRange)) << u;
            ASSERT_EQ(TPenCurve().Apply(u, uRange), u);
        }
    }
}

TEST(PenCurve, IsFittedToTheReportedPressures) {
    CPressHistogram light;
    for (uint32_t n = 0; n < 900; ++n) light.Add(100 + n % 300, 1000);
    const auto curve = light.Fit();
    ASSERT_TRUE(curve);
    EXPECT_NEAR(curve->uLow, TPenCurve::FULL * 115 / 1000, 400);
    EXPECT_NEAR(curve->uMiddle, TPenCurve::FULL * 250 / 1000, 400);
    EXPECT_NEAR(curve->uHigh, TPenCurve::FULL * 385 / 1000, 400);
    CPressHistogram few, same, lopsided;
    for (uint32_t n = 0; n < 1000; ++n) {
        if (n < 99) few.Add(n * 10 + 1, 1000);
        same.Add(500, 1000);
        lopsided.Add(n < 800 ? 100 : 900, 1000);
    }
    EXPECT_FALSE(few.Fit());
    EXPECT_FALSE(same.Fit());
    const auto steep = lopsided.Fit();
    ASSERT_TRUE(steep);
    EXPECT_EQ(steep->uMiddle, steep->uLow + (steep->uHigh - steep->uLow) / 5);
}

TEST(PenCurve, IsStoredAndDamagedValuesCountAsNone) {
    CMemoryFiles files;
    CIniConfig config(L"/a.ini", files);
    EXPECT_EQ(TPenCurve::Read(config), TPenCurve());
    const TPenCurve curve{1000, 20000, 60000};
    curve.Write(config);
    EXPECT_EQ(TPenCurve::Read(config), curve);
    for (const auto& [pszKey, nValue] :
         {std::pair(L"PressMiddle", 1000), std::pair(L"PressHigh", 65537), std::pair(L"PressLow", -1)}) {
        curve.Write(config);
        config.GetSection(L"Tablet")->SetInt(pszKey, nValue);
        EXPECT_EQ(TPenCurve::Read(config), TPenCurve()) << nValue;
    }
}
