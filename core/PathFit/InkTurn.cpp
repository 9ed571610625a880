#include "core/PathFit/InkTurn.h"

#include "core/PathFit/InkCheck.h"
#include "core/PathFit/InkEnds.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

/// An outline takes the direction from farther along a curve whose derivative is smaller than this.
constexpr double LEAST_SLOPE = 4.2;
/// The reach of a turn, in tolerances and half-widths, and at least in path units.
constexpr double REACH = 1.2;
constexpr double REACH_WIDTHS = 0.5;
constexpr double LEAST_REACH = 3;
/// The largest reach that is tried, in reaches that were asked for.
constexpr double LARGEST = 3;

// The distance by which a mitre between two edges stands out of the round corner.
double MitreOf(TInkVector a, TInkVector b, double dHalf) {
    const double dHalfCos = std::sqrt(std::max(0.0, (1 + Dot(a, b)) / 2));
    return dHalfCos > 0 ? dHalf * (1 - dHalfCos) / dHalfCos : std::numeric_limits<double>::max();
}

// The distance of a place beside the corner from its drawn edge.
double OffEdge(const TInkCorner& corner, TInkVector pt) {
    const TInkVector off = pt - corner.pt;
    // Beside the lines before and behind the corner the edge is straight.
    const double dEdge = Dot(off, corner.in) < 0    ? std::abs(Cross(corner.in, off))
                         : Dot(off, corner.out) > 0 ? std::abs(Cross(corner.out, off))
                                                    : LengthOf(off);
    return std::abs(dEdge - corner.dHalf);
}

// The outer side of a part of the turn as the outline has it: one cubic through the side's middle.
TInkCubic SideOf(const TInkCubic& turn, double dFirst, double dLast, double dAside) {
    const auto directionAt = [&](double t) { return UnitOf(turn.SlopeAt(t), {}); };
    const auto sideAt = [&](double t) { return turn.At(t) + Perpendicular(directionAt(t)) * dAside; };
    const TInkVector a = sideAt(dFirst), b = sideAt(dLast), middle = sideAt((dFirst + dLast) / 2);
    const TInkVector fore = directionAt(dFirst), back = -directionAt(dLast);
    const TInkVector way = (middle * 8 - (a + b) * 4) * (1.0 / 3);
    const double dDivisor = Cross(fore, back);
    if (std::abs(dDivisor) < 0.01) return {a, a, b, b};
    const auto clamped = [&](double d) { return std::clamp(d, 0.0, 1.5 * std::abs(dAside)); };
    return {a, a + fore * clamped(Cross(way, back) / dDivisor),
            b + back * clamped(-Cross(way, fore) / dDivisor), b};
}

bool HasSureDirections(const TInkCubic& turn) {
    constexpr std::array PLACES{0.0, 0.25, 0.5, 0.75, 1.0};
    return std::all_of(PLACES.begin(), PLACES.end(),
                       [&](double t) { return LengthOf(turn.SlopeAt(t)) >= LEAST_SLOPE; });
}

// The largest distance of the turn's outer side from the drawn corner.
double ErrorOf(const TInkCorner& corner, const TInkCubic& turn, double dSide) {
    constexpr int SAMPLES = 6;
    double dMost = 0;
    for (const double dFirst : std::array{0.0, 0.5}) {
        const TInkCubic side = SideOf(turn, dFirst, dFirst + 0.5, -dSide * corner.dHalf);
        for (int n = 0; n <= SAMPLES; ++n)
            dMost = std::max(dMost, OffEdge(corner, side.At(static_cast<double>(n) / SAMPLES)));
    }
    const TInkVector fore = UnitOf(turn.p1 - turn.p0, {}), back = UnitOf(turn.p3 - turn.p2, {});
    return dMost + std::max(MitreOf(corner.in, fore, corner.dHalf), MitreOf(back, corner.out, corner.dHalf));
}

