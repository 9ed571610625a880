#include "tests/support/Strokes.h"

#include <numbers>

TEST(Outline, StrokeIsAsWideAsItsProfileSays) {
    // A level line along y = 100 whose half-width eases from 4 to 20 pixels and back, flat ends.
    const auto spPath = MakePath({{{200, 800}, {600, 0}}, {{2000, 800}, {600, 0}}}, 32);
    COpenPathStream& stream = spPath->GetStream();
    for (const bool bBegin : {true, false}) stream.SetTerm(CreateOpenPathTerm(TERM_FLAT, bBegin));
    AddWidth(stream, 0, FIXED_ONE, FIXED_ONE);
    AddWidth(stream, BEZIER_T_RESOLUTION / 2, 5 * FIXED_ONE, FIXED_ONE);
    AddWidth(stream, BEZIER_T_RESOLUTION, FIXED_ONE, FIXED_ONE);
    spPath->Update();
    const auto v = CoverageOf(*spPath);
    for (int x = 27; x < 248; ++x) {
        int nAbove = 0, nBelow = 0;
        for (int y = 0; y < 100; ++y) nAbove += At(v, x, y);
        for (int y = 100; y < 200; ++y) nBelow += At(v, x, y);
        const double dAlong = std::abs(x + 0.5 - 137.5) / 112.5;
        const double dWidth = 4 + 16 * (1 - dAlong * dAlong * (3 - 2 * dAlong));
        EXPECT_NEAR(nAbove / 255.0, dWidth, 0.35) << x;
        EXPECT_NEAR(nBelow / 255.0, 4, 0.1) << x;
    }
    EXPECT_EQ(At(v, 23, 100), 0);
    EXPECT_EQ(At(v, 27, 100), 255);
}

TEST(Outline, EndsReachAsFarAsTheyShould) {
    // How far the end goes to the right; as a path's beginning it goes as far.
    const auto reach = [](EPathTerm type, uint32_t uAngle, int y) {
        int anReach[] = {100, 100};
        for (const bool bBegin : {false, true}) {
            const CPoint handle{bBegin ? -100 : 100, 0};
            std::vector<TKnot> vKnots{{{400, 800}, handle}, {{1200, 800}, handle}};
            if (bBegin) std::swap(vKnots[0], vKnots[1]);
            const auto spPath = MakePath(vKnots, 80);
            const auto spEnd = CreateOpenPathTerm(type, bBegin);
            const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(spEnd);
            if (spFlat) spFlat->SetAngle(CDualValue<uint32_t>(uAngle));
            spPath->GetStream().SetTerm(spEnd);
            spPath->Update();
            for (const auto v = CoverageOf(*spPath); At(v, anReach[bBegin], y) > 127;) ++anReach[bBegin];
        }
        EXPECT_NEAR(anReach[1], anReach[0], 1) << type;
        return anReach[0];
    };
    EXPECT_EQ(reach(TERM_ROUND, 90, 100), 160);
    EXPECT_EQ(reach(TERM_FLAT, 90, 91), 150);
    EXPECT_EQ(reach(TERM_FLAT, 90, 108), 150);
    // At 45 degrees the left side, above, is longer by its width and the right one shorter.
    EXPECT_NEAR(reach(TERM_FLAT, 45, 93), 157, 1);
    EXPECT_NEAR(reach(TERM_FLAT, 45, 106), 143, 1);
    EXPECT_NEAR(reach(TERM_SHARP, 90, 100), 149, 2);
}

TEST(Outline, MitresGoFiftyPixelsAndNoFarther) {
    // Legs that meet at (150, 100); their sides, 5 pixels off, meet 41 and 57 pixels beyond.
    for (const auto& [dHalf, bMitre] : {std::pair{7.0, true}, {5.0, false}}) {
        const double a = dHalf * std::numbers::pi / 180;
        const auto x = static_cast<int32_t>(1200 - 800 * std::cos(a));
        const auto y = static_cast<int32_t>(800 * std::sin(a));
        const auto spPath = MakePath({{{x, 800 + y}, {}}, {{1200, 800}, {}}, {{x, 800 - y}, {}}}, 40);
        for (const bool bBegin : {true, false})
            spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_FLAT, bBegin));
        spPath->Update();
        EXPECT_EQ(At(CoverageOf(*spPath), 180, 100) > 200, bMitre) << dHalf;
    }
}

TEST(Outline, CutsHideWhatLiesBetweenTheTwoOfAPair) {
    const auto spPath = MakePath({{{200, 800}, {600, 0}}, {{2000, 800}, {600, 0}}}, 40);
    COpenPathStream& stream = spPath->GetStream();
    for (const uint32_t t : {0x6000u, 0x4000u, 0xC000u}) stream.AddTransPoint(t);
    spPath->Update();
    EXPECT_EQ(stream.GetOutline(STATE_COMMITTED).size(), 2u);
    const auto v = CoverageOf(*spPath);
    // The odd one hides all that follows.
    for (const auto& [x, n] :
         {std::pair{70, 255}, {78, 255}, {85, 0}, {105, 0}, {113, 255}, {190, 255}, {197, 0}, {230, 0}})
        EXPECT_EQ(At(v, x, 100), n) << x;
}

TEST(Outline, WaveIsTheSameEachTimeAndLeavesTheWidthPointsAlone) {
    std::mt19937 random(5);
    const auto spPath = MakePath(HandKnots(random, 5), 40);
    COpenPathStream& stream = spPath->GetStream();
    const auto waved = [&](bool bWave, uint32_t uHeight) {
        stream.SetWave(bWave, {32, uHeight});
        spPath->Update();
        return stream.GetOutline(STATE_COMMITTED);
    };
    const auto vCalm = waved(false, 0), vWave = waved(true, 12);
    EXPECT_GT(vWave[0].vCurve.size(), 2 * vCalm[0].vCurve.size());
    EXPECT_TRUE(waved(true, 12) == vWave && waved(true, 0) == vCalm);
    EXPECT_TRUE(stream.GetWidthPoints().empty());
}
