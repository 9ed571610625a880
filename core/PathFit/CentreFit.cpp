#include "core/PathFit/CentreFit.h"

#include "core/Base/Parallel.h"
#include "core/PathFit/InkCorners.h"
#include "core/PathFit/InkTurn.h"

#include <algorithm>
#include <array>

namespace {

/// The part of the tolerance that the centre line may take; it is no smaller than what whole path units
/// allow.
constexpr double CENTRE_SHARE = 0.65;
constexpr double LEAST_TOLERANCE = 0.75;
/// The part of it that a mitre may stand out by.
constexpr double MITRE_SHARE = 0.4;
/// Outlines that are built to choose a turn, and all turns: a scribble may have hundreds.
constexpr size_t BUILDS_OF_TURN = 5;
constexpr size_t MOST_BUILDS = 160;
constexpr double TURN_SHARE = 0.85;
/// No outline is built beside shorter curves.
constexpr double SHORTEST = 2;
/// Curves are not divided into shorter ones than this, nor than this part of the half-width.
constexpr double SHORTEST_PART = 6;
constexpr double SHORTEST_WIDTHS = 0.35;
/// Curves that are fitted again may be off by these parts of what they usually may; the reaches of their
/// turns are multiplied.
constexpr std::array SHARES{1.0, 0.85, 0.7, 0.95, 0.6, 0.8, 0.5};
constexpr std::array REACHES{1.2, 1.4, 0.75, 2.0, 1.0, 0.6, 1.7};
/// The directions at a smooth joint differ by no more than this, as a cosine.
constexpr double SMOOTH = 0.95;
/// Points of the first curve that is tried.
constexpr size_t FIRST_STEP = 16;

TCurveEnd BeginOf(const TInkCubic& cubic) {
    return {cubic.p0, UnitOf(cubic.p1 - cubic.p0, UnitOf(cubic.p3 - cubic.p0, {1, 0}))};
}

TCurveEnd EndOf(const TInkCubic& cubic) { return BeginOf({cubic.p3, cubic.p2, cubic.p1, cubic.p0}); }

/// The centre line's direction on both sides of a joint, which differ at a corner only, where a turn may lie
/// between two places.
struct TJoint {
    TCurveEnd in;  ///< of the curve before, leading back
    TCurveEnd out; ///< of the curve behind
    double dFree = 0;
    std::optional<TInkCubic> turn{};
};

// Fits curves to stretches of a way without corners.
class CStretchFit {
public:
    /// Curves may take `dShare` of what they usually may.
    CStretchFit(const TInkWay& vWay, double dTolerance, double dShare = 1)
        : m_vWay(vWay), m_fit(vWay), m_dTolerance(dTolerance),
          m_dCentre(std::max(dShare * CENTRE_SHARE * dTolerance, LEAST_TOLERANCE)) {}

