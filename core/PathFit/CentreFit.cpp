#include "core/PathFit/CentreFit.h"

#include "core/PathFit/InkCorners.h"
#include "core/PathFit/InkTurn.h"

#include <algorithm>

namespace {

/// The part of the tolerance that the centre line may take; it is no smaller than what whole path units
/// allow.
constexpr double CENTRE_SHARE = 0.65;
constexpr double LEAST_TOLERANCE = 0.75;
/// The part of it that a mitre may stand out by.
constexpr double MITRE_SHARE = 0.4;
/// The reach of the turn at other corners, in tolerances and half-widths, and at least in path units.
constexpr double TURN_REACH = 1.2;
constexpr double TURN_WIDTHS = 0.5;
constexpr double LEAST_TURN = 3;
/// Outlines that are built to choose turns: a scribble may have hundreds.
constexpr size_t MOST_BUILDS = 160;
constexpr double TURN_SHARE = 0.85;
/// No outline is built beside shorter curves.
constexpr double SHORTEST = 2;
/// Curves are not divided into shorter ones than this, nor than this part of the half-width.
constexpr double SHORTEST_PART = 6;
constexpr double SHORTEST_WIDTHS = 0.35;
/// Points of the first curve that is tried.
constexpr size_t FIRST_STEP = 16;

/// The centre line's direction on both sides of a joint, which differ at a corner only, where a turn may lie
/// between two places.
struct TJoint {
    TCurveEnd in;  ///< of the curve before, leading back
    TCurveEnd out; ///< of the curve behind
    double dFree = 0;
    std::optional<TInkCubic> turn{};
};

class CCentreFit {
public:
    CCentreFit(const TInkWay& vWay, double dTolerance)
        : m_vWay(vWay), m_fit(vWay), m_dTolerance(dTolerance),
          m_dCentre(std::max(CENTRE_SHARE * dTolerance, LEAST_TOLERANCE)) {}

    std::vector<TCentreCurve> Run() {
        std::vector<size_t> vPlaces = FindCorners(m_vWay, m_dTolerance);
        vPlaces.insert(vPlaces.begin(), 0);
        vPlaces.push_back(m_vWay.size() - 1);
        TJoint before = EndJoint(0, 0, vPlaces[1]);
        for (size_t n = 1; n < vPlaces.size(); ++n) {
            const size_t idx = vPlaces[n];
            const bool bLast = n + 1 == vPlaces.size();
            const TJoint joint =
                bLast ? EndJoint(idx, vPlaces[n - 1], idx) : CornerJoint(vPlaces[n - 1], idx, vPlaces[n + 1]);
            FitStretch({vPlaces[n - 1], idx, before.dFree, joint.dFree}, before.out, joint.in);
            if (joint.turn) m_vCurves.push_back({*joint.turn, {idx, idx}});
            before = joint;
        }
        return m_vCurves;
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
        const TCurveEnd from{cubic.p0, UnitOf(cubic.p1 - cubic.p0, middle.direction)};
        const TCurveEnd to{cubic.p3, UnitOf(cubic.p2 - cubic.p3, -middle.direction)};
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
    TJoint EndJoint(size_t idx, size_t idxFirst, size_t idxLast) const {
        const auto [pt, direction] = TangentAt(m_vWay, idx, idxFirst, idxLast, m_dTolerance);
        return {{pt, -direction}, {pt, direction}};
    }
    TJoint CornerJoint(size_t idxFirst, size_t idx, size_t idxLast) {
        const TInkCorner corner{m_vWay[idx].pt, TangentAt(m_vWay, idx, idxFirst, idx, m_dTolerance).direction,
                                TangentAt(m_vWay, idx, idx, idxLast, m_dTolerance).direction,
                                m_vWay[idx].dHalf};
        if (IsMitreEnough(corner, MITRE_SHARE * m_dTolerance))
            return {{Nearest(corner.pt), -corner.in}, {Nearest(corner.pt), corner.out}};
        const double dReach =
            std::max(std::min(TURN_REACH * m_dTolerance, TURN_WIDTHS * corner.dHalf), LEAST_TURN);
        const TInkCubic turn = TurnAt(corner, dReach, TURN_SHARE * m_dTolerance, m_nBuilds);
        return {{turn.p0, -corner.in}, {turn.p3, corner.out}, 2 * dReach, turn};
    }
    // From one corner or end to the next: always the longest curve that stays within the tolerance.
    void FitStretch(const TWayRange& stretch, const TCurveEnd& from, const TCurveEnd& to) {
        TCurveEnd begin = from;
        size_t idx = stretch.idxFirst;
        size_t nStep = FIRST_STEP;
        while (true) {
            TWayRange range{idx, stretch.idxLast, idx == stretch.idxFirst ? stretch.dFreeFirst : 0,
                            stretch.dFreeLast};
            if (const auto cubic = m_fit.Fit(range, begin, to, m_dCentre)) {
                m_vCurves.push_back({*cubic, range});
                return;
            }
            const auto found = Longest(stretch, range, begin, nStep);
            if (!found) {
                m_vCurves.push_back({m_fit.FitAtAll(range, begin, to), range});
                return;
            }
            m_vCurves.push_back(found->curve);
            nStep = std::max<size_t>(found->curve.range.idxLast - idx, 4);
            idx = found->curve.range.idxLast;
            begin = {found->end.pt, -found->end.direction};
        }
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
    size_t m_nBuilds = MOST_BUILDS; ///< outlines that may still be built for turns
    std::vector<TCentreCurve> m_vCurves;
};

} // namespace

std::vector<TCentreCurve> FitCentre(const TInkWay& vWay, double dTolerance) {
    return CCentreFit(vWay, dTolerance).Run();
}

void DivideCurve(std::vector<TCentreCurve>& vCurves, size_t idx, const TInkWay& vWay, double dTolerance) {
    const auto halves = CCentreFit(vWay, dTolerance).Divide(vCurves[idx]);
    if (!halves) return;
    vCurves[idx] = (*halves)[0];
    vCurves.insert(vCurves.begin() + static_cast<std::ptrdiff_t>(idx) + 1, (*halves)[1]);
}
