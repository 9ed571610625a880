#include "core/RasterStroke/RasterBrushStroke.h"

#include "core/RasterStroke/StrokePrediction.h"
#include "session/seam/VirtualClock.h"
#include "tests/support/Planes.h"
#include "tests/support/RunningClock.h"

namespace {

struct TRun {
    uint32_t uPace = 0; ///< of the clock
    int nPredict = 0;
    bool bDouble = false;
    int nUpdateEvery = 1; ///< points
    bool bDrainEach = true;
    int nPoints = 26;
};

std::vector<uint16_t> DrawLoop(const TBrushParam& param, const TRun& run) {
    CRunningClock clock(run.uPace);
    CStrokeRandom random(5);
    TStrokeSetup setup{.szCanvas = {230, 200}, .param = param, .clock = clock, .random = random};
    setup.bDouble = run.bDouble;
    setup.nPredict = run.nPredict;
    CRasterBrushStroke stroke(setup);
    const auto update = [&] {
        for (int n = 0; n < 10000 && !stroke.Update() && run.bDrainEach; ++n) {
        }
    };
    for (int n = 0; n < run.nPoints; ++n) {
        const int x = 920 + static_cast<int>(700 * std::cos(n / 9.0));
        const int y = 800 + static_cast<int>(900 * std::sin(n / 7.0));
        stroke.AddCtlPoint({x, y}, static_cast<uint32_t>(n * 39), 60);
        if (n % run.nUpdateEvery == 0) update();
    }
    stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
    for (int n = 0; n < 100000; ++n)
        if (stroke.Update()) return ValuesOf(stroke.GetMain());
    ADD_FAILURE() << "the stroke never ends";
    return {};
}

} // namespace

TEST(RasterStroke, ThePictureKnowsNoClock) {
    TBrushParam rough{.WaveSmooth = 4, .WaveDistMin = 4, .WaveDistMax = 3, .WaveEnable = true};
    rough.BrushRadius = 8, rough.BlurLevel = 60, rough.PressAlpha = true, rough.Spray = 30;
    for (const bool bDouble : {false, true}) {
        const auto vWhole = DrawLoop(rough, {.bDouble = bDouble, .nUpdateEvery = 1000});
        EXPECT_GT(std::count_if(vWhole.begin(), vWhole.end(), [](uint16_t u) { return u > 20000; }), 200);
        // With a pace of 2 one step a call.
        for (TRun run :
             {TRun{}, {.uPace = 2}, {.uPace = 2, .bDrainEach = false}, {.nPredict = 1}, {.nPredict = 3}}) {
            run.bDouble = bDouble;
            EXPECT_EQ(vWhole, DrawLoop(rough, run)) << run.uPace << run.nPredict;
        }
    }
}

TEST(RasterStroke, SprayThrowsStampsDownwardsUpToFourPixels) {
    // The first and the last row with ink of a level line eight pixels wide.
    const auto rows = [](uint16_t uSpray) {
        CVirtualClock clock;
        CStrokeRandom random(5);
        TBrushParam param{.CurveStrength = 0, .BrushRadius = 8, .PressRadius = false};
        param.Spray = uSpray;
        CRasterBrushStroke stroke({.szCanvas = {300, 96}, .param = param, .clock = clock, .random = random});
        for (int x = 200; x <= 2200; x += 400) stroke.AddCtlPoint({x, 400}, 1024, 90);
        stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
        EXPECT_TRUE(stroke.Update());
        const auto v = ValuesOf(stroke.GetMain());
        const auto isInk = [](uint16_t u) { return u > 0; };
        const auto nFirst = std::find_if(v.begin(), v.end(), isInk) - v.begin();
        const auto nLast = v.rend() - std::find_if(v.rbegin(), v.rend(), isInk) - 1;
        return std::pair(nFirst / 300, nLast / 300);
    };
    const auto [nFirst, nLast] = rows(0);
    EXPECT_EQ(rows(200), std::pair(nFirst, nLast + 4));
}

TEST(RasterStroke, OpacityIsALimitAndTinyStrokesAreDrawn) {
    TBrushParam param{.BrushRadius = 20, .BrushAlpha = 128, .PressRadius = false};
    const auto vLoop = DrawLoop(param, {.nPoints = 60});
    EXPECT_EQ(*std::max_element(vLoop.begin(), vLoop.end()), 128 * 257);
    CVirtualClock clock;
    CStrokeRandom random;
    for (const int nPoints : {0, 1, 2}) {
        param.CurveStrength = static_cast<uint8_t>(nPoints * 2);
        CRasterBrushStroke stroke(
            {.szCanvas = {96, 96}, .bErase = true, .param = param, .clock = clock, .random = random});
        for (int n = 0; n < nPoints; ++n) stroke.AddCtlPoint({300 + 80 * n, 300}, 1024, 90);
        stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
        EXPECT_TRUE(stroke.Update());
        const auto v = ValuesOf(stroke.GetMain());
        EXPECT_EQ(v[37 * 96 + 37] > 10000, nPoints > 0) << nPoints;
        EXPECT_EQ(v[0], 0) << "the end is no place";
        EXPECT_TRUE(stroke.GetMain().IsErase());
    }
}

