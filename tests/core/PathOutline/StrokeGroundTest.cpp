#include "tests/support/Strokes.h"
#include "tests/support/TrueStroke.h"

namespace {

constexpr double PI = 3.14159265358979;

using TPoint = CTrueStroke::TPoint;

CPoint ToUnits(TPoint pt) {
    return {static_cast<int32_t>(std::lround(pt.real())), static_cast<int32_t>(std::lround(pt.imag()))};
}

struct TGroundKnot {
    TPoint at;
    TPoint direction;
    double dBack;
    double dFore;
};

boost::shared_ptr<COpenPathObject> MakePath(const std::vector<TGroundKnot>& vKnots, double dWidth,
                                            EPathTerm type) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    spPath->GetStream().SetWidth(static_cast<uint32_t>(dWidth));
    for (const TGroundKnot& knot : vKnots)
        AddAnchor(spPath->GetStream(), ToUnits(knot.at), ToUnits(-knot.dBack * knot.direction),
                  ToUnits(knot.dFore * knot.direction));
    for (const bool bBegin : {true, false}) spPath->GetStream().SetTerm(CreateOpenPathTerm(type, bBegin));
    spPath->Update();
    return spPath;
}

double Draw(std::mt19937& random, double dFrom, double dTo) {
    return dFrom + (dTo - dFrom) * (random() % 10001) / 10000;
}

// Two straight legs with a round bend between them that is tighter than the stroke is wide.
boost::shared_ptr<COpenPathObject> MakeHook(std::mt19937& random, double dWidth, EPathTerm type) {
    const double dRadius = Draw(random, 0.05, 0.9) * dWidth, dLeg = Draw(random, 0.3, 2.5) * dWidth;
    const double dTurn = Draw(random, 1.6, 3.4);
    const int nBends = 1 + static_cast<int>(random() % 2);
    const TPoint begin = std::polar(1.0, Draw(random, 0, 2 * PI)), centre(1152, 1152);
    std::vector<TGroundKnot> vKnots{{centre - begin * TPoint(dLeg, dRadius), begin, 0, dLeg / 3}};
    const double dHandle = 4.0 / 3 * std::tan(dTurn / nBends / 4) * dRadius;
    for (int n = 0; n <= nBends; ++n) {
        const TPoint along = begin * std::polar(1.0, dTurn * n / nBends);
        vKnots.push_back({centre - along * TPoint(0, dRadius), along, n == 0 ? dLeg / 3 : dHandle,
                          n == nBends ? dLeg / 3 : dHandle});
    }
    const TGroundKnot last = vKnots.back();
    vKnots.push_back({last.at + dLeg * last.direction, last.direction, dLeg / 3, 0});
    return MakePath(vKnots, dWidth, type);
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
        stream.AddTransPoint(
            bBehind ? t : static_cast<uint32_t>(stream.ControlPointCount() - 1) * BEZIER_T_RESOLUTION);
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

TEST(StrokeGround, CornersBetweenShortLegsAreFull) {
    // Three straight legs shorter than the stroke is wide: the inner sides do not reach each other.
    std::mt19937 random(25);
    for (int n = 0; n < 200; ++n) {
        const double dWidth = Draw(random, 40, 240);
        TPoint at(1152, 1152), along = std::polar(1.0, Draw(random, 0, 2 * PI));
        std::vector<TGroundKnot> vKnots;
        for (int k = 0; k < 4; ++k) {
            vKnots.push_back({at, 1, 0, 0});
            at += along * Draw(random, 0.2, 1.2) * dWidth;
            along *= std::polar(1.0, Draw(random, 0.6, 2.2));
        }
        // Gaps between the legs are none of the stroke's ground.
        const auto spPath = MakePath(vKnots, dWidth, TERM_FLAT);
        const CTrueStroke ground(spPath->GetStream(), PLANE);
        const auto vEnclosed = FindEnclosed(CoverageOf(*spPath));
        const auto isOfStroke = [&](size_t i) { return AtPixel(ground, i) == 1; };
        EXPECT_LE(std::count_if(vEnclosed.begin(), vEnclosed.end(), isOfStroke), 3) << n;
    }
}

TEST(StrokeGround, SidesFollowAnInflectionWithinOneSegment) {
    const std::vector<std::pair<std::vector<TGroundKnot>, double>> vStrokes{
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
        for (int y = 100; y < 144; ++y) dAbove += At(v, x, y) / 255.0;
        const double d = (x + 0.5 - 50) / 144;
        EXPECT_NEAR(dAbove, 2.5 + 7.5 * d * d * (3 - 2 * d), 0.35) << x;
    }
}
