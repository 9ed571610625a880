#include "core/Bezier/Bezier.h"

#include <boost/numeric/conversion/cast.hpp>

namespace {

using int128 = __int128;
constexpr int64_t ONE = BEZIER_T_RESOLUTION;
constexpr int32_t MIN = std::numeric_limits<int32_t>::min();
constexpr int32_t MAX = std::numeric_limits<int32_t>::max();

std::mt19937 g_random(5);

int32_t Random(int32_t nReach) {
    return static_cast<int32_t>(static_cast<int64_t>(g_random() % (2 * static_cast<uint32_t>(nReach))) -
                                nReach);
}

CBezier RandomCurve(int32_t nReach) {
    const auto point = [&] { return CPoint{Random(nReach), Random(nReach)}; };
    return {point(), point(), point(), point()};
}

int64_t HalvesAway(int128 n, int128 d) {
    const int128 abs = ((n < 0 ? -n : n) * 2 + d) / (2 * d);
    return static_cast<int64_t>(n < 0 ? -abs : abs);
}

CPoint Weighted(const CBezier& c, std::array<int64_t, 4> w) {
    const auto sum = [&](int32_t CPoint::*m) {
        return static_cast<int32_t>((int128{c.p0.*m} * w[0] + int128{c.p1.*m} * w[1] +
                                     int128{c.p2.*m} * w[2] + int128{c.p3.*m} * w[3]) /
                                    (ONE * ONE));
    };
    return {sum(&CPoint::x), sum(&CPoint::y)};
}

CPoint DefinedPoint(const CBezier& c, int64_t f) {
    const int64_t u = ONE - f;
    return Weighted(c, {u * u * u / ONE, 3 * u * u * f / ONE, 3 * u * f * f / ONE, f * f * f / ONE});
}

CPoint DefinedTangent(const CBezier& c, int64_t f) {
    const int64_t u = ONE - f;
    const auto sum = [&](int32_t CPoint::*m) {
        return static_cast<int32_t>(HalvesAway(int128{c.p0.*m} * (-3 * u * u / ONE), ONE) +
                                    HalvesAway(int128{c.p1.*m} * (3 * u * (ONE - 3 * f) / ONE), ONE) +
                                    HalvesAway(int128{c.p2.*m} * (3 * f * (2 * ONE - 3 * f) / ONE), ONE) +
                                    HalvesAway(int128{c.p3.*m} * (3 * f * f / ONE), ONE));
    };
    return {sum(&CPoint::x), sum(&CPoint::y)};
}

uint32_t DefinedLength(const CBezier& c, double dEnd) {
    double s = 0;
    const auto at = [&](double t, int32_t CPoint::*m) {
        const double u = 1 - t;
        return c.p0.*m * u * u * u + c.p1.*m * 3 * u * u * t + c.p2.*m * 3 * u * t * t + c.p3.*m * t * t * t;
    };
    constexpr double STEP = 1.0 / 4096;
    for (double t = 0; t < dEnd; t += STEP) {
        const auto step = [&](int32_t CPoint::*m) { return at(std::min(t + STEP, dEnd), m) - at(t, m); };
        s += std::sqrt(std::pow(step(&CPoint::x), 2) + std::pow(step(&CPoint::y), 2));
    }
    return static_cast<uint32_t>(s);
}

} // namespace

TEST(FixedMath, QuotientsRoundHalvesAwayFromZero) {
    EXPECT_TRUE(MulDiv(1, 1, 2) == 1 && MulDiv(-1, 1, 2) == -1);
    EXPECT_TRUE(MulDiv(3, -3, 2) == -5 && MulDiv(-3, 3, -2) == 5);
    EXPECT_TRUE(MulDiv(MIN, 1, 1) == MIN && MulDiv(MAX, 3, 3) == MAX);
    EXPECT_TRUE(MulDiv(5, 1, 0) == -1 && MulDiv(int64_t{MAX} + 1, 1, 1) == -1);
    EXPECT_EQ(MulDiv(int64_t{1} << 40, int64_t{1} << 40, int64_t{1} << 62), 1 << 18);
    EXPECT_EQ(MulDiv(std::numeric_limits<int64_t>::min(), 1, std::numeric_limits<int64_t>::min()), 1);
    EXPECT_EQ(ShiftFixed(-1), 0);
    EXPECT_EQ(ShiftFixed(-0x10001), -1);
    EXPECT_EQ(LengthDown({5, 6}), 7u);
    EXPECT_EQ(LengthRound({5, 6}), 8u);
    EXPECT_EQ(LengthDown({MAX, -MAX}), 3037000498u);
    EXPECT_EQ(Scale({30, -40}, 5), (CPoint{3, -4}));
    EXPECT_EQ(Scale({}, 5), CPoint());
}