TEST(RasterStroke, ThePredictionIsShownAndWipedAndNeverKept) {
    // The tail is wiped by a line that turns away, or by the last point before the end is drawn.
    for (const bool bEnd : {false, true}) {
        CRunningClock clock(0);
        CStrokeRandom random;
        TStrokeSetup setup{.szCanvas = {600, 600}, .bErase = true, .clock = clock, .random = random};
        setup.param.BrushRadius = 8;
        setup.nPredict = 3;
        CRasterBrushStroke stroke(setup);
        for (int n = 0; n < 8; ++n) stroke.AddCtlPoint({400 + 160 * n, 400}, 1024, 90);
        ASSERT_TRUE(stroke.Update());
        ASSERT_NE(&stroke.GetDisplay(), &stroke.GetMain());
        EXPECT_TRUE(stroke.GetDisplay().IsErase());
        const auto at = [&](CAlphaBufferBase& plane, CPoint pt) {
            return ValuesOf(plane)[static_cast<size_t>(pt.y * 600 + pt.x)];
        };
        const CPoint ptAhead{370, 50}; // behind the last point, where ten more would be
        EXPECT_GT(at(stroke.GetDisplay(), ptAhead), 20000);
        EXPECT_EQ(at(stroke.GetMain(), ptAhead), 0);
        stroke.GetDisplay().GetDirty().Fill(false);
        if (bEnd) {
            clock.uPace = 9; // the stroke's end is drawn only after many updates
            stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
            EXPECT_EQ(at(stroke.GetDisplay(), ptAhead), 0);
        } else {
            for (int n = 0; n < 8; ++n) stroke.AddCtlPoint({1520, 400 + 160 * n}, 1024, 90);
        }
        ASSERT_EQ(stroke.Update(), !bEnd);
        EXPECT_EQ(at(stroke.GetDisplay(), ptAhead), 0);
        EXPECT_TRUE(stroke.GetDisplay().DirtyAt(ptAhead) &&
                    (bEnd || stroke.GetDisplay().GetBlock(ptAhead, false)));
        EXPECT_GT(at(stroke.GetDisplay(), {60, 50}), 20000) << "the line itself stays";
        EXPECT_FALSE(!bEnd && stroke.GetDisplay().DirtyAt({60, 50})) << "what stays is not painted again";
    }
}

TEST(RasterStroke, WithoutAWindowTheLineReachesItsNewestPoint) {
    CVirtualClock clock;
    CStrokeRandom random;
    const TBrushParam param{.CurveStrength = 0, .BrushRadius = 8, .PressRadius = false};
    CRasterBrushStroke stroke({.szCanvas = {300, 96}, .param = param, .clock = clock, .random = random});
    for (const int x : {400, 1200, 2000}) stroke.AddCtlPoint({x, 400}, 1024, 90);
    ASSERT_TRUE(stroke.Update());
    const auto at = [&](int x) { return ValuesOf(stroke.GetMain())[static_cast<size_t>(50 * 300 + x)]; };
    EXPECT_GT(at(246), 20000);
    EXPECT_EQ(at(258), 0);
    const auto vDrawn = ValuesOf(stroke.GetMain());
    stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
    ASSERT_TRUE(stroke.Update());
    EXPECT_EQ(ValuesOf(stroke.GetMain()), vDrawn) << "nothing was held back";
}

TEST(StrokePrediction, GoesOnByNineTenthsOfTheLastStep) {
    const std::vector<TCtlPoint> v{{0, 0, 100, 50}, {100, -7, 200, 60}};
    EXPECT_EQ(PredictPoints(v, 1, 2).size(), 6u);
    EXPECT_EQ(PredictPoints(v, 2, 2).size(), 14u);
    const auto vMost = PredictPoints(v, 3, 0);
    ASSERT_EQ(vMost.size(), 16u);
    EXPECT_EQ(vMost[2], (TCtlPoint{190, -13, 200, 60}));
    EXPECT_EQ(vMost[13], (TCtlPoint{1180, -82, 200, 60}));
    EXPECT_EQ(vMost[15], vMost[13]);
}
