// The parts of the fit: the line that a stroke draws, eased marks, corners, and the check of an outline.
#include "core/PathFit/EaseFit.h"
#include "core/PathFit/InkCheck.h"
#include "core/PathFit/InkCorners.h"
#include "core/PathFit/InkTurn.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

TEST(InkLine, FollowsThePointsWithTheBrushsWidths) {
    TBrushParam param;
    param.CurveStrength = 0;
    param.BrushRadius = 8;
    param.BrushAlpha = 200;
    const auto vLine = DrawnLine({{0, 0, 0, UPRIGHT},
                                  {80, 0, FULL_PRESSURE, UPRIGHT},
                                  {80, 80, 512, UPRIGHT},
                                  {80, 90, 0, UPRIGHT},
                                  {80, 99, 0, UPRIGHT}},
                                 param);
    // From the last disc without pressure to the first one.
    ASSERT_EQ(25U, vLine.size());
    EXPECT_EQ(0, vLine.front().dHalf);
    EXPECT_EQ(80, vLine[8].x);
    // Radii of 4 and 2 pixels, without what fades of a stamp.
    EXPECT_NEAR(28.7, vLine[8].dHalf, 0.05);
    EXPECT_NEAR(13.5, vLine[16].dHalf, 0.5);
    EXPECT_EQ(80, vLine[16].y);
    EXPECT_EQ(200, vLine[16].dAlpha);
    EXPECT_TRUE(DrawnLine({{0, 0, 0, UPRIGHT}, {80, 0, 0, UPRIGHT}}, param).empty());
    param.CurveStrength = 2;
    const auto vSmooth = DrawnLine(
        {{0, 0, FULL_PRESSURE, UPRIGHT}, {80, 0, FULL_PRESSURE, UPRIGHT}, {80, 80, FULL_PRESSURE, UPRIGHT}},
        param);
    EXPECT_LT(vSmooth[16].x, 80);
    EXPECT_GT(vSmooth[16].y, 0);
}

std::vector<TEaseSample> Samples(const std::function<double(double)>& fnValue) {
    std::vector<TEaseSample> vSamples;
    for (uint32_t n = 0; n <= 200; ++n) vSamples.push_back({n * 300, n * 4.0, fnValue(n / 200.0), 1});
    return vSamples;
}

TEST(EaseFit, FollowsValuesWithTheFewestMarks) {
    const auto ease = [](double x) { return x * x * (3 - 2 * x); };
    EXPECT_EQ(1U, FitEase(Samples([](double) { return 20; }), {}).size());
    const auto vS =
        FitEase(Samples([&](double x) { return 10 + 80 * ease(std::clamp(2 * x - 0.5, 0.0, 1.0)); }), {});
    ASSERT_EQ(2U, vS.size());
    EXPECT_NEAR(10, vS[0].uValue, 1);
    EXPECT_NEAR(90, vS[1].uValue, 1);
    EXPECT_NEAR(200 * 300 / 4, vS[0].t, 2000);
    // A taper of the sharp ends' own shape takes one mark, a straight one more.
    const auto vTaper =
        FitEase(Samples([](double x) { return 60 * SharpShare(std::min(2 * x, 1.0)); }), {true, false});
    EXPECT_EQ(1U, vTaper.size());
    EXPECT_GT(FitEase(Samples([](double x) { return 60 * x; }), {}).size(), 3U);
}

TEST(EaseFit, KeepsGivenEnds) {
    const auto vMarks = FitEase(Samples([](double x) { return 60 + 10 * x; }), {false, false, 58, 73});
    ASSERT_GE(vMarks.size(), 4U) << "the values between are nearer";
    EXPECT_EQ((TFittedMark{0, 58}), vMarks.front());
    EXPECT_EQ((TFittedMark{60000, 73}), vMarks.back());
    EXPECT_NEAR(65, vMarks[vMarks.size() / 2].uValue, 4);
}

TEST(EaseFit, SharpEndsRiseAsTheirCurve) {
    // Its middle: lengths 0, 1/6, 2/3, 1 and widths 0, 1/3, 1, 1.
    EXPECT_NEAR(0.625, SharpShare(0.4375), 1e-9);
    EXPECT_EQ(1, SharpShare(1));
}

TEST(CurveLength, LeadsFromParametersToLengthsAndBack) {
    const CCurveLength even({{0, 0}, {10, 0}, {20, 0}, {30, 0}}), bent({{0, 0}, {0, 40}, {40, 40}, {40, 0}});
    EXPECT_NEAR(even.At(0.7), 21, 1e-9);
    EXPECT_NEAR(bent.All(), 80, 0.2);
    for (const double t : {0.0, 0.02, 0.35, 1.0}) {
        EXPECT_NEAR(even.ParameterAt(30 * t), t, 1e-9);
        EXPECT_NEAR(bent.ParameterAt(bent.At(t)), t, 1e-9);
    }
}