TEST(FixedMath, OverflowNamesItsSide) {
    EXPECT_THROW(CheckedAdd({MAX, 0}, {1, 0}), boost::numeric::positive_overflow);
    EXPECT_THROW(CheckedAdd({0, MIN}, {0, -1}), boost::numeric::negative_overflow);
    EXPECT_EQ(CheckedAdd({MAX, MIN}, {MIN, MAX}), (CPoint{-1, -1}));
}

TEST(Bezier, PointsAndTangentsAreThoseOfWiderNumbers) {
    for (const int32_t nReach : {9, 5000, 1 << 23, MAX}) {
        for (int n = 0; n < 300; ++n) {
            const CBezier c = RandomCurve(nReach);
            const uint32_t f = 1 + g_random() % (BEZIER_T_RESOLUTION - 1);
            EXPECT_EQ(c.PointAt(f), DefinedPoint(c, f));
            if (nReach < MAX) {
                EXPECT_EQ(c.TangentAt(f), DefinedTangent(c, f));
            }
            EXPECT_EQ(c.PointAt(0), c.p0);
            EXPECT_EQ(c.PointAt(BEZIER_T_RESOLUTION), c.p3);
        }
    }
    const CBezier constant = CBezier::Line({100, -100}, {100, -100});
    EXPECT_EQ(constant.PointAt(0x4321), (CPoint{99, -99}));
    EXPECT_EQ(constant.PointAt(0x8000), (CPoint{100, -100}));
    EXPECT_EQ((CBezier{{0, 0}, {0, 0}, {0, 0}, {15, -15}}.PointAt(0x8000)), (CPoint{1, -1}));
}

TEST(Bezier, ADirectionIsFoundWithoutHandles) {
    const CPoint a{10, 20}, b{40, 60};
    EXPECT_EQ(CBezier::Line(a, b).TangentAt(0), b - a);
    EXPECT_EQ(CBezier::Line(a, b).TangentAt(BEZIER_T_RESOLUTION), b - a);
    EXPECT_EQ((CBezier{a, a, {0, 0}, b}.TangentAt(0)), (CPoint{-10, -20}));
    EXPECT_EQ((CBezier{a, {0, 0}, b, b}.TangentAt(BEZIER_T_RESOLUTION)), b);
    EXPECT_EQ((CBezier{a, {11, 20}, {0, 0}, b}.TangentAt(0)), (CPoint{1, 0}));
}

TEST(Bezier, HalvesFollowTheCurve) {
    for (int n = 0; n < 300; ++n) {
        const CBezier c = RandomCurve(50000);
        const uint32_t f = 1 + g_random() % (BEZIER_T_RESOLUTION - 1);
        const auto [head, tail] = c.Split(f);
        EXPECT_EQ(head.p0, c.p0);
        EXPECT_EQ(head.p3, c.PointAt(f));
        EXPECT_EQ(tail.p0, head.p3);
        EXPECT_EQ(tail.p3, c.p3);
        for (const uint32_t g : {0x3000u, 0x8000u, 0xC001u}) {
            EXPECT_LE(LengthDown(head.PointAt(g) - c.PointAt(uint64_t{f} * g >> 16)), 4u);
            const auto uBehind = static_cast<uint32_t>(f + ((ONE - f) * g >> 16));
            EXPECT_LE(LengthDown(tail.PointAt(g) - c.PointAt(uBehind)), 4u);
        }
    }
    const CBezier level = CBezier::Line({-7, 3}, {0, 3});
    EXPECT_EQ(level.Split(0x8000), (std::pair{CBezier{{-7, 3}, {-7, 3}, {-5, 3}, {-3, 3}},
                                              CBezier{{-3, 3}, {-1, 3}, {0, 3}, {0, 3}}}));
    EXPECT_EQ(level.Split(0), (std::pair{CBezier::Line({-7, 3}, {-7, 3}), level}));
    EXPECT_EQ(level.Split(BEZIER_T_RESOLUTION), (std::pair{level, CBezier::Line({0, 3}, {0, 3})}));
}

TEST(Bezier, LengthIsTheSumOfSteps) {
    for (int n = 0; n < 60; ++n) {
        const CBezier c = RandomCurve(n % 2 ? 300 : 90000);
        const uint32_t f = n % 3 ? 1 + g_random() % BEZIER_T_RESOLUTION : BEZIER_T_RESOLUTION;
        EXPECT_EQ(c.ArcLength(f), DefinedLength(c, f / 65536.0)) << f;
    }
    EXPECT_EQ(CBezier::Line({5, 5}, {5, 5}).ArcLength(), 0u);
    EXPECT_EQ(RandomCurve(900).ArcLength(0), 0u);
}

