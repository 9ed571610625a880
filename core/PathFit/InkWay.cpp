#include "core/PathFit/InkWay.h"

#include "core/PathObject/PathControlPointBase.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

// Parts of the tolerance.
constexpr double NEAR = 0.2;    ///< points so near to the one before are no points of their own
constexpr double COVERED = 0.1; ///< how far a disc at an end may stand out of the one that covers it
constexpr double HOOK = 0.7;    ///< the same where the line turns away from it
constexpr double OFF_CHORD =
    0.14;                   ///< distance of points that are left out from the line between their neighbours
constexpr double DOT = 0.5; ///< how far the discs of a dot may stand out of its largest
/// The turn from a hook to the line, as a cosine.
constexpr double HOOK_TURN = 0.7;
constexpr size_t LONGEST_RUN = 16;  ///< points left out one after the other
constexpr double LONGEST_CHORD = 1; ///< half-widths, at least tolerances
constexpr size_t MOST_PARTS = 16;   ///< of a chord
/// Discs that may reach out beside a place are looked for so far away, in its half-widths; not all of them
/// where it has many path units.
constexpr double REACH = 0.8;
constexpr double LOOKS = 64;
constexpr size_t LONGEST_END = 4096; ///< points that an end may cover
/// How far beyond one edge the other one may be from a disc's middle, in tolerances: more is no tremor.
constexpr double MOST_MOVE = 0.5;
/// A way bends whose directions before and behind a place differ by more than this cosine, or whose ends are
/// nearer to each other than this part of its length.
constexpr double STRAIGHT = 0.85;
constexpr double STRETCHED = 0.6;
/// Discs that lie beside the way's direction by more than this slope are behind a bend.
constexpr double MOST_SLANT = 0.3;
/// The half-width, in path units, below which an end is not seen: it covers less than a fifth of its pixels.
constexpr double FAINT = 0.8;
/// The same for a whole line.
constexpr double INVISIBLE = 0.25;

double ClampedPlace(double d) {
    constexpr double LIMIT = PATH_COORDINATE_LIMIT / 2;
    return std::clamp(d, -LIMIT, LIMIT);
}

TWayPoint PointOf(const TInkDisc& disc) {
    return {{ClampedPlace(disc.x), ClampedPlace(disc.y)},
            std::clamp(disc.dHalf, 0.0, static_cast<double>(PATH_WIDTH_LIMIT)),
            std::clamp(disc.dAlpha, 0.0, 255.0)};
}

bool Covers(const TWayPoint& by, const TWayPoint& disc, double dSlack) {
    const double dRoom = by.dHalf - disc.dHalf + dSlack;
    const TInkVector way = disc.pt - by.pt;
    return dRoom >= 0 && Dot(way, way) <= dRoom * dRoom;
}

// The last of the first points that covers all before it.
template <class Iterator>
Iterator EndOfCovered(Iterator itBegin, Iterator itEnd, double dSlack) {
    Iterator itBest = itBegin;
    const auto nMost = std::min<std::ptrdiff_t>(itEnd - itBegin, LONGEST_END);
    std::ptrdiff_t nStep = 1;
    for (std::ptrdiff_t n = 1; n < nMost; n += nStep) {
        const auto covers = [&](const TWayPoint& disc) { return Covers(itBegin[n], disc, dSlack); };
        if (!std::all_of(itBegin, itBegin + n, covers)) continue;
        itBest = itBegin + n;
        nStep = 1 + n / 16; // each success costs as much as there are points before it
    }
    return itBest;
}

// The point behind a hook at the beginning; the beginning itself without one.
template <class Iterator>
Iterator EndOfHook(Iterator itBegin, Iterator itEnd, double dTolerance) {
    const Iterator itHook = EndOfCovered(itBegin, itEnd, HOOK * dTolerance);
    const TInkVector hook = itHook->pt - itBegin->pt;
    const auto isAway = [&](const TWayPoint& point) {
        return LengthOf(point.pt - itHook->pt) >= 3 * dTolerance;
    };
    const Iterator itAway = std::find_if(itHook, itEnd, isAway);
    if (itAway == itEnd) return itBegin;
    const TInkVector line = itAway->pt - itHook->pt;
    return Dot(hook, line) < HOOK_TURN * LengthOf(hook) * LengthOf(line) ? itHook : itBegin;
}

