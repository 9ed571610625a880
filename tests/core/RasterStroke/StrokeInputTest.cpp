#include "core/IniConfig/IniConfig.h"
#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/PressureCurve.h"
#include "core/RasterStroke/ResampleWindow.h"
#include "core/RasterStroke/SegmentWalk.h"
#include "core/RasterStroke/StrokeRandom.h"
#include "core/RasterStroke/Wobble.h"
#include "tests/support/MemoryFiles.h"

namespace {

TBrushParam ReadBrushParam(CIniConfig& config, const wchar_t* pszTool) {
    const auto spSection = config.GetSection(L"BrushParam")->GetSection(pszTool);
    return ::ReadBrushParam([&](const auto& strKey, int32_t n) { return spSection->GetInt(strKey, n); });
}

} // namespace

TEST(BrushParam, SettingsKeepEveryFieldWithinItsRange) {
    CMemoryFiles files;
    CIniConfig config(L"/v.ini", files);
    EXPECT_EQ(ReadBrushParam(config, L"RasterBrush"), TBrushParam());
    const TBrushParam param{1,  2,  3,  true, 4,  5,  6, 7, false, true, 8, 9,   10,
                            11, 12, 13, 14,   15, 16, 5, 7, 4,     3,    0, true};
    config.GetSection(L"BrushParam")->GetSection(L"RasterPencil")->SetInts(ListBrushParam(param));
    EXPECT_EQ(ReadBrushParam(config, L"RasterPencil"), param);
    EXPECT_EQ(ReadBrushParam(config, L"RasterEraser"), TBrushParam());
    files.m_mapFiles[L"/v.ini"] =
        "[BrushParam\\RasterBrush]\nBlurLevel=300\nBrushRadius=-5\nPencilHardness=9\nPreset=3\nSpray=-1\n"
        "[BrushParam\\RasterPencil]\nBrushRadius=1000000000\nWaveSmooth=0\nCurveStrength=255\nSpray=100000\n"
        "BrushAlpha=256\nWaveDistMin=1000000000\nWaveDistMax=1000000000\nPaperRoughness=-3\nAvailInput=-1\n"
        "[BrushParam\\RasterEraser]\nWaveEnable=-1\nPressRadius=0\nPressAlpha=2\nAntiSplit=-2147483648\n";
    EXPECT_EQ(ReadBrushParam(config, L"RasterBrush"),
              (TBrushParam{.BrushRadius = 1, .BlurLevel = 100, .PencilHardness = 4}));
    TBrushParam limited{
        .WaveSmooth = 0, .WaveDistMin = 255, .WaveDistMax = 255, .CurveStrength = 255, .BrushRadius = 2000};
    limited.AvailInput = 0, limited.Spray = 1000;
    EXPECT_EQ(ReadBrushParam(config, L"RasterPencil"), limited);
    EXPECT_EQ(ReadBrushParam(config, L"RasterEraser"),
              (TBrushParam{.WaveEnable = true, .PressRadius = false, .PressAlpha = true, .AntiSplit = true}));
}

TEST(PressureCurve, DefaultsAreALineAndFloorsAndLevelsHold) {
    TPressureParam param;
    for (const uint32_t p : {0, 1024}) EXPECT_EQ(EvaluateCurve(param, p), p);
    for (uint32_t p = 0; p <= 1025; ++p) EXPECT_NEAR(EvaluateCurve(param, p), p, 1) << p;
    param.uCurve1y = 0; // rises early
    EXPECT_GT(EvaluateCurve(param, 256), 400u);
    uint32_t uRadius = 0;
    uint8_t byAlpha = 0;
    const auto evaluate = [&](uint32_t uPressure, int nScale) {
        EvaluatePressure(param, uRadius, byAlpha, uPressure, nScale);
    };
    param = {.uMinRadiusRate = 50, .uAvailAlpha = 0, .uMinAlphaRate = 20, .bPressAlpha = true};
    param.uBrushRadius = 40;
    evaluate(0, 1);
    EXPECT_EQ(uRadius, 10u * 8192);
    EXPECT_EQ(byAlpha, 51);
    evaluate(20, 2);
    EXPECT_EQ(byAlpha, 255) << "a level of 0 is reached at once";
    EXPECT_EQ(uRadius & 0x3FF, 0u);
    param.uMinRadiusRate = 0;
    for (const auto& [uPressure, uStep] : {std::pair{100u, 0x200u}, {600u, 0x400u}}) {
        evaluate(uPressure, 1);
        EXPECT_EQ(uRadius % uStep, 0u) << uPressure;
        EXPECT_NEAR(uRadius, uPressure * 160, 0x400) << uPressure;
    }
    param.bPressRadius = false;
    param.uBrushRadius = 3;
    evaluate(1, 1);
    EXPECT_EQ(uRadius, 12288u);
}

TEST(PressureCurve, LinesGrowInOverThreeWindows) {
    const uint32_t auFaded[] = {256, 256, 256, 448, 640, 832, 1024, 1024};
    for (uint32_t n = 0; n < 8; ++n) EXPECT_EQ(FadeInPressure(1024, n, 2), auFaded[n]) << n;
    EXPECT_EQ(FadeInPressure(101, 4, 3), 38u); // 404 >> 3 less 12
    EXPECT_EQ(FadeInPressure(1000, 0, 0), 1000u);
    EXPECT_EQ(FadeInPressure(1025, 0, 2), 1025u) << "the end is never faded";
}

