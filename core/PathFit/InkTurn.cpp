#include "core/PathFit/InkTurn.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

/// No outline is built beside shorter curves.
constexpr double SHORTEST = 2;
constexpr int SAMPLES = 12;

// What a mitre between two edges stands out by.
double MitreOf(TInkVector a, TInkVector b, double dHalf) {
    const double dHalfCos = std::sqrt(std::max(0.0, (1 + Dot(a, b)) / 2));
    return dHalfCos > 0 ? dHalf * (1 - dHalfCos) / dHalfCos : std::numeric_limits<double>::max();
}

// The largest distance of the turn's outer side from the drawn corner.
double ErrorOf(const TInkCorner& corner, const TInkCubic& turn, double dSide) {
    double dMost = 0;
    for (int n = 0; n <= SAMPLES; ++n) {
        const double t = static_cast<double>(n) / SAMPLES;
        const TInkVector outward = Perpendicular(UnitOf(turn.SlopeAt(t), {})) * -dSide;
        const TInkVector off = turn.At(t) + outward * corner.dHalf - corner.pt;
        // Beside the lines before and behind the corner the edge is straight.
        const double dEdge = Dot(off, corner.in) < 0    ? std::abs(Cross(corner.in, off))
                             : Dot(off, corner.out) > 0 ? std::abs(Cross(corner.out, off))
                                                        : LengthOf(off);
        dMost = std::max(dMost, std::abs(dEdge - corner.dHalf));
    }
    const TInkVector fore = UnitOf(turn.p1 - turn.p0, {}), back = UnitOf(turn.p3 - turn.p2, {});
    return dMost + std::max(MitreOf(corner.in, fore, corner.dHalf), MitreOf(back, corner.out, corner.dHalf));
}

} // namespace

bool IsMitreEnough(const TInkCorner& corner, double dMost) {
    return corner.dHalf <= dMost || MitreOf(corner.in, corner.out, corner.dHalf) <= dMost;
}

TInkCubic TurnAt(const TInkCorner& corner, double dReach) {
    const auto& [pt, in, out, dHalf] = corner;
    // A line that runs back on itself turns to the side that it turns to by less than half a circle.
    const double dSide = Cross(in, out) < 0 ? -1 : 1;
    const TInkVector across = Perpendicular(UnitOf(in - out, in)) * dSide;
    TInkCubic best{};
    double dBest = std::numeric_limits<double>::max();
    for (const double dShare : std::array{0.5, 0.75, 1.0})
        for (const double dApart : std::array{1.0, 1.5})
            for (const double dHandle : std::array{0.6, 0.8, 1.0}) {
                const double dBack = std::max(dShare * dReach, SHORTEST);
                const double dMore = std::max(0.0, dApart - LengthOf(in + out) * dBack / 2);
                const TInkVector from = Nearest(pt - in * dBack - across * dMore);
                const TInkVector to = Nearest(pt + out * dBack + across * dMore);
                const TInkCubic turn{from, from + HandleOf(in, dHandle * dBack),
                                     to + HandleOf(-out, dHandle * dBack), to};
                const bool bShort = LengthOf(to - from) < SHORTEST;
                const double dError = ErrorOf(corner, turn, dSide) + (bShort ? dHalf : 0);
                if (dError >= dBest) continue;
                dBest = dError;
                best = turn;
            }
    return best;
}
