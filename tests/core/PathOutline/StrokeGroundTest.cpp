// Compares the pixels of strokes with the ground that their ribs cover.
#include "core/PathFill/PathFill.h"
#include "tests/support/Paths.h"
#include "tests/support/Planes.h"
#include "tests/support/TrueStroke.h"

#include <gtest/gtest.h>

namespace {

constexpr CSize PLANE{288, 288};
constexpr double PI = 3.14159265358979;

using TPoint = CTrueStroke::TPoint;

CPoint ToUnits(TPoint pt) {
    return {static_cast<int32_t>(std::lround(pt.real())), static_cast<int32_t>(std::lround(pt.imag()))};
}

// Anchors with handles of the given lengths along a direction.
struct TKnot {
    TPoint at;
    TPoint direction;
    double dBack;
    double dFore;
};

boost::shared_ptr<COpenPathObject> MakePath(const std::vector<TKnot>& vKnots, double dWidth, EPathTerm type,
                                            uint32_t uAngle = 90) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    spPath->GetStream().SetWidth(static_cast<uint32_t>(dWidth));
    for (const TKnot& knot : vKnots)
        AddAnchor(spPath->GetStream(), ToUnits(knot.at), ToUnits(-knot.dBack * knot.direction),
                  ToUnits(knot.dFore * knot.direction));
    for (const bool bBegin : {true, false}) {
        const auto spTerm = CreateOpenPathTerm(type, bBegin);
        if (const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(spTerm))
            spFlat->SetAngle(CDualValue<uint32_t>(uAngle));
        spPath->GetStream().SetTerm(spTerm);
    }
    spPath->Update();
    return spPath;
}

std::vector<uint8_t> CoverageOf(const CPathObject& path) {
    const auto spPlane = MakePlane<CAlphaBufferImpl<uint8_t>>(PLANE);
    CPathFill fill;
    spPlane->ForEachBlock([&](CPoint pt) {
        path.RasterizePath(fill, PLANE, static_cast<CAlphaBlock8&>(*spPlane->GetBlock(pt, true)));
    });
    return ValuesOf<uint8_t>(*spPlane);
}

double Draw(std::mt19937& random, double dFrom, double dTo) {
    return dFrom + (dTo - dFrom) * (random() % 10001) / 10000;
}

// Two straight legs with a round bend between them that is tighter than the stroke is wide.
boost::shared_ptr<COpenPathObject> MakeHook(std::mt19937& random, double dWidth, EPathTerm type,
                                            uint32_t uAngle = 90) {
    const double dRadius = Draw(random, 0.05, 0.9) * dWidth, dLeg = Draw(random, 0.3, 2.5) * dWidth;
    const double dTurn = Draw(random, 1.6, 3.4);
    const int nBends = 1 + static_cast<int>(random() % 2);
    const TPoint begin = std::polar(1.0, Draw(random, 0, 2 * PI)), centre(1152, 1152);
    std::vector<TKnot> vKnots{{centre - begin * TPoint(dLeg, dRadius), begin, 0, dLeg / 3}};
    const double dHandle = 4.0 / 3 * std::tan(dTurn / nBends / 4) * dRadius;
    for (int n = 0; n <= nBends; ++n) {
        const TPoint along = begin * std::polar(1.0, dTurn * n / nBends);
        vKnots.push_back({centre - along * TPoint(0, dRadius), along, n == 0 ? dLeg / 3 : dHandle,
                          n == nBends ? dLeg / 3 : dHandle});
    }
    const TKnot last = vKnots.back();
    vKnots.push_back({last.at + dLeg * last.direction, last.direction, dLeg / 3, 0});
    return MakePath(vKnots, dWidth, type, uAngle);
}

uint32_t LastAnchorOf(const COpenPathStream& stream) {
    return static_cast<uint32_t>(stream.ControlPointCount() - 1) * BEZIER_T_RESOLUTION;
}