TEST(InkTurn, BestOneNeedsFewOutlines) {
    for (const TInkVector out :
         {TInkVector{0, 1}, TInkVector{-0.6, 0.8}, TInkVector{-0.8, -0.6}, TInkVector{-1, 0}}) {
        const TInkCorner corner{{0, 0}, {1, 0}, out, 24};
        const TInkCubic turn = TurnAt(corner, 3.4, 2.4, 12), early = TurnAt(corner, 3.4, 2.4, 3);
        EXPECT_LE(LengthOf(turn.p0 - early.p0) + LengthOf(turn.p1 - early.p1) + LengthOf(turn.p3 - early.p3),
                  0)
            << out.x;
        EXPECT_LE(LengthOf(turn.At(0.5)), 3) << out.x;
        // Without any the outer side's own places decide.
        const TInkCubic guess = TurnAt(corner, 3.4, 2.4, 0);
        for (const double t : {0.25, 0.5, 0.75}) {
            const TInkVector slope = guess.SlopeAt(t);
            EXPECT_NEAR(24, LengthOf(guess.At(t) + TInkVector{slope.y, -slope.x} * (24 / LengthOf(slope))),
                        2.4)
                << out.x;
        }
    }
}

TEST(InkTurn, IsLargerWhereASmallOneHasNoDirections) {
    const TInkCorner corner{{980, 496}, {0.391, -0.920}, {0.427, 0.904}, 40.5};
    const TInkCubic turn = TurnAt(corner, 3.4, 2.4, 5);
    EXPECT_GE(LengthOf(turn.p3 - turn.p0), 3);
    EXPECT_LE(std::max(LengthOf(turn.p0 - corner.pt), LengthOf(turn.p3 - corner.pt)), 7);
    EXPECT_GT(Cross(corner.in, turn.p3 - turn.p0), 0) << "a loop";
}

TInkWay Way(const std::vector<TInkVector>& vPoints, double dHalf) {
    TInkWay vWay;
    for (const TInkVector pt : vPoints) vWay.push_back({pt, dHalf, 255});
    MeasureWay(vWay, 2.8);
    return vWay;
}

TEST(InkCorners, AreSharpTurnsOnly) {
    std::vector<TInkVector> vPoints;
    for (int n = 0; n <= 40; ++n) vPoints.push_back({n * 2.0, 0});
    for (int n = 1; n <= 40; ++n) vPoints.push_back({80, n * 2.0});
    EXPECT_EQ(std::vector<size_t>{40}, FindCorners(Way(vPoints, 8), 2.8));
    const TWayTangent before = TangentAt(Way(vPoints, 8), 40, 0, 40, 2.8);
    EXPECT_NEAR(1, before.direction.x, 1e-6);
    EXPECT_EQ(80, before.pt.x);
    vPoints.clear();
    for (int n = 0; n <= 60; ++n) vPoints.push_back({20 * std::cos(n * 0.1), 20 * std::sin(n * 0.1)});
    EXPECT_TRUE(FindCorners(Way(vPoints, 8), 2.8).empty());
    // The wider the line, the rounder its corners.
    vPoints.clear();
    for (int n = -30; n <= 30; ++n) {
        const double dTurn = std::clamp(n * 0.2, -1.2, 1.2), dRest = std::abs(n) - std::min(std::abs(n), 6);
        vPoints.push_back({5 * std::sin(dTurn) + std::copysign(dRest * std::cos(1.2), n),
                           5 * std::cos(dTurn) - dRest * std::sin(1.2)});
    }
    EXPECT_TRUE(FindCorners(Way(vPoints, 8), 2.8).empty());
    EXPECT_EQ(std::vector<size_t>{30}, FindCorners(Way(vPoints, 40), 2.8));
    // A line that runs back has its corner at the tip, not beside it where the turn is as sharp.
    vPoints.clear();
    for (int n = 0; n <= 20; ++n) vPoints.push_back({0, n * 4.0});
    vPoints.insert(vPoints.end(), {{0, 83}, {1, 80}});
    for (int n = 19; n >= 0; --n) vPoints.push_back({2, n * 4.0});
    EXPECT_EQ(std::vector<size_t>{21}, FindCorners(Way(vPoints, 8), 2.8));
}