// The line without faint ends; empty when none of it can be seen.
std::span<const TInkDisc> WithoutFaintEnds(std::span<const TInkDisc> vLine) {
    double dMost = 0;
    for (const TInkDisc& disc : vLine) dMost = std::max(dMost, disc.dHalf);
    if (dMost < INVISIBLE) return {};
    const auto isSeen = [&](const TInkDisc& disc) { return disc.dHalf >= std::min(FAINT, dMost); };
    return {std::ranges::find_if(vLine, isSeen), std::find_if(vLine.rbegin(), vLine.rend(), isSeen).base()};
}

TInkWay WithoutDwelling(std::span<const TInkDisc> vLine, double dNear) {
    TInkWay vWay;
    for (const TInkDisc& disc : vLine) {
        const TWayPoint point = PointOf(disc);
        if (!vWay.empty() && LengthOf(point.pt - vWay.back().pt) <= dNear) {
            TWayPoint& last = vWay.back();
            if (point.dHalf <= last.dHalf) continue;
            last.dHalf = point.dHalf;
            last.dAlpha = point.dAlpha;
            continue;
        }
        vWay.push_back(point);
    }
    return vWay;
}

// How far the points between two others stand off when they are left out; nullopt for more than `dMost`.
std::optional<double> OffChord(const TInkWay& vWay, size_t idxFirst, size_t idxLast, double dMost) {
    const TWayPoint& first = vWay[idxFirst];
    const TWayPoint& last = vWay[idxLast];
    const TInkVector chord = last.pt - first.pt;
    const double dSquare = Dot(chord, chord);
    if (dSquare == 0) return {};
    double dOff = 0;
    for (size_t i = idxFirst + 1; i < idxLast; ++i) {
        const TInkVector way = vWay[i].pt - first.pt;
        const double t = Dot(way, chord) / dSquare;
        if (t < 0 || t > 1) return {};
        const double dOut = LengthOf(way - chord * t);
        const double dHalf = first.dHalf + (last.dHalf - first.dHalf) * t;
        dOff = std::max(dOff, dOut + std::abs(vWay[i].dHalf - dHalf));
        if (dOff > dMost) return {};
    }
    return dOff;
}

TInkWay Thinned(const TInkWay& vWay, double dMost) {
    TInkWay vKept{vWay.front()};
    size_t idxKept = 0;
    double dLast = 0;
    for (size_t i = 1; i < vWay.size(); ++i) {
        const bool bLast = i + 1 == vWay.size();
        if (!bLast && i - idxKept < LONGEST_RUN) {
            if (const auto dNext = OffChord(vWay, idxKept, i + 1, dMost)) {
                dLast = *dNext;
                continue;
            }
        }
        vKept.push_back(vWay[i]);
        vKept.back().dOff = std::exchange(dLast, 0);
        idxKept = i;
    }
    return vKept;
}

// The fit sees the line at points only.
TInkWay Divided(const TInkWay& vWay, double dLeast) {
    TInkWay vAll{vWay.front()};
    for (size_t i = 1; i < vWay.size(); ++i) {
        const TWayPoint& from = vWay[i - 1];
        const TWayPoint& to = vWay[i];
        const double dStep = LONGEST_CHORD * std::max(dLeast, std::min(from.dHalf, to.dHalf));
        const double dParts = LengthOf(to.pt - from.pt) / dStep;
        const size_t nParts = dParts < MOST_PARTS ? static_cast<size_t>(dParts) + 1 : MOST_PARTS;
        for (size_t n = 1; n < nParts; ++n) {
            const double t = static_cast<double>(n) / static_cast<double>(nParts);
            TWayPoint& point = vAll.emplace_back(to);
            point.pt = Mix(from.pt, to.pt, t);
            point.dHalf = from.dHalf + (to.dHalf - from.dHalf) * t;
            point.dAlpha = from.dAlpha + (to.dAlpha - from.dAlpha) * t;
        }
        vAll.push_back(to);
    }
    return vAll;
}

} // namespace

void MeasureLengths(TInkWay& vWay) {
    double dLength = 0;
    for (size_t i = 0; i < vWay.size(); ++i) {
        if (i > 0) dLength += LengthOf(vWay[i].pt - vWay[i - 1].pt);
        vWay[i].dLength = dLength;
    }
}