    // From one corner or end to the next: always the longest curve that stays within the tolerance.
    std::vector<TCentreCurve> FitStretch(const TWayRange& stretch, const TCurveEnd& from,
                                         const TCurveEnd& to) {
        std::vector<TCentreCurve> vCurves;
        TCurveEnd begin = from;
        size_t idx = stretch.idxFirst;
        size_t nStep = FIRST_STEP;
        while (true) {
            TWayRange range{idx, stretch.idxLast, idx == stretch.idxFirst ? stretch.dFreeFirst : 0,
                            stretch.dFreeLast};
            if (const auto cubic = m_fit.Fit(range, begin, to, m_dCentre)) {
                vCurves.push_back({*cubic, range});
                return vCurves;
            }
            const auto found = Longest(stretch, range, begin, nStep);
            if (!found) {
                vCurves.push_back({m_fit.FitAtAll(range, begin, to), range});
                return vCurves;
            }
            vCurves.push_back(found->curve);
            nStep = std::max<size_t>(found->curve.range.idxLast - idx, 4);
            idx = found->curve.range.idxLast;
            begin = {found->end.pt, -found->end.direction};
        }
    }
    std::optional<std::array<TCentreCurve, 2>> Divide(const TCentreCurve& curve) {
        const auto& [cubic, range] = curve;
        if (range.idxLast - range.idxFirst < 4) return {};
        const double dMiddle = (m_vWay[range.idxFirst].dLength + m_vWay[range.idxLast].dLength) / 2;
        size_t idx = range.idxFirst + 2;
        while (idx + 2 < range.idxLast && m_vWay[idx].dLength < dMiddle) ++idx;
        const TWayTangent middle = TangentAt(m_vWay, idx, range.idxFirst, range.idxLast, m_dTolerance);
        // Short handles have coarse directions, which a wide line shows most.
        const double dShortest = std::max(SHORTEST_PART, SHORTEST_WIDTHS * m_vWay[idx].dHalf);
        if (LengthOf(middle.pt - cubic.p0) < dShortest || LengthOf(middle.pt - cubic.p3) < dShortest)
            return {};
        const TCurveEnd from = BeginOf(cubic), to = EndOf(cubic);
        const TWayRange head{range.idxFirst, idx, range.dFreeFirst, 0};
        const TWayRange tail{idx, range.idxLast, 0, range.dFreeLast};
        return std::array{TCentreCurve{Best(head, from, {middle.pt, -middle.direction}), head},
                          TCentreCurve{Best(tail, {middle.pt, middle.direction}, to), tail}};
    }

private:
    TInkCubic Best(const TWayRange& range, const TCurveEnd& from, const TCurveEnd& to) {
        const auto cubic = m_fit.Fit(range, from, to, m_dCentre);
        return cubic ? *cubic : m_fit.FitAtAll(range, from, to);
    }
    struct TFound {
        TCentreCurve curve;
        TCurveEnd end;
    };
    std::optional<TFound> TryTo(const TWayRange& stretch, TWayRange range, const TCurveEnd& from, size_t idx,
                                bool bAtAll) {
        const TWayTangent tangent = TangentAt(m_vWay, idx, stretch.idxFirst, stretch.idxLast, m_dTolerance);
        // No joint between an end of the stretch and where the way leaves its corner.
        const auto isNear = [&](size_t idxEnd, double dFree) {
            return std::abs(m_vWay[idx].dLength - m_vWay[idxEnd].dLength) < dFree + SHORTEST_PART;
        };
        if (LengthOf(tangent.pt - from.pt) < SHORTEST || isNear(stretch.idxFirst, stretch.dFreeFirst))
            return {};
        range.idxLast = idx;
        range.dFreeLast = 0;
        const TCurveEnd to{tangent.pt, -tangent.direction};
        auto cubic = m_fit.Fit(range, from, to, m_dCentre);
        if (!cubic && bAtAll) cubic = m_fit.FitAtAll(range, from, to);
        if (!cubic) return {};
        return TFound{{*cubic, range}, to};
    }
    // The longest curve that ends before the stretch does; nullopt when there is no room for one.
    std::optional<TFound> Longest(const TWayRange& stretch, const TWayRange& range, const TCurveEnd& from,
                                  size_t nStep) {
        const double dMost = m_vWay[stretch.idxLast].dLength - stretch.dFreeLast - SHORTEST_PART;
        size_t nMost = range.idxLast - range.idxFirst;
        while (nMost > 0 && m_vWay[range.idxFirst + nMost].dLength > dMost) --nMost;
        std::optional<TFound> best;
        size_t nGood = 0, nBad = nMost + 1;
        size_t n = std::min(nStep, nMost);
        while (n > nGood && n < nBad) {
            if (auto found = TryTo(stretch, range, from, range.idxFirst + n, false)) {
                best = found;
                nGood = n;
                n = nBad > nMost ? std::min(2 * n, nMost) : (nGood + nBad) / 2;
            } else {
                nBad = n;
                n = (nGood + nBad) / 2;
            }
            if (nBad - nGood <= 1 + nGood / 24) break;
        }
        for (n = 1; !best && n <= nMost; ++n) best = TryTo(stretch, range, from, range.idxFirst + n, true);
        return best;
    }

    const TInkWay& m_vWay;
    CCurveFit m_fit;
    double m_dTolerance;
    double m_dCentre;
};

TJoint EndJoint(const TInkWay& vWay, double dTolerance, size_t idx, size_t idxFirst, size_t idxLast) {
    const auto [pt, direction] = TangentAt(vWay, idx, idxFirst, idxLast, dTolerance);
    return {{pt, -direction}, {pt, direction}};
}

TJoint CornerJoint(const TInkWay& vWay, double dTolerance, size_t idx, size_t idxFirst, size_t idxLast,
                   size_t nBuilds, double dReaches = 1) {
    const TInkCorner corner{vWay[idx].pt, TangentAt(vWay, idx, idxFirst, idx, dTolerance).direction,
                            TangentAt(vWay, idx, idx, idxLast, dTolerance).direction, vWay[idx].dHalf};
    if (IsMitreEnough(corner, MITRE_SHARE * dTolerance))
        return {{Nearest(corner.pt), -corner.in}, {Nearest(corner.pt), corner.out}};
    const double dReach = dReaches * TurnReach(corner, dTolerance);
    const TInkCubic turn = TurnAt(corner, dReach, TURN_SHARE * dTolerance, nBuilds);
    return {{turn.p0, -corner.in}, {turn.p3, corner.out}, 2 * dReach, turn};
}

} // namespace

