// Strokes fitted to drawn lines: how near, how few points, and that a path can hold whatever comes out.
#include "core/PathFit/InkFit.h"
#include "tests/support/Hands.h"
#include "tests/support/InkDistance.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace {

constexpr double TOLERANCE = 2.8; ///< a third of a pixel

std::vector<TPolyBezier> ShapeOf(const TFittedInk& ink) {
    return MakeInkPath(ink)->GetStream().GetShape(STATE_COMMITTED);
}

/// A line of discs from one place to the next, a path unit apart.
std::vector<TInkDisc> Line(const std::vector<TInkDisc>& vKnots) {
    std::vector<TInkDisc> vLine;
    for (size_t i = 1; i < vKnots.size(); ++i) {
        const TInkDisc &a = vKnots[i - 1], &b = vKnots[i];
        const double dLength = std::max(1.0, std::ceil(std::hypot(b.x - a.x, b.y - a.y)));
        for (double n = 0; n < dLength; ++n)
            vLine.push_back({a.x + (b.x - a.x) * n / dLength, a.y + (b.y - a.y) * n / dLength,
                             a.dHalf + (b.dHalf - a.dHalf) * n / dLength,
                             a.dAlpha + (b.dAlpha - a.dAlpha) * n / dLength});
    }
    vLine.push_back(vKnots.back());
    return vLine;
}

double ErrorOf(const std::vector<TInkDisc>& vLine, const TFittedInk& ink) {
    return CInkDistance(vLine, ShapeOf(ink)).Measure().dMost;
}

TEST(InkFit, HandsStayNearWithFewPoints) {
    struct TLimit {
        size_t nAnchors, nMarks;
    };
    const std::map<std::string, TLimit> mapLimits{
        {"jitter", {41, 12}},  {"slow", {7, 9}},     {"fast", {7, 12}},     {"hatching", {101, 6}},
        {"letters", {34, 29}}, {"circles", {17, 8}}, {"spiral", {16, 17}},  {"zigzag", {32, 16}},
        {"swell", {9, 47}},    {"tap", {2, 0}},      {"retrace", {15, 12}}, {"tremor", {184, 40}},
    };
    for (const THand& hand : AllHands()) {
        const auto vLine = DrawnLine(hand.vPoints, hand.param);
        const TFittedInk ink = FitInk(vLine, TOLERANCE);
        const TLimit limit = mapLimits.at(hand.strName);
        EXPECT_LE(ErrorOf(vLine, ink), 1.01 * TOLERANCE) << hand.strName;
        EXPECT_LE(ink.vAnchors.size(), limit.nAnchors) << hand.strName;
        EXPECT_LE(ink.vWidths.size(), limit.nMarks) << hand.strName;
    }
}

TEST(InkFit, HandsWithNoiseStayNear) {
    for (THand& hand : AllHands()) {
        std::mt19937 random(7);
        for (TCtlPoint& pt : hand.vPoints) {
            pt.x += static_cast<int32_t>(random() % 3) - 1;
            pt.y += static_cast<int32_t>(random() % 3) - 1;
        }
        const auto vLine = DrawnLine(hand.vPoints, hand.param);
        EXPECT_LE(ErrorOf(vLine, FitInk(vLine, TOLERANCE)), 1.03 * TOLERANCE) << hand.strName;
    }
}

TEST(InkFit, NoToleranceMakesSpikes) {
    // The outline of a narrow turn can stand out by many pixels when curve and tolerance do not suit. Then a
    // smaller tolerance is taken, but no smaller than it has to be.
    struct TCase {
        double dPixels;
        size_t nAnchors;
    };
    const std::map<std::string, TCase> mapCases{{"hatching", {8, 60}}, {"retrace", {0.1, 100}}};
    for (const THand& hand : AllHands()) {
        const auto it = mapCases.find(hand.strName);
        if (it == mapCases.end()) continue;
        const auto [dPixels, nAnchors] = it->second;
        const auto vLine = DrawnLine(hand.vPoints, hand.param);
        const TFittedInk ink = FitInk(vLine, dPixels * 8);
        EXPECT_LE(ErrorOf(vLine, ink) / 8, std::clamp(dPixels, 0.26, 1.0)) << hand.strName;
        EXPECT_LE(ink.vAnchors.size(), nAnchors) << hand.strName;
    }
}