TEST(InkWay, EdgesOfGrowingDiscsLean) {
    // Radii that grow by 3 to 5 touch lines that lean by 4 to 5.
    TInkWay vWay;
    for (int n = 0; n <= 100; ++n) vWay.push_back({{n * 5.0, 0}, 10 + n * 3.0, 255});
    MeasureWay(vWay, 2.8);
    EXPECT_NEAR((10 + 20 * 3.0) / 0.8, vWay[20].GetWide(), 0.2);
    // The widest disc ends the area, and its edges go on to where they touch it.
    const auto cone = [](int32_t nBegin, int32_t nEnd) {
        TPolyBezier v{{-17, 0}};
        for (const CPoint pt :
             {CPoint{0, nBegin}, CPoint{315, nEnd}, CPoint{315, -nEnd}, CPoint{0, -nBegin}, CPoint{-17, 0}})
            v.insert(v.end(), {v.back(), pt, pt});
        return v;
    };
    const CInkCheck check(vWay, 6);
    const auto isFaulty = [&](const TPolyBezier& v) { // well away from both ends
        return std::ranges::any_of(check.Find({v}).vPoints,
                                   [](size_t idx) { return idx >= 18 && idx <= 22; });
    };
    EXPECT_FALSE(isFaulty(cone(13, 249)));
    EXPECT_TRUE(isFaulty(cone(10, 199)));
}

TEST(InkCheck, FindsInkThatIsMissingOrTooMuch) {
    const auto vWay = Way({{0, 0}, {100, 0}, {200, 0}, {300, 0}}, 10);
    const CInkCheck check(vWay, 5);
    const auto box = [](int32_t x0, int32_t x1, int32_t nHigh) {
        TPolyBezier v{{x0, -10}};
        for (const CPoint pt : {CPoint{x1, -10}, CPoint{x1, nHigh}, CPoint{x0, nHigh}, CPoint{x0, -10}})
            v.insert(v.end(), {v.back(), pt, pt});
        return v;
    };
    const auto isFaulty = [&](const TPolyBezier& v) { return !check.Find({v}).vPoints.empty(); };
    EXPECT_EQ(check.Find({box(-10, 250, 10)}).vPoints, (std::vector<size_t>{3}));
    EXPECT_FALSE(isFaulty(box(-10, 310, 10)));
    EXPECT_TRUE(isFaulty(box(-10, 310, 16)));
    EXPECT_TRUE(isFaulty(box(-10, 310, 4)));
    EXPECT_TRUE(isFaulty(box(-16, 310, 10)));
    // Beside a point that stands for discs farther out less is allowed.
    auto vRough = vWay;
    vRough[2].dOff = 1.5;
    const CInkCheck strict(vRough, 5);
    EXPECT_EQ(strict.Find({box(-10, 310, 6)}).vPoints, (std::vector<size_t>{2}));
    EXPECT_FALSE(isFaulty(box(-10, 310, 6)));
    // A spike, with the whole edge beside it.
    TPolyBezier vSpike{{-10, -10}};
    for (const CPoint pt : {CPoint{310, -10}, CPoint{310, 10}, CPoint{200, 10}, CPoint{200, 40},
                            CPoint{199, 10}, CPoint{-10, 10}, CPoint{-10, -10}})
        vSpike.insert(vSpike.end(), {vSpike.back(), pt, pt});
    EXPECT_EQ(check.Find({vSpike}).vPoints.size(), 1U);
    // A long straight side may leave the area between its ends.
    const auto vRoof = Way({{0, 0}, {100, 60}, {200, 0}}, 10);
    TPolyBezier vAround{{-14, 3}};
    for (const CPoint pt : {CPoint{100, 71}, CPoint{214, 3}, CPoint{203, -14}, CPoint{100, 48},
                            CPoint{-3, -14}, CPoint{-14, 3}})
        vAround.insert(vAround.end(), {vAround.back(), pt, pt});
    const CInkCheck roof(vRoof, 5);
    EXPECT_TRUE(roof.Find({vAround}).vPoints.empty());
    EXPECT_FALSE(roof.Find({vAround, box(5, 195, -8)}).vPoints.empty());
    const CInkCheck wide(vWay, 5, 10);
    EXPECT_EQ(0U, wide.Find({box(-10, 310, 17)}).nGross);
    EXPECT_LT(0U, wide.Find({box(-10, 310, 22)}).nGross);
    EXPECT_LT(0U, wide.Find({box(-10, 280, 10)}).nGross);
    // A hole inside, which is looked for where there is a fold.
    TPolyBezier vHole = box(-10, 310, 10);
    for (const CPoint pt :
         {CPoint{194, -6}, CPoint{194, 6}, CPoint{206, 6}, CPoint{206, -6}, CPoint{194, -6}, vHole[0]})
        vHole.insert(vHole.end(), {vHole.back(), pt, pt});
    EXPECT_EQ(check.Find({vHole, box(180, 196, 10)}).vPoints, (std::vector<size_t>{2}));
    EXPECT_FALSE(check.Find({vHole, box(180, 210, 10)}).nGross);
}

} // namespace