void MeasureSides(TInkWay& vWay, size_t idx, double dTolerance) {
    TWayPoint& point = vWay[idx];
    // Tremor is followed so far. Level discs farther away lie deeper than that beside the point.
    const double dMost = MOST_MOVE * dTolerance;
    const double dNear = std::max(std::sqrt(2 * point.dHalf * dMost), dTolerance);
    size_t idxBefore = idx, idxBehind = idx;
    while (idxBefore > 0 && point.dLength - vWay[idxBefore].dLength < dNear) --idxBefore;
    while (idxBehind + 1 < vWay.size() && vWay[idxBehind].dLength - point.dLength < dNear) ++idxBehind;
    const TInkVector in = point.pt - vWay[idxBefore].pt, out = vWay[idxBehind].pt - point.pt;
    const double dIn = LengthOf(in), dOut = LengthOf(out);
    const TInkVector direction = UnitOf(in + out, UnitOf(in, {1, 0}));
    const bool bStraight = Dot(in, out) >= STRAIGHT * dIn * dOut &&
                           dIn >= STRETCHED * (point.dLength - vWay[idxBefore].dLength) &&
                           dOut >= STRETCHED * (vWay[idxBehind].dLength - point.dLength);
    point.left = Perpendicular(direction);
    point.bSure = bStraight;
    double dLeft = point.dHalf, dRight = point.dHalf, dSquareLevel = point.dHalf * point.dHalf;
    // Beside a place the edge is that of the disc that reaches out farthest there. Returns the next step
    // along the way, 0 where there are no more such discs.
    const auto look = [&](const TWayPoint& disc, TInkVector ahead) -> size_t {
        const TInkVector off = disc.pt - point.pt;
        const double dAhead = Dot(off, ahead), dAside = Dot(off, point.left);
        if (std::abs(dAside) > MOST_SLANT * dAhead + dMost) {
            point.bSure = false;
            return 0;
        }
        const double dSquare = disc.dHalf * disc.dHalf - dAhead * dAhead;
        dSquareLevel = std::max(dSquareLevel, dSquare);
        const double dMoreLeft = dLeft - dAside, dMoreRight = dRight + dAside;
        if (dSquare > dMoreLeft * dMoreLeft) dLeft = std::sqrt(dSquare) + dAside;
        if (dSquare > dMoreRight * dMoreRight) dRight = std::sqrt(dSquare) - dAside;
        if (dAhead > REACH * point.dHalf) return 0;
        return 1 + static_cast<size_t>(point.dHalf / LOOKS);
    };
    for (size_t j = idx + 1, nStep = 1; nStep > 0 && j < vWay.size(); j += nStep)
        nStep = look(vWay[j], direction);
    for (size_t nBack = 1, nStep = 1; nStep > 0 && nBack <= idx; nBack += nStep)
        nStep = look(vWay[idx - nBack], -direction);
    const double dMostOut = bStraight ? std::min(dLeft, dRight) + dMost : std::sqrt(dSquareLevel);
    point.bSure = point.bSure && std::max(dLeft, dRight) <= dMostOut;
    point.dLeft = std::min(dLeft, dMostOut);
    point.dRight = std::min(dRight, dMostOut);
}

void MeasureWay(TInkWay& vWay, double dTolerance) {
    MeasureLengths(vWay);
    for (size_t i = 0; i < vWay.size(); ++i) MeasureSides(vWay, i, dTolerance);
}

void MoveToMiddle(TInkWay& vWay) {
    for (size_t i = 1; i + 1 < vWay.size(); ++i)
        vWay[i].pt = vWay[i].pt + vWay[i].left * ((vWay[i].dLeft - vWay[i].dRight) / 2);
}

TInkWay MakeInkWay(std::span<const TInkDisc> vLine, double dTolerance) {
    TInkWay vWay = WithoutDwelling(WithoutFaintEnds(vLine), NEAR * dTolerance);
    if (vWay.empty()) return {};
    const auto itLargest = std::max_element(vWay.begin(), vWay.end(),
                                            [](const auto& a, const auto& b) { return a.dHalf < b.dHalf; });
    const auto isInDot = [&](const TWayPoint& point) { return Covers(*itLargest, point, DOT * dTolerance); };
    if (std::all_of(vWay.begin(), vWay.end(), isInDot)) return {*itLargest};
    vWay.erase(vWay.begin(), EndOfCovered(vWay.begin(), vWay.end(), COVERED * dTolerance));
    vWay.erase(EndOfCovered(vWay.rbegin(), vWay.rend(), COVERED * dTolerance).base(), vWay.end());
    vWay.erase(vWay.begin(), EndOfHook(vWay.begin(), vWay.end(), dTolerance));
    vWay.erase(EndOfHook(vWay.rbegin(), vWay.rend(), dTolerance).base(), vWay.end());
    vWay = Divided(Thinned(vWay, OFF_CHORD * dTolerance), dTolerance);
    MeasureWay(vWay, dTolerance);
    return vWay;
}