// Pixels that are not full and that no way over such pixels leads to from outside.
std::vector<size_t> FindEnclosed(const std::vector<uint8_t>& v) {
    std::vector<bool> vOutside(v.size());
    std::vector<size_t> vNext{0};
    vOutside[0] = true;
    const auto nWide = static_cast<size_t>(PLANE.cx);
    while (!vNext.empty()) {
        const size_t n = vNext.back();
        vNext.pop_back();
        for (const size_t k : {n - 1, n + 1, n - nWide, n + nWide})
            if (k < v.size() && !vOutside[k] && v[k] < 250) {
                vOutside[k] = true;
                vNext.push_back(k);
            }
    }
    std::vector<size_t> vEnclosed;
    for (size_t n = 0; n < v.size(); ++n)
        if (v[n] < 250 && !vOutside[n]) vEnclosed.push_back(n);
    return vEnclosed;
}

double AtPixel(const CTrueStroke& ground, size_t i) {
    return ground.At(static_cast<int>(i) % PLANE.cx, static_cast<int>(i) / PLANE.cx);
}

} // namespace

TEST(StrokeGround, TightHooksAreFullWithoutSpecks) {
    std::mt19937 random(23);
    for (int n = 0; n < 60; ++n)
        for (const EPathTerm type : {TERM_SHARP, TERM_ROUND, TERM_FLAT})
            EXPECT_TRUE(FindEnclosed(CoverageOf(*MakeHook(random, 24 + 5 * n, type))).empty())
                << n << " " << type;
    // No half of a fold reaches over the hook's mouth.
    const auto v = CoverageOf(*MakePath({{{1214, 1343}, {-39, -14}, 0, 1},
                                         {{1098, 1302}, {-39, -14}, 1, 2.46},
                                         {{1017, 1067}, {22, -35}, 2.46, 1},
                                         {{1082, 963}, {22, -35}, 1, 0}},
                                        224, TERM_SHARP));
    EXPECT_EQ(v[153 * 288 + 154], 0);
}

TEST(StrokeGround, SlantedEndsOfTightHooksAreFull) {
    std::mt19937 random(23);
    for (int n = 0; n < 100; ++n)
        EXPECT_LE(FindEnclosed(CoverageOf(*MakeHook(random, 24 + 2.8 * n, TERM_FLAT, 60))).size(), 3) << n;
}

TEST(StrokeGround, CutsThroughTightHooksKeepEachStretchFull) {
    // A square cut in the bend; the stretch before it is seen, or the one behind.
    std::mt19937 random(23);
    int nReach = 0;
    for (int n = 0; n < 120; ++n) {
        const bool bBehind = n % 2 != 0;
        const auto spPath = MakeHook(random, 24 + 2.5 * n, TERM_FLAT);
        COpenPathStream& stream = spPath->GetStream();
        const uint32_t t = BEZIER_T_RESOLUTION + random() % BEZIER_T_RESOLUTION;
        stream.AddTransPoint(bBehind ? 0 : t);
        stream.AddTransPoint(bBehind ? t : LastAnchorOf(stream));
        spPath->Update();
        const auto v = CoverageOf(*spPath);
        const CTrueStroke seen(stream, PLANE, bBehind ? t : 0, bBehind ? UINT32_MAX : t);
        int nSpecks = 0, nBeyond = 0;
        for (const size_t i : FindEnclosed(v)) nSpecks += AtPixel(seen, i) == 1;
        for (size_t i = 0; i < v.size(); ++i) nBeyond += v[i] > 128 && AtPixel(seen, i) == 0;
        EXPECT_LE(nSpecks, 32) << n;
        nReach += nBeyond > 20;
    }
    // The inner sides of the others meet the line of the cut elsewhere than beside it.
    EXPECT_LE(nReach, 33);
}

