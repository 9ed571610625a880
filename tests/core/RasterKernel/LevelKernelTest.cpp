#include "core/RasterKernel/LevelKernel.h"
#include "core/Base/Failure.h"
#include "tests/support/TargetTest.h"

TEST(LevelTable, KeepsWhatLiesBetweenAtGammaOne) {
    for (const auto& [nLow, nHigh] : std::vector<std::pair<int, int>>{
             {0, 255}, {100, 101}, {20, 200}, {0, 1}, {254, 255}, {3, 254}, {77, 130}, {1, 229}}) {
        const TLevelTable table = MakeLevelTable({uint8_t(nLow), uint8_t(nHigh)});
        for (int i = 0; i < 256; ++i)
            EXPECT_EQ(table[size_t(i)], i <= nLow ? 0 : i >= nHigh ? 255 : i) << nLow << ' ' << nHigh;
    }
    EXPECT_THROW(MakeLevelTable({9, 9, 1}), constraint_violation);
    EXPECT_THROW(MakeLevelTable({0, 255, 0.09F}), constraint_violation);
    EXPECT_THROW(MakeLevelTable({0, 255, 4.1F}), constraint_violation);
}

TEST(LevelTable, BendsWhatLiesBetweenByGamma) {
    EXPECT_EQ(MakeLevelTable({0, 255, 2})[64], 127) << "the root of 64 * 255 is 127.7";
    EXPECT_EQ(MakeLevelTable({10, 110, 2})[35], 60) << "half of 100, not just below it";
    EXPECT_EQ(MakeLevelTable({10, 110, 0.5F})[40], 19) << "9 of 100";
    EXPECT_EQ(MakeLevelTable({10, 110, 0.1F})[11], 10) << "never below the low level";
    for (const float fGamma : {0.1F, 0.37F, 0.8F, 1.3F, 2.2F, 4.0F}) {
        const TLevelTable table = MakeLevelTable({13, 240, fGamma});
        for (int i = 14; i < 240; ++i)
            EXPECT_EQ(table[size_t(i)], 13 + int(std::pow((i - 13) / 227.0, 1.0 / fGamma) * 227 + 0.0005))
                << i;
    }
}

TEST(LevelTable, PinStandsInTheMiddleForGammaOne) {
    EXPECT_EQ(PlaceOfGamma(1), 0.5);
    EXPECT_EQ(PlaceOfGamma(2), 0.25);
    EXPECT_EQ(GammaOfPlace(0.5), 1);
    EXPECT_EQ(GammaOfPlace(0), 4);
    EXPECT_EQ(GammaOfPlace(0.05), 4);
    EXPECT_EQ(GammaOfPlace(1), 0.1F);
    EXPECT_NEAR(GammaOfPlace(PlaceOfGamma(3.3F)), 3.3, 1e-6);
}

TEST(LevelKernel, CountsVisibleSelectedPixelsUnderTheirLargestChannel) {
    const uint8_t auR[] = {9, 9, 9, 0, 7}, auG[] = {5, 5, 5, 8, 7}, auAlpha[] = {0, 1, 255, 3, 4},
                  auMask[] = {255, 255, 0, 1, 2};
    const uint8_t* const apPlanes[] = {auR, auG};
    TLevelCounts aCounts{}, aMasked{}, aExpected{}, aExpectedMasked{};
    aExpected[9] = 2, aExpected[8] = aExpected[7] = 1;
    aExpectedMasked[9] = aExpectedMasked[8] = aExpectedMasked[7] = 1;
    CountLevels(aCounts, apPlanes, 2, auAlpha, nullptr, 5);
    CountLevels(aMasked, apPlanes, 2, auAlpha, auMask, 5);
    EXPECT_EQ(aCounts, aExpected);
    EXPECT_EQ(aMasked, aExpectedMasked);
}

TEST(LevelKernel, SoftMaskMixesTowardsTheOldLevel) {
    TLevelTable table{};
    table[50] = 255;
    const uint8_t auMask[] = {0, 1, 128, 254, 255};
    const auto apply = [&](uint8_t uLevel) {
        std::vector<uint8_t> v(5, uLevel);
        ApplyLevels(v.data(), v.data(), auMask, table, 5);
        return v;
    };
    EXPECT_EQ(apply(50), (std::vector<uint8_t>{50, 50, 152, 254, 255}));
    EXPECT_EQ(apply(200), (std::vector<uint8_t>{200, 200, 100, 1, 0})) << "200 * 128 / 255 is 100";
}

using LevelKernels_ = CTargetTest;

TEST_P(LevelKernels_, FormsAreEqual) {
    constexpr size_t COUNT = 65536;
    std::mt19937 random(3);
    TLevelTable table;
    for (uint8_t& u : table) u = uint8_t(random());
    std::vector<uint8_t> vOld(COUNT), vValue(COUNT), vMask(COUNT);
    for (size_t i = 0; i < COUNT; ++i) vOld[i] = uint8_t(i), vValue[i] = uint8_t(i >> 8);
    for (const size_t nCount : {COUNT, COUNT - 1, size_t{95}, size_t{33}, size_t{0}})
        for (int nMask = 0; nMask < 256; nMask += nCount < COUNT ? 51 : 1) {
            std::fill(vMask.begin(), vMask.end(), uint8_t(nMask));
            auto vPlain = vOld, vVector = vOld;
            PlainLevelKernels().pMix(vPlain.data(), vOld.data(), vValue.data(), vMask.data(), nCount);
            VectorLevelKernels().pMix(vVector.data(), vVector.data(), vValue.data(), vMask.data(), nCount);
            ASSERT_EQ(vPlain, vVector) << nMask;
            PlainLevelKernels().pLookUp(vPlain.data(), vPlain.data(), table, nCount);
            VectorLevelKernels().pLookUp(vVector.data(), vVector.data(), table, nCount);
            ASSERT_EQ(vPlain, vVector) << nMask;
        }
}

ON_EVERY_TARGET(LevelKernels_);