// The places where the outline around the turn leaves the tolerance of a line with this corner.
size_t CountFaults(const TInkCorner& corner, const TInkCubic& turn, double dTolerance) {
    const double dArm = 2 * corner.dHalf + 20;
    const TInkVector first = Nearest(corner.pt - corner.in * dArm),
                     last = Nearest(corner.pt + corner.out * dArm);
    TInkWay vWay{{first, corner.dHalf, 0}, {corner.pt, corner.dHalf, 0}, {last, corner.dHalf, 0}};
    MeasureWay(vWay, dTolerance);
    TFittedInk ink;
    ink.vAnchors = {{ToPoint(first), {}, ToPoint(HandleOf(corner.in, dArm / 3))},
                    {ToPoint(turn.p0), ToPoint(HandleOf(-corner.in, dArm / 3)), ToPoint(turn.p1 - turn.p0)},
                    {ToPoint(turn.p3), ToPoint(turn.p2 - turn.p3), ToPoint(HandleOf(corner.out, dArm / 3))},
                    {ToPoint(last), ToPoint(HandleOf(-corner.out, dArm / 3)), {}}};
    ink.uWidth = static_cast<uint32_t>(Nearest(corner.dHalf));
    ink.vWidths = {{0, ink.uWidth}}; // not in the middle, which would divide the turn
    ink.begin = {TERM_ROUND, GrowOf(vWay.front(), first, -corner.in, ink.uWidth)};
    ink.end = {TERM_ROUND, GrowOf(vWay.back(), last, corner.out, ink.uWidth)};
    return CInkCheck(vWay, dTolerance)
        .Find(MakeInkPath(ink)->GetStream().GetShape(STATE_COMMITTED))
        .vPoints.size();
}

} // namespace

bool IsMitreEnough(const TInkCorner& corner, double dMost) {
    return corner.dHalf <= dMost || MitreOf(corner.in, corner.out, corner.dHalf) <= dMost;
}

double TurnReach(const TInkCorner& corner, double dTolerance) {
    return std::max(std::min(REACH * dTolerance, REACH_WIDTHS * corner.dHalf), LEAST_REACH);
}

TInkCubic TurnAt(const TInkCorner& corner, double dReach, double dTolerance, size_t nBuilds) {
    const auto& [pt, in, out, dHalf] = corner;
    // A line that runs back on itself turns to the side that it turns to by less than half a circle.
    const double dSide = Cross(in, out) < 0 ? -1 : 1;
    const TInkVector outward = UnitOf(in - out, in);
    const TInkVector across = Perpendicular(outward) * dSide;
    struct TTry {
        double dError;
        TInkCubic turn;
    };
    std::vector<TTry> vTries;
    const auto offer = [&](double dBack, double dApart, double dHandle, double dShift) {
        const double dMore = std::max(0.0, dApart - LengthOf(in + out) * dBack / 2);
        const TInkVector tip = pt + outward * dShift;
        const TInkVector from = Nearest(tip - in * dBack - across * dMore);
        const TInkVector to = Nearest(tip + out * dBack + across * dMore);
        const TInkCubic turn{from, from + HandleOf(in, dHandle * dBack), to + HandleOf(-out, dHandle * dBack),
                             to};
        const auto isSame = [&](const TTry& other) {
            const TInkVector first = other.turn.p0 - turn.p0, second = other.turn.p1 - turn.p1;
            const TInkVector third = other.turn.p2 - turn.p2, last = other.turn.p3 - turn.p3;
            return Dot(first, first) + Dot(second, second) + Dot(third, third) + Dot(last, last) == 0;
        };
        if (HasSureDirections(turn) && std::none_of(vTries.begin(), vTries.end(), isSame))
            vTries.push_back({ErrorOf(corner, turn, dSide), turn});
    };
    // Some corners have room for none but a larger turn.
    for (double dMost = dReach; vTries.empty() && dMost <= LARGEST * dReach; dMost *= 1.5)
        for (const double dShare : std::array{0.5, 0.7, 1.0, 1.4})
            for (const double dApart : std::array{1.0, 1.5, 2.0})
                for (const double dHandle : std::array{0.45, 0.6, 0.8})
                    for (const double dShift : std::array{0.0, 0.75, 1.5})
                        offer(dShare * dMost, dApart, dHandle, dShift);
    if (vTries.empty()) return {pt, pt, pt, pt};
    std::stable_sort(vTries.begin(), vTries.end(),
                     [](const TTry& a, const TTry& b) { return a.dError < b.dError; });
    TInkCubic best = vTries.front().turn;
    vTries.resize(std::min(vTries.size(), nBuilds));
    size_t nBest = std::numeric_limits<size_t>::max();
    for (const TTry& attempt : vTries) {
        const size_t nFaults = CountFaults(corner, attempt.turn, dTolerance);
        if (nFaults >= nBest) continue;
        nBest = nFaults;
        best = attempt.turn;
        if (nFaults == 0) break;
    }
    return best;
}
