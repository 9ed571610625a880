#include "core/PathFit/InkEdges.h"

#include "core/Base/Parallel.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace {

/// Places farther inside than this, in tolerances, are not on the edge.
constexpr double INSIDE = 0.1;
/// The staircase of whole path units may cover a place beside a disc by so much, in tolerances: then the edge
/// is looked for outside of it.
constexpr double STAIRCASE = 0.35;
/// Places nearer to each other, in tolerances, tell nothing new.
constexpr double SPACING = 1;
/// A turn of more radians has an outer edge that is an arc.
constexpr double TURN = 0.3;
/// The reach of directions, in half-widths.
constexpr double REACH = 0.1;

TInkVector DirectionOf(const TWayPoint& from, const TWayPoint& to) { return UnitOf(to.pt - from.pt, {1, 0}); }

// The edge touches growing discs farther back.
double SlopeOf(const TWayPoint& from, const TWayPoint& to) {
    constexpr double MOST_SLOPE = 0.95;
    const double dLength = to.dLength - from.dLength;
    return dLength > 0 ? std::clamp((to.dHalf - from.dHalf) / dLength, -MOST_SLOPE, MOST_SLOPE) : 0;
}

// The edge on one side of a way.
class CInkSide {
public:
    CInkSide(const TInkWay& vWay, const CInkArea& area, double dTolerance, bool bLeft)
        : m_vWay(vWay), m_area(area), m_dTolerance(dTolerance), m_bLeft(bLeft) {}

    std::vector<TInkEdge> Run() {
        m_vEdges.reserve(m_vWay.size());
        const size_t idxLast = m_vWay.size() - 1;
        AddCap(0, DirectionOf(Behind(0), m_vWay.front()));
        for (size_t i = 1; i < idxLast; ++i) {
            AddMiddle(i);
            AddPoint(i);
        }
        AddMiddle(idxLast);
        AddCap(idxLast, DirectionOf(Before(idxLast), m_vWay.back()));
        return std::move(m_vEdges);
    }

private:
    // Directions reach at least so far: neighbours on whole path units lie in any direction, and the wider
    // the line, the farther its edge turns with it.
    double ReachAt(size_t i) const { return std::max(m_dTolerance, REACH * m_vWay[i].dHalf); }
    const TWayPoint& Before(size_t i) const {
        size_t j = i - 1;
        while (j > 0 && m_vWay[i].dLength - m_vWay[j].dLength < ReachAt(i)) --j;
        return m_vWay[j];
    }
    const TWayPoint& Behind(size_t i) const {
        size_t j = i + 1;
        while (j + 1 < m_vWay.size() && m_vWay[j].dLength - m_vWay[i].dLength < ReachAt(i)) ++j;
        return m_vWay[j];
    }

    // True for a place on the edge.
    bool Add(TInkVector pt, size_t idx, TInkVector outward = {}) {
        const double dInside = INSIDE * m_dTolerance;
        if (const auto depth = m_area.DepthAt(pt, dInside)) {
            pt = pt + outward * *depth;
            if (*depth > STAIRCASE * m_dTolerance || m_area.DepthAt(pt, dInside)) return false;
        }
        m_vEdges.push_back({pt, idx, m_bLeft});
        return true;
    }
    // Beside a disc; `normal` leads to the left of the way.
    bool AddBeside(size_t idx, TInkVector ptDisc, double dHalf, TInkVector normal, double dSlope) {
        const TInkVector out = m_bLeft ? normal : -normal;
        const TInkVector pt = ptDisc + out * (dHalf * std::sqrt(1 - dSlope * dSlope)) +
                              Perpendicular(normal) * (dHalf * dSlope);
        return Add(pt, idx, out);
    }
    // Of the way to a point, where it is long.
    void AddMiddle(size_t i) {
        const TWayPoint& point = m_vWay[i];
        const TWayPoint& last = m_vWay[i - 1];
        if (point.dLength - last.dLength <= SPACING * m_dTolerance) return;
        const TWayPoint& before = Before(i);
        AddBeside(i, Mix(last.pt, point.pt, 0.5), (last.dHalf + point.dHalf) / 2,
                  Perpendicular(DirectionOf(before, point)), SlopeOf(before, point));
    }
    void AddPoint(size_t i) {
        const TWayPoint& point = m_vWay[i];
        if (point.dLength - m_dLast < SPACING * m_dTolerance) return;
        const TWayPoint& before = Before(i);
        const TWayPoint& behind = Behind(i);
        const TInkVector direction = DirectionOf(before, point);
        const TInkVector normal = Perpendicular(direction), next = Perpendicular(DirectionOf(point, behind));
        const TInkVector middle = UnitOf(normal + next, direction);
        // The outer edge of a turn is an arc.
        const double dTurn = LengthOf(next - normal), dArc = dTurn * point.dHalf / (SPACING * m_dTolerance);
        const bool bOuter = m_bLeft == (Cross(normal, next) < 0);
        const bool bArc = bOuter && dTurn > TURN && dArc > 1;
        if (AddBeside(i, point.pt, point.dHalf, middle, SlopeOf(before, behind)) || bArc)
            m_dLast = point.dLength;
        if (!bArc) return;
        for (const TInkVector side : {normal, next}) {
            AddBeside(i, point.pt, point.dHalf, side, 0);
            if (dArc > 2) AddBeside(i, point.pt, point.dHalf, UnitOf(middle + side, direction), 0);
        }
    }
    // Half of it: the other side has the other half.
    void AddCap(size_t idx, TInkVector outward) {
        const bool bBegin = idx == 0;
        const TInkVector across = Perpendicular(outward) * (m_bLeft != bBegin ? 1 : -1);
        constexpr std::array<TInkVector, 3> DIRECTIONS{{{0, 1}, {0.8, 0.6}, {1, 0}}};
        for (const TInkVector d : DIRECTIONS)
            Add(m_vWay[idx].pt + (outward * d.x + across * d.y) * m_vWay[idx].dHalf, idx);
    }

    const TInkWay& m_vWay;
    const CInkArea& m_area;
    double m_dTolerance;
    bool m_bLeft;
    double m_dLast = std::numeric_limits<double>::lowest(); ///< place along the way
    std::vector<TInkEdge> m_vEdges;
};

} // namespace

std::vector<TInkEdge> FindInkEdges(const TInkWay& vWay, const CInkArea& area, double dTolerance) {
    std::array<std::vector<TInkEdge>, 2> aSides;
    ForEachIndex(aSides.size(), vWay.size() < POINTS_FOR_THREADS ? 1 : AvailableThreads(),
                 [&](size_t n) { aSides[n] = CInkSide(vWay, area, dTolerance, n == 0).Run(); });
    aSides[0].insert(aSides[0].end(), aSides[1].begin(), aSides[1].end());
    return std::move(aSides[0]);
}