TEST(InkFit, EndsLookAsDrawn) {
    const auto vBlunt = Line({{100, 100, 24, 255}, {900, 140, 24, 255}});
    const TFittedInk blunt = FitInk(vBlunt, TOLERANCE);
    EXPECT_EQ(2U, blunt.vAnchors.size());
    EXPECT_TRUE(blunt.vWidths.empty());
    EXPECT_EQ(24U, blunt.uWidth);
    EXPECT_EQ(TERM_ROUND, blunt.begin.type);
    EXPECT_LE(ErrorOf(vBlunt, blunt), 1.2);
    const auto vTapered = Line({{100, 100, 0.5, 255}, {500, 100, 30, 255}, {900, 100, 30, 255}});
    const TFittedInk tapered = FitInk(vTapered, TOLERANCE);
    EXPECT_EQ(TERM_SHARP, tapered.begin.type);
    EXPECT_EQ(TERM_ROUND, tapered.end.type);
    EXPECT_LE(ErrorOf(vTapered, tapered), TOLERANCE);
    // Pressure that rises in place is no taper, and a hook of the pen's first contact no anchor.
    const auto vPressed = Line({{100, 102, 1, 255}, {101, 100, 20, 255}, {900, 100, 20, 255}});
    EXPECT_EQ(TERM_ROUND, FitInk(vPressed, TOLERANCE).begin.type);
    EXPECT_EQ(2U, FitInk(Line({{101, 102, 6, 255}, {100, 100, 6, 255}, {900, 100, 6, 255}}), TOLERANCE)
                      .vAnchors.size());
}

TEST(InkFit, CornersAreKept) {
    // A thin line has a mitre, a wide one turns around the corner; a line that runs back has a round tip.
    const auto corner = [](double dHalf, double x, double y) {
        return Line({{100, 900, dHalf, 255}, {500, 500, dHalf, 255}, {x, y, dHalf, 255}});
    };
    EXPECT_EQ(3U, FitInk(corner(2, 900, 900), TOLERANCE).vAnchors.size());
    for (const double dHalf : {2.0, 16.0, 40.0})
        for (const CPoint pt : {CPoint{900, 900}, CPoint{900, 420}, CPoint{110, 890}, CPoint{100, 900}}) {
            const auto vLine = corner(dHalf, pt.x, pt.y);
            const TFittedInk ink = FitInk(vLine, TOLERANCE);
            EXPECT_LE(ink.vAnchors.size(), 6U) << dHalf << ' ' << pt.x;
            EXPECT_LE(ErrorOf(vLine, ink), 1.1 * TOLERANCE) << dHalf << ' ' << pt.x;
        }
}

TEST(InkFit, DotsAreRound) {
    for (const double dHalf : {1.0, 5.0, 40.0, 96.0}) {
        const std::vector<TInkDisc> vDot(7, {200.4, 300.6, dHalf, 128});
        const TFittedInk ink = FitInk(vDot, TOLERANCE);
        EXPECT_LE(ErrorOf(vDot, ink), 0.02 * dHalf + 1) << dHalf;
        EXPECT_EQ((std::vector<TFittedMark>{{0, 128}}), ink.vAlphas);
    }
}

TEST(InkFit, OpacitiesAreMarks) {
    const TFittedInk ink =
        FitInk(Line({{0, 0, 20, 40}, {800, 0, 20, 40}, {900, 0, 20, 200}, {1600, 0, 20, 200}}), TOLERANCE);
    ASSERT_GE(ink.vAlphas.size(), 2U);
    EXPECT_LE(ink.vAlphas.size(), 8U);
    EXPECT_NEAR(40, ink.vAlphas.front().uValue, 3);
    EXPECT_NEAR(200, ink.vAlphas.back().uValue, 3);
    EXPECT_TRUE(ink.vWidths.empty());
}

TEST(InkFit, AnyLineMakesAPathThatCanBeStored) {
    std::mt19937 random(7);
    for (int nRun = 0; nRun < 20; ++nRun) {
        const double dReach = std::array{0.0, 3.0, 200.0, 3e5, 1e10}[random() % 5];
        std::vector<TInkDisc> vLine;
        const auto shake = [&] { return (static_cast<double>(random() % 2001) / 1000 - 1) * dReach; };
        for (size_t n = 1 + random() % 80; n > 0; --n) {
            vLine.push_back({shake(), shake(), random() % 4 == 0 ? 0 : static_cast<double>(random() % 200),
                             static_cast<double>(random() % 256)});
            if (random() % 3 == 0) vLine.insert(vLine.end(), random() % 20, vLine.back());
        }
        const TFittedInk ink = FitInk(vLine, std::array{0.0, 0.4, 2.8, 64.0}[random() % 4]);
        const auto spPath = MakeInkPath(ink);
        EXPECT_TRUE(spPath->GetStream().IsStorable());
        EXPECT_GE(ink.vAnchors.size(), 2U);
        for (const auto* pMarks : {&ink.vWidths, &ink.vAlphas})
            for (size_t n = 1; n < pMarks->size(); ++n) EXPECT_LT((*pMarks)[n - 1].t, (*pMarks)[n].t);
    }
    EXPECT_TRUE(FitInk({}, TOLERANCE).vAnchors.empty());
}

} // namespace
