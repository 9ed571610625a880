// The area that a line's discs sweep, its edge, and what a way keeps of the line.
#include "core/PathFit/InkEdges.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr double TOLERANCE = 2.8;

TInkWay Way(size_t nPoints, const std::function<TWayPoint(double)>& fnAt) {
    TInkWay vWay;
    for (size_t n = 0; n < nPoints; ++n) vWay.push_back(fnAt(static_cast<double>(n)));
    MeasureWay(vWay, TOLERANCE);
    return vWay;
}

// The largest way along a side without a place of the edge, of those in the middle.
double WidestGap(const std::vector<TInkEdge>& vEdges, const TInkWay& vWay, bool bLeft) {
    double dGap = 0, dLast = 10;
    for (const TInkEdge& edge : vEdges) {
        const double d = vWay[edge.idx].dLength;
        if (edge.bLeft != bLeft || d < 10 || d > vWay.back().dLength - 10) continue;
        dGap = std::max(dGap, d - dLast);
        dLast = d;
    }
    return std::max(dGap, vWay.back().dLength - 10 - dLast);
}

} // namespace

TEST(InkArea, TellsDistancesFromTheDiscs) {
    // There along y = 0 with half-widths of 5 to 15, and back along y = 100.
    const TInkWay vWay = Way(202, [](double n) {
        return n < 101 ? TWayPoint{{n * 2, 0}, 5 + n / 10, 255} : TWayPoint{{402 - n * 2, 100}, 5, 255};
    });
    const CInkArea area(vWay, 20);
    const auto isNear = [&](TInkVector pt, double d) {
        size_t idxFirst = 0, idxLast = 200;
        EXPECT_EQ(area.HasNear(pt, d, idxFirst), area.HasNear(pt, d, idxLast));
        return area.HasNear(pt, d, idxFirst);
    };
    EXPECT_TRUE(isNear({100, 27}, 18));
    EXPECT_TRUE(isNear({-18, 0}, 14));
    EXPECT_TRUE(isNear({100, -14.5}, 5));
    EXPECT_FALSE(isNear({100, -15.6}, 5));
    EXPECT_TRUE(isNear({5, 108}, 4));
    EXPECT_FALSE(isNear({5, 110}, 4));
    EXPECT_FALSE(isNear({5, 40}, 20));
    EXPECT_FALSE(isNear({100, 8}, -3));
    EXPECT_TRUE(isNear({100, 6}, -3));
    EXPECT_EQ(area.NearestEdge({155, 106}), 123U);
    EXPECT_NEAR(static_cast<double>(area.NearestEdge({155, 14})), 77, 1);
    const TInkWay vLong = Way(3, [](double n) { return TWayPoint{{n * 100, 0}, 5 + n * 10, 255}; });
    const CInkArea wide(vLong, 0);
    EXPECT_NEAR(wide.DepthAt({50, 7}, 0.5).value_or(0), 3, 1e-6);
    EXPECT_NEAR(wide.DepthAt({-3, 0}, 0.5).value_or(0), 2, 1e-6);
    EXPECT_FALSE(wide.DepthAt({-3, 0}, 2.1));
}

TEST(InkArea, KnowsWhereTheWayIsAlone) {
    // There along y = 0, and back above its second half only.
    const TInkWay vWay = Way(301, [](double n) {
        return n <= 200 ? TWayPoint{{n * 3, 0}, 6, 255} : TWayPoint{{600 - (n - 200) * 3, 12}, 6, 255};
    });
    const CInkArea area(vWay, 3);
    EXPECT_TRUE(area.IsAlone(50));
    EXPECT_FALSE(area.IsAlone(150));
    EXPECT_FALSE(area.IsAlone(250));
    EXPECT_FALSE(area.IsAlone(200)) << "a turn";
    const TInkWay vCorner = Way(201, [](double n) {
        return n <= 100 ? TWayPoint{{n * 3, 0}, 6, 255} : TWayPoint{{300, (n - 100) * 3}, 6, 255};
    });
    EXPECT_TRUE(CInkArea(vCorner, 3).IsAlone(50));
    EXPECT_FALSE(CInkArea(vCorner, 3).IsAlone(95));
}

TEST(InkWay, MiddleDoesNotFollowTremor) {
    // Every other disc lies a unit to the left: the edges are those of the outer discs.
    TInkWay vWay = Way(81, [](double n) {
        return TWayPoint{{n * 2, static_cast<int>(n) % 2 ? 1.0 : 0.0}, 40, 255};
    });
    for (const size_t idx : {size_t{40}, size_t{41}}) EXPECT_NEAR(40.5, vWay[idx].GetWide(), 0.1);
    MoveToMiddle(vWay);
    for (const size_t idx : {size_t{40}, size_t{41}}) EXPECT_NEAR(0.5, vWay[idx].pt.y, 0.1);
}