TEST(Bezier, CrossingsAreTakenFromTheJunction) {
    const CBezier a{{0, 0}, {3000, 0}, {6000, 0}, {9000, 0}};
    const auto junction = FindCrossing(a, {{9000, 0}, {9000, 3000}, {9000, 6000}, {9000, 9000}});
    ASSERT_TRUE(junction);
    EXPECT_GE(junction->uFirst, BEZIER_T_RESOLUTION - 42);
    EXPECT_LE(junction->uSecond, 40u);
    EXPECT_FALSE(FindCrossing(a, CBezier::Line({0, 3}, {9000, 3})));
    EXPECT_FALSE(Intersect(a, CBezier::Line({4000, 3}, {4000, 9000})));
    // A bow crosses the line where x is 5960 and 2040; from either end the nearer crossing is found.
    const CBezier bow{{6000, 1000}, {6000, -5000}, {2000, -5000}, {2000, 1000}};
    const auto nearX = [&](const CBezier& first, const CBezier& second) {
        const auto trimmed = Intersect(first, second);
        EXPECT_LE(LengthDown(trimmed->first.p3 - trimmed->second.p0), 20u);
        EXPECT_EQ(trimmed->first.p0, first.p0);
        EXPECT_EQ(trimmed->second.p3, second.p3);
        return trimmed->first.p3.x;
    };
    EXPECT_NEAR(nearX(a, bow), 5960, 12);
    EXPECT_NEAR(nearX(a.Reverse(), bow.Reverse()), 2040, 12);
}

// All pairs of chords, from the junction on.
std::optional<TCrossing> FindCrossingByAll(const CBezier& a, const CBezier& b) {
    constexpr uint32_t PIECES = 16, CHORDS = 50, PIECE = BEZIER_T_RESOLUTION / PIECES;
    const auto chordsOf = [](CBezier rest) {
        std::vector<std::vector<CPoint>> vChords;
        for (uint32_t n = PIECES; n > 0; --n) {
            const auto [head, tail] = n > 1 ? rest.Split(BEZIER_T_RESOLUTION / n) : std::pair{rest, rest};
            auto& vPoints = vChords.emplace_back();
            for (uint32_t k = 0; k <= CHORDS; ++k)
                vPoints.push_back(head.PointAt(k * BEZIER_T_RESOLUTION / CHORDS));
            rest = tail;
        }
        return vChords;
    };
    const auto side = [](CPoint from, CPoint to, CPoint pt) { return Cross(to - from, pt - from); };
    const auto isApart = [&](CPoint a0, CPoint a1, CPoint b0, CPoint b1) {
        const int64_t n0 = side(a0, a1, b0), n1 = side(a0, a1, b1);
        return n0 == n1 || (n0 > 0 && n1 > 0) || (n0 < 0 && n1 < 0);
    };
    const auto vA = chordsOf(a), vB = chordsOf(b);
    for (uint32_t i = PIECES; i-- > 0;)
        for (uint32_t m = 0; m < PIECES; ++m)
            for (uint32_t j = CHORDS; j-- > 0;)
                for (uint32_t n = 0; n < CHORDS; ++n)
                    if (!isApart(vA[i][j], vA[i][j + 1], vB[m][n], vB[m][n + 1]) &&
                        !isApart(vB[m][n], vB[m][n + 1], vA[i][j], vA[i][j + 1]))
                        return TCrossing{i * PIECE + j * PIECE / CHORDS + 40,
                                         m * PIECE + n * PIECE / CHORDS + 40};
    return {};
}

TEST(Bezier, BoxesLeaveOutNoCrossing) {
    std::array<int, 2> anFound{};
    for (int n = 0; n < 200; ++n) {
        // Some meet near the junction, as the sides of a stroke do.
        const CBezier a = RandomCurve(n % 2 ? 900 : 4000);
        CBezier b = RandomCurve(n % 2 ? 900 : 4000);
        if (n % 4 < 2) b.p0 = a.p3 + CPoint{Random(30), Random(30)};
        const auto found = FindCrossing(a, b), expected = FindCrossingByAll(a, b);
        ASSERT_EQ(found.has_value(), expected.has_value()) << n;
        ++anFound[found ? 1 : 0];
        if (!found) continue;
        EXPECT_EQ(found->uFirst, expected->uFirst) << n;
        EXPECT_EQ(found->uSecond, expected->uSecond) << n;
    }
    EXPECT_GT(std::min(anFound[0], anFound[1]), 20);
}