std::vector<TCentreCurve> FitCentre(const TInkWay& vWay, double dTolerance, size_t nThreads) {
    std::vector<size_t> vPlaces = FindCorners(vWay, dTolerance);
    const size_t nBuilds = std::min(BUILDS_OF_TURN, MOST_BUILDS / std::max<size_t>(vPlaces.size(), 1));
    vPlaces.insert(vPlaces.begin(), 0);
    vPlaces.push_back(vWay.size() - 1);
    const size_t nStretches = vPlaces.size() - 1;
    std::vector<TJoint> vJoints(vPlaces.size());
    ForEachIndex(vJoints.size(), nThreads, [&](size_t n) {
        const size_t idx = vPlaces[n];
        const size_t idxFirst = vPlaces[n > 0 ? n - 1 : 0], idxLast = vPlaces[std::min(n + 1, nStretches)];
        vJoints[n] = n == 0 || n == nStretches
                         ? EndJoint(vWay, dTolerance, idx, idxFirst, idxLast)
                         : CornerJoint(vWay, dTolerance, idx, idxFirst, idxLast, nBuilds);
    });
    std::vector<std::vector<TCentreCurve>> vStretches(nStretches);
    ForEachIndex(nStretches, nThreads, [&](size_t n) {
        const TWayRange stretch{vPlaces[n], vPlaces[n + 1], vJoints[n].dFree, vJoints[n + 1].dFree};
        vStretches[n] = CStretchFit(vWay, dTolerance).FitStretch(stretch, vJoints[n].out, vJoints[n + 1].in);
    });
    std::vector<TCentreCurve> vCurves;
    for (size_t n = 0; n < nStretches; ++n) {
        if (vJoints[n].turn) vCurves.push_back({*vJoints[n].turn, {vPlaces[n], vPlaces[n]}});
        vCurves.insert(vCurves.end(), vStretches[n].begin(), vStretches[n].end());
    }
    return vCurves;
}

std::optional<std::array<TCentreCurve, 2>> DivideCurve(const TCentreCurve& curve, const TInkWay& vWay,
                                                       double dTolerance) {
    return CStretchFit(vWay, dTolerance).Divide(curve);
}

std::vector<TCentreCurve> RefitCurves(std::span<const TCentreCurve> vCurves, const TInkWay& vWay,
                                      double dTolerance, int nTry) {
    const auto nVariant = static_cast<size_t>(nTry) % SHARES.size();
    CStretchFit fit(vWay, dTolerance, SHARES[nVariant]);
    std::vector<TCentreCurve> vNew;
    TCurveEnd begin = BeginOf(vCurves.front().cubic);
    TWayRange stretch = vCurves.front().range;
    const auto endStretch = [&](const TCurveEnd& end, const TWayRange& next) {
        const auto vFitted = fit.FitStretch(stretch, begin, end);
        vNew.insert(vNew.end(), vFitted.begin(), vFitted.end());
        stretch = next;
    };
    for (size_t n = 0; n < vCurves.size(); ++n) {
        const TCentreCurve& curve = vCurves[n];
        if (curve.IsTurn()) continue;
        const size_t idx = stretch.idxLast = curve.range.idxLast;
        stretch.dFreeLast = curve.range.dFreeLast;
        const TCurveEnd end = EndOf(curve.cubic);
        if (n + 1 == vCurves.size()) {
            endStretch(end, {});
        } else if (const TCentreCurve& next = vCurves[n + 1]; next.IsTurn()) {
            const TJoint joint = CornerJoint(vWay, dTolerance, idx, stretch.idxFirst,
                                             vCurves[n + 2].range.idxLast, BUILDS_OF_TURN, REACHES[nVariant]);
            stretch.dFreeLast = joint.dFree;
            endStretch(joint.in, {idx, idx, joint.dFree});
            if (joint.turn) vNew.push_back({*joint.turn, {idx, idx}});
            begin = joint.out;
        } else if (const TCurveEnd out = BeginOf(next.cubic); Dot(end.direction, -out.direction) < SMOOTH) {
            endStretch(end, {idx, idx, next.range.dFreeFirst});
            begin = out;
        }
    }
    return vNew;
}