TEST(InkEdges, FollowBothSidesOfAStaircase) {
    // Steps of whole path units cover most places beside their inner points.
    const TInkWay vWay = Way(161, [](double n) {
        return TWayPoint{{std::ceil(n / 2), std::floor(n / 2)}, 20, 255};
    });
    const auto vEdges = FindInkEdges(vWay, CInkArea(vWay, TOLERANCE), TOLERANCE);
    for (const bool bLeft : {true, false}) EXPECT_LE(WidestGap(vEdges, vWay, bLeft), 2 * TOLERANCE) << bLeft;
    for (const auto& [pt, idx, bLeft] : vEdges) {
        if (idx < 20 || idx + 20 > vWay.size()) continue;
        const double dAside = (pt.y - pt.x + 0.5) / std::sqrt(2.0);
        EXPECT_NEAR(dAside, bLeft ? 20 : -20, 0.7) << idx;
    }
}

TEST(InkEdges, AreNotWhereTheLineCrossesItself) {
    const TInkWay vWay = Way(601, [](double n) {
        if (n <= 200) return TWayPoint{{n * 3, 0}, 6, 255};
        if (n <= 300) return TWayPoint{{600, (n - 200) * 3}, 6, 255};
        if (n <= 400) return TWayPoint{{600 - (n - 300) * 3, 300}, 6, 255};
        return TWayPoint{{300, 300 - (n - 400) * 3}, 6, 255};
    });
    const auto vEdges = FindInkEdges(vWay, CInkArea(vWay, TOLERANCE), TOLERANCE);
    const auto isAt = [](double d) {
        return [d](const TInkEdge& edge) { return std::abs(edge.pt.x - d) < 5 && std::abs(edge.pt.y) < 7; };
    };
    EXPECT_GT(std::ranges::count_if(vEdges, isAt(200)), 5);
    EXPECT_EQ(std::ranges::count_if(vEdges, isAt(300)), 0);
}

TEST(InkEdges, LeadAroundTurnsAndEnds) {
    const TInkWay vWay = Way(81, [](double n) {
        return n <= 40 ? TWayPoint{{n * 2, 0}, 16, 255} : TWayPoint{{80, n * 2 - 80}, 16, 255};
    });
    const auto vEdges = FindInkEdges(vWay, CInkArea(vWay, TOLERANCE), TOLERANCE);
    const auto countAt = [&](TInkVector middle, TInkVector outward) {
        return std::ranges::count_if(vEdges, [&](const TInkEdge& edge) {
            const TInkVector away = edge.pt - middle;
            return std::abs(LengthOf(away) - 16) < 0.3 && Dot(away, outward) > 16 * 0.6;
        });
    };
    EXPECT_GE(countAt({80, 0}, {0.7, -0.7}), 5) << "the corner's outer arc";
    EXPECT_GE(countAt({0, 0}, {-1, 0}), 3);
    EXPECT_GE(countAt({80, 80}, {0, 1}), 3);
    for (const TInkEdge& edge : vEdges) {
        EXPECT_TRUE(edge.pt.x > 0 || (edge.bLeft ? edge.pt.y >= 0 : edge.pt.y <= 0));
        EXPECT_FALSE(edge.pt.x < 63 && edge.pt.x > 20 && std::abs(edge.pt.y) < 15) << "inside";
    }
    // Long steps have places between their points.
    const TInkWay vLong = Way(11, [](double n) { return TWayPoint{{n * 8, 0}, 6, 255}; });
    const auto vBeside = FindInkEdges(vLong, CInkArea(vLong, TOLERANCE), TOLERANCE);
    EXPECT_EQ(1, std::ranges::count_if(vBeside, [](const TInkEdge& edge) {
                  return edge.bLeft && std::abs(edge.pt.x - 36) < 0.1;
              }));
}

TEST(InkWay, PointsTellHowFarTheLineStandsOff) {
    std::vector<TInkDisc> vLine;
    for (int n = 0; n <= 10; ++n) vLine.push_back({n * 3.0, 0, 10, 255});
    vLine[5].y = 0.2;
    vLine[5].dHalf = 10.1;
    const TInkWay vWay = MakeInkWay(vLine, TOLERANCE);
    ASSERT_EQ(vWay.size(), 5U) << "one chord in parts of a half-width";
    for (size_t n = 1; n < vWay.size(); ++n) EXPECT_NEAR(vWay[n].dOff, 0.3, 1e-9);
    // More than a part of the tolerance makes a point of its own.
    vLine[5].y = 0.4;
    EXPECT_EQ(std::ranges::count(MakeInkWay(vLine, TOLERANCE), 0.4, [](const auto& p) { return p.pt.y; }), 1);
}
