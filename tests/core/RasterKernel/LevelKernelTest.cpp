#include "core/RasterKernel/LevelKernel.h"
#include "core/Base/Failure.h"
#include "tests/support/TargetTest.h"

using LevelKernels_ = CTargetTest;

TEST(LevelTable, KeepsWhatLiesBetweenAtGammaOne) {
    for (const auto& [nLow, nHigh] :
         std::vector<std::pair<int, int>>{{0, 255}, {100, 101}, {20, 200}, {254, 255}, {3, 254}, {1, 229}})
        for (int i = 0; i < 256; ++i)
            EXPECT_EQ(MakeLevelTable({uint8_t(nLow), uint8_t(nHigh)})[size_t(i)], i <= nLow    ? 0
                                                                                  : i >= nHigh ? 255
                                                                                               : i);
    for (const TLevels& wrong : {TLevels{9, 9, 1}, {0, 255, 0.09F}, {0, 255, 4.1F}})
        EXPECT_THROW(MakeLevelTable(wrong), constraint_violation);
}

TEST(LevelTable, BendsWhatLiesBetweenByGamma) {
    EXPECT_EQ(MakeLevelTable({0, 255, 2})[64], 127) << "the root of 64 * 255 is 127.7";
    EXPECT_EQ(MakeLevelTable({10, 110, 2})[35], 60) << "half of 100, not just below it";
    EXPECT_EQ(MakeLevelTable({10, 110, 0.1F})[11], 10) << "never below the low level";
    for (const float fGamma : {0.1F, 0.37F, 0.8F, 1.3F, 4.0F})
        for (int i = 14; i < 240; ++i)
            EXPECT_EQ(MakeLevelTable({13, 240, fGamma})[size_t(i)],
                      13 + int(std::pow((i - 13) / 227.0, 1.0 / fGamma) * 227 + 0.0005));
}

TEST(LevelTable, PinStandsInTheMiddleForGammaOne) {
    EXPECT_EQ(PlaceOfGamma(1), 0.5);
    EXPECT_EQ(PlaceOfGamma(2), 0.25);
    for (const auto& [dPlace, fGamma] :
         std::vector<std::pair<double, float>>{{0.5, 1.0F}, {-1, 4.0F}, {0.05, 4.0F}, {1, 0.1F}})
        EXPECT_EQ(GammaOfPlace(dPlace), fGamma);
    EXPECT_NEAR(GammaOfPlace(PlaceOfGamma(3.3F)), 3.3, 1e-6);
}

TEST(LevelKernel, CountsVisibleSelectedPixelsUnderTheirLargestChannel) {
    std::vector<uint8_t> vR, vG, vAlpha, vMask;
    constexpr uint32_t REPEATS = 501;
    for (uint32_t n = 0; n < REPEATS; ++n)
        for (const auto& [r, g, a, m] : std::vector<std::array<uint8_t, 4>>{
                 {9, 5, 0, 255}, {9, 5, 1, 255}, {9, 5, 255, 0}, {0, 8, 3, 1}, {7, 7, 4, 2}})
            vR.push_back(r), vG.push_back(g), vAlpha.push_back(a), vMask.push_back(m);
    const uint8_t* const apPlanes[] = {vR.data(), vG.data()};
    TLevelCounts aCounts{}, aExpected{};
    aExpected[9] = 2 * REPEATS, aExpected[8] = aExpected[7] = REPEATS;
    CountLevels(aCounts, apPlanes, 2, vAlpha.data(), nullptr, vR.size());
    EXPECT_EQ(aCounts, aExpected);
    CountLevels(aCounts, apPlanes, 2, vAlpha.data(), vMask.data(), vR.size());
    aExpected[9] += REPEATS, aExpected[8] += REPEATS, aExpected[7] += REPEATS;
    EXPECT_EQ(aCounts, aExpected) << "added";
}

TEST_P(LevelKernels_, BothFormsLookUpAndMixEveryPair) {
    constexpr size_t ALL = 65536;
    TLevelTable table;
    std::vector<uint8_t> vOld(ALL), vMask(ALL);
    for (size_t i = 0; i < 256; ++i) table[i] = uint8_t(i * 151 + i / 7);
    for (size_t i = 0; i < ALL; ++i) vOld[i] = uint8_t(i), vMask[i] = uint8_t(i >> 8);
    const auto mixed = [&](size_t i, int nValue) { return vOld[i] + (nValue - vOld[i]) * vMask[i] / 255; };
    for (const size_t nCount : {ALL, ALL - 65, size_t{31}}) {
        for (const TLevelKernels* p : {&PlainLevelKernels(), &VectorLevelKernels()}) {
            auto v = vOld;
            p->pLookUp(v.data(), v.data(), table, nCount);
            for (size_t i = 0; i < ALL; ++i) ASSERT_EQ(v[i], i < nCount ? table[vOld[i]] : vOld[i]) << i;
            for (int nValue = 0; nValue < 256; nValue += 15) {
                const std::vector<uint8_t> vValue(ALL, uint8_t(nValue));
                v = vOld;
                p->pMix(v.data(), v.data(), vValue.data(), vMask.data(), nCount);
                for (size_t i = 0; i < ALL; ++i)
                    ASSERT_EQ(v[i], i < nCount ? mixed(i, nValue) : vOld[i]) << i;
            }
        }
        auto v = vOld;
        ApplyLevels(v.data(), v.data(), vMask.data(), table, nCount);
        for (size_t i = 0; i < nCount; ++i) ASSERT_EQ(v[i], mixed(i, table[vOld[i]])) << i;
    }
    const uint8_t uMask = 128;
    uint8_t uLevel = 200;
    ApplyLevels(&uLevel, &uLevel, &uMask, TLevelTable{}, 1);
    EXPECT_EQ(uLevel, 100) << "200 * 128 / 255 is 100.4, truncated towards 0";
}

ON_EVERY_TARGET(LevelKernels_);