TEST(ResampleWindow, IsACubicBSplineThatLagsAndKeepsLines) {
    std::vector<TCtlPoint> v;
    for (int n = 0; n < 64; ++n) v.push_back({n * 800 - 9000, 5000 - n * 80, 1000, 45});
    for (const uint32_t uWindow : {1u, 2u, 3u, 8u, 20u}) {
        const CResampleWindow window(uWindow);
        EXPECT_EQ(window.GetReach(), (uWindow + 1) / 2 * 2);
        for (uint32_t uStep = 24 * 8; uStep < 40 * 8; ++uStep) {
            const TCtlPoint pt = window.PointAt(v.data(), v.size(), uStep);
            EXPECT_NEAR(pt.pressure, 1000, 1);
            EXPECT_NEAR(pt.altitude, 45, 1);
            const int nLag = uWindow % 2 ? 2 : 1;
            EXPECT_NEAR(pt.x, static_cast<int>(uStep) * 100 - 9000 - nLag * 800, uWindow % 2 ? 200 : 9);
        }
    }
    // At a control point the window of 2 weighs its neighbours by 1/6, 4/6, 1/6.
    v[10].x += 60000;
    EXPECT_NEAR(CResampleWindow(2).PointAt(v.data(), v.size(), 88).x, 10 * 800 - 9000 + 40000, 9);
    EXPECT_EQ(CResampleWindow(2).PointAt(v.data(), 1, 8), v[0]) << "ends are repeated";
}

TEST(ResampleWindow, OfNoPointsGoesStraightFromPointToPoint) {
    const CResampleWindow window(0);
    EXPECT_EQ(window.GetReach(), 1u); // a place needs the next point and none beyond it
    const TCtlPoint aPoints[]{{-7, 10, 100, 90}, {-10, 81, 1000, 31}};
    EXPECT_EQ(window.PointAt(aPoints, 2, 0), aPoints[0]);
    EXPECT_EQ(window.PointAt(aPoints, 2, 3), (TCtlPoint{-8, 36, 437, 67})) << "toward zero";
    for (const uint32_t uStep : {8u, 13u, 16u}) EXPECT_EQ(window.PointAt(aPoints, 2, uStep), aPoints[1]);
}

TEST(SegmentWalk, MixesTheEndsByExactProducts) {
    const CSegmentWalk walk({-1000000, 0, 0, 30}, {1000000, 7, 1024, 90}, 2);
    EXPECT_EQ(walk.GetLength(), 4000000u);
    EXPECT_EQ(walk.PointAt(0), (TCtlPoint{-2000000, 0, 0, 30}));
    EXPECT_EQ(walk.PointAt(3000000), (TCtlPoint{1000000, 10, 768, 75}));
    EXPECT_EQ(CSegmentWalk({0, 0, 0, 90}, {80, 0, 0, 90}, 1).GetLength(), 0u) << "no pen touches";
    EXPECT_EQ(CSegmentWalk({0, 0, 1, 90}, {0, 1, 0, 90}, 2).GetLength(), 2u);
}

TEST(Wobble, DistanceGrowsWithTheRadius) {
    TBrushParam param{.WaveDistMin = 6, .WaveDistMax = 2, .BrushRadius = 20}; // 80 eighths
    const auto distance = [&](double dRate) {
        return WobbleDistance(param, static_cast<uint32_t>(dRate * 80 * 1024));
    };
    EXPECT_EQ(distance(0.02), 0u); // below half of 12 / 3 / 80
    EXPECT_EQ(distance(0.04), 7u);
    EXPECT_EQ(distance(0.05), 12u);
    EXPECT_EQ(distance(0.525), 26u);
    EXPECT_EQ(distance(1), 40u);
    param.WaveDistMax = 0;
    EXPECT_EQ(distance(1), 12u);
    param.BrushRadius = 0;
    EXPECT_EQ(distance(1), 0u);
}

TEST(Wobble, OffsetsApproachTheirTargetsAndLiftsEndThem) {
    TBrushParam param;
    CStrokeRandom random(3);
    CWobble quiet;
    quiet.Append(param, 1024, 1 << 14, random);
    EXPECT_EQ(quiet.GetLists()[0].size(), 1u);
    EXPECT_TRUE(quiet.GetLists()[1].empty());
    param = {.WaveSmooth = 3, .WaveDistMax = 50, .WaveEnable = true};
    const uint32_t uFull = param.BrushRadius << 12;
    CStrokeRandom same = random;
    CWobble wobble;
    for (int n = 0; n < 8; ++n) wobble.Append(param, n == 7 ? 0 : 900, uFull, random);
    // The numbers are drawn list by list at the first point.
    for (const auto& lst : wobble.GetLists()) {
        const CPoint target = ChooseWobbleTarget(200, same);
        EXPECT_LE(std::hypot(target.x, target.y), 200.5);
        CPoint pt;
        for (const int n : {0, 1}) {
            pt = {(pt.x + target.x) / 2, (pt.y + target.y) / 2};
            EXPECT_EQ((CPoint{lst[n].x, lst[n].y}), pt);
        }
        EXPECT_EQ(lst[2], lst[1]);
        EXPECT_EQ(lst[3], lst[2]);
        EXPECT_NE(lst[4], lst[3]);
        EXPECT_EQ(lst[7], (TCtlPoint{0, 0, 0, 0}));
    }
    std::vector<int32_t> vDown;
    for (int n = 0; n < 1000; ++n) vDown.push_back(ChooseWobbleTarget(200, same).y);
    EXPECT_LT(*std::ranges::min_element(vDown), -180);
    EXPECT_GT(*std::ranges::max_element(vDown), 180);
}