TEST(StrokeGround, SlantedCutsOfTightHooksKeepTheirLine) {
    // Ink behind the line and none before it, near the outer side, where the bend begins.
    std::mt19937 random(29);
    int nWrong = 0;
    for (int n = 0; n < 60; ++n) {
        const double dWidth = 100 + 3 * n;
        const auto spPath = MakeHook(random, dWidth, TERM_FLAT);
        COpenPathStream& stream = spPath->GetStream();
        for (const uint32_t t : {uint32_t{0}, uint32_t{BEZIER_T_RESOLUTION}})
            stream.AddTransPoint(t)->SetAngle(CDualValue<uint32_t>(60));
        spPath->Update();
        const auto v = CoverageOf(*spPath);
        const auto point = [](CPoint pt) { return TPoint(pt.x, pt.y); };
        const auto knot = (*std::next(stream.GetControlPoints().begin()))->At(STATE_COMMITTED);
        const TPoint along = point(knot.fore) / std::abs(point(knot.fore));
        for (const bool bInk : {false, true}) {
            const TPoint out = along * std::polar(1.0, -PI / 3) * dWidth * 0.9;
            const TPoint at = point(knot.anchor) + out + along * (bInk ? 16.0 : -16.0);
            const auto [x, y] = std::pair{static_cast<int>(at.real() / 8), static_cast<int>(at.imag() / 8)};
            nWrong += (v[static_cast<size_t>(y * PLANE.cx + x)] > 128) != bInk;
        }
    }
    EXPECT_LE(nWrong, 1);
}

TEST(StrokeGround, CornersBetweenShortLegsAreFull) {
    // Three straight legs shorter than the stroke is wide: the inner sides do not reach each other.
    std::mt19937 random(25);
    for (int n = 0; n < 200; ++n) {
        const double dWidth = Draw(random, 40, 240);
        TPoint at(1152, 1152), along = std::polar(1.0, Draw(random, 0, 2 * PI));
        std::vector<TKnot> vKnots;
        for (int k = 0; k < 4; ++k) {
            vKnots.push_back({at, 1, 0, 0});
            at += along * Draw(random, 0.2, 1.2) * dWidth;
            along *= std::polar(1.0, Draw(random, 0.6, 2.2));
        }
        // Gaps between the legs are none of the stroke's ground.
        const auto spPath = MakePath(vKnots, dWidth, TERM_ROUND);
        const CTrueStroke ground(spPath->GetStream(), PLANE);
        const auto vEnclosed = FindEnclosed(CoverageOf(*spPath));
        const auto isOfStroke = [&](size_t i) { return AtPixel(ground, i) == 1; };
        EXPECT_LE(std::count_if(vEnclosed.begin(), vEnclosed.end(), isOfStroke), 3) << n;
    }
}

TEST(StrokeGround, ShortTangentsLoseNoInk) {
    // Handles of none to two path units, on segments of 1 to 14 pixels.
    std::mt19937 random(22);
    for (int n = 0; n < 60; ++n) {
        const double dStep = Draw(random, 8, 112), dWidth = Draw(random, 8, 80);
        TPoint at(1100, 1100), direction = std::polar(1.0, Draw(random, 0, 2 * PI));
        std::vector<TKnot> vKnots;
        for (int k = 0; k < 3; ++k) {
            const double dHandle = static_cast<double>(random() % 3);
            vKnots.push_back({at, direction, dHandle, dHandle});
            at += dStep * direction;
        }
        const auto type = static_cast<EPathTerm>(1 + n % 3);
        const auto spPath = MakePath(vKnots, dWidth, type);
        const auto v = CoverageOf(*spPath);
        const CTrueStroke ground(spPath->GetStream(), PLANE);
        double dLost = 0;
        for (int y = 0; y < PLANE.cy; ++y)
            for (int x = 0; x < PLANE.cx; ++x)
                dLost +=
                    std::max(0.0, ground.At(x, y) - v[static_cast<size_t>(y * PLANE.cx + x)] / 255.0 - 0.2);
        // A sharp end's handles are held to the centre's, which leaves it a little lean.
        EXPECT_LT(dLost, type == TERM_SHARP ? 10 : 3) << n;
    }
}

