#include "core/PathFit/InkEnds.h"

#include <algorithm>

namespace {

/// The largest half-width of a tapering end, in tolerances and of the line's largest.
constexpr double TAPER_TOLERANCE = 0.8;
constexpr double TAPER_SHARE = 0.35;
/// How far a sharp end leads into its last disc's edge, in half-widths.
constexpr double TAPER_REACH = 0.7;
/// A round end's curve is flatter than a circle: a little longer it is as far outside as inside.
constexpr double ROUND_REACH = 1.0187;
constexpr double MOST_GROW = 8;

} // namespace

bool IsTapering(const TInkWay& vWay, bool bBegin, double dTolerance) {
    const double dEnd = (bBegin ? vWay.front() : vWay.back()).dHalf;
    double dMost = 0;
    for (const TWayPoint& point : vWay) dMost = std::max(dMost, point.dHalf);
    return dEnd <= TAPER_TOLERANCE * dTolerance && dEnd <= TAPER_SHARE * dMost;
}

void ExtendTapers(TInkWay& vWay, bool bBegin, bool bEnd, double dTolerance) {
    const auto tip = [](const TWayPoint& end, const TWayPoint& before) {
        const TInkVector outward = UnitOf(end.pt - before.pt, {});
        return TWayPoint{end.pt + outward * (TAPER_REACH * end.dHalf), 0, end.dAlpha};
    };
    constexpr double LEAST = 0.5; // path units
    if (bEnd && vWay.back().dHalf >= LEAST) vWay.push_back(tip(vWay.back(), vWay[vWay.size() - 2]));
    if (bBegin && vWay.front().dHalf >= LEAST) vWay.insert(vWay.begin(), tip(vWay[0], vWay[1]));
    MeasureLengths(vWay);
    MeasureSides(vWay, 0, dTolerance);
    MeasureSides(vWay, vWay.size() - 1, dTolerance);
}

uint32_t GrowOf(const TWayPoint& disc, TInkVector ptAnchor, TInkVector outward, uint32_t uWidth) {
    if (uWidth == 0) return FIXED_ONE;
    const double dReach = Dot(disc.pt - ptAnchor, outward) + ROUND_REACH * disc.dHalf;
    return static_cast<uint32_t>(Nearest(std::clamp(dReach / uWidth, 0.0, MOST_GROW) * FIXED_ONE));
}

TFittedInk MakeDot(const TWayPoint& disc) {
    constexpr TInkVector RIGHT{1, 0};
    TFittedInk ink;
    // The shortest line beside which an outline is built.
    const TInkVector pt = Nearest(disc.pt);
    ink.vAnchors = {{ToPoint(pt - RIGHT), {}, {}}, {ToPoint(pt + RIGHT), {}, {}}};
    ink.uWidth = std::max(static_cast<uint32_t>(Nearest(disc.dHalf)), 1U);
    ink.vAlphas = {{0, static_cast<uint32_t>(Nearest(disc.dAlpha))}};
    ink.begin = {TERM_ROUND, GrowOf(disc, pt - RIGHT, -RIGHT, ink.uWidth)};
    ink.end = {TERM_ROUND, GrowOf(disc, pt + RIGHT, RIGHT, ink.uWidth)};
    return ink;
}