TEST(StrokeGround, SlantedEndsHaveNoSteps) {
    // No ink beyond the line of the cut, on arcs up to those whose inner side lies behind the moved corner.
    std::mt19937 random(24);
    for (int n = 0; n < 60; ++n) {
        const uint32_t uAngle = n % 2 ? 60 : 45;
        const double dWidth = Draw(random, 24, 200), dLength = Draw(random, 2.2, 4) * dWidth;
        const TPoint along = std::polar(1.0, Draw(random, 0, 2 * PI)), middle(1152, 1152);
        const TPoint bend = std::polar(1.0, Draw(random, -0.7, 0.7));
        const TKnot begin{middle - along * dLength / 2.0, along / bend, 0, dLength / 3};
        const TKnot end{middle + along * dLength / 2.0, along * bend, dLength / 3, 0};
        const auto v = CoverageOf(*MakePath({begin, end}, dWidth, TERM_FLAT, uAngle));
        double dBeyond = 0;
        for (int y = 0; y < PLANE.cy; ++y)
            for (int x = 0; x < PLANE.cx; ++x)
                for (const bool bEnd : {false, true}) {
                    const TKnot& knot = bEnd ? end : begin;
                    const TPoint away = TPoint(8 * x + 4, 8 * y + 4) - knot.at;
                    const TPoint out =
                        knot.direction * std::polar(bEnd ? 1.0 : -1.0, (90 - uAngle) * PI / 180);
                    if (std::abs(away) < 1.3 * dWidth + 16 && (away * std::conj(out)).real() > 12)
                        dBeyond += v[static_cast<size_t>(y * PLANE.cx + x)] / 255.0;
                }
        EXPECT_LT(dBeyond, 3) << n;
    }
}

TEST(StrokeGround, SidesFollowAnInflectionWithinOneSegment) {
    const std::vector<std::pair<std::vector<TKnot>, double>> vStrokes{
        {{{{376, 1152}, {572, -328}, 0, 1}, {{1928, 1152}, {326, -1045}, 1, 0}}, 91},
        {{{{547, 1152}, {848, 545}, 0, 1}, {{1757, 1152}, {950, -179}, 1, 0}}, 97}};
    for (const auto& [vKnots, dWidth] : vStrokes) {
        const auto spPath = MakePath(vKnots, dWidth, TERM_FLAT);
        const CTrueStroke ground(spPath->GetStream(), PLANE);
        const auto v = CoverageOf(*spPath);
        for (size_t i = 0; i < v.size(); ++i) ASSERT_NEAR(v[i] / 255.0, AtPixel(ground, i), 0.25) << i;
    }
}

TEST(StrokeGround, UnevenSegmentsKeepTheWidthsSlope) {
    // One width from end to end over segments of 4 and 140 pixels: it grows evenly along the line, not along
    // t.
    const TPoint right(1, 0);
    const auto spPath =
        MakePath({{{400, 1152}, right, 0, 10}, {{432, 1152}, right, 10, 370}, {{1552, 1152}, right, 370, 0}},
                 80, TERM_FLAT);
    COpenPathStream& stream = spPath->GetStream();
    stream.AddWidthPoint(0)->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(FIXED_ONE / 4));
    stream.AddWidthPoint(2 * BEZIER_T_RESOLUTION);
    spPath->Update();
    const auto v = CoverageOf(*spPath);
    for (int x = 52; x < 192; ++x) {
        double dAbove = 0;
        for (int y = 100; y < 144; ++y) dAbove += v[static_cast<size_t>(y * PLANE.cx + x)] / 255.0;
        const double d = (x + 0.5 - 50) / 144;
        EXPECT_NEAR(dAbove, 2.5 + 7.5 * d * d * (3 - 2 * d), 0.35) << x;
    }
}

TEST(StrokeGround, ThinZigzagsKeepTheirMitres) {
    // Straight legs 20 pixels wide and 28 high: each outer corner reaches a mitre's length beyond its anchor.
    for (const double dWidth : {8.0, 16.0, 24.0}) {
        std::vector<TKnot> vKnots;
        for (int n = 0; n < 10; ++n) vKnots.push_back({TPoint(240 + 160 * n, n % 2 ? 1264 : 1040), 1, 0, 0});
        const auto v = CoverageOf(*MakePath(vKnots, dWidth, TERM_FLAT));
        const double dMitre = dWidth / 8 * std::hypot(20, 28) / 20;
        for (int n = 1; n < 9; ++n) {
            double dUp = 0;
            const int x = 30 + 20 * n;
            for (int k = 0; k < 20; ++k) {
                const int y = n % 2 ? 158 + k : 129 - k;
                dUp = std::max(dUp, v[static_cast<size_t>(y * PLANE.cx + x)] > 40 ? k + 1.0 : 0.0);
            }
            EXPECT_NEAR(dUp, dMitre, 1.2) << dWidth << " " << n;
        }
    }
}
