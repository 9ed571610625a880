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
constexpr double SPACING = 0.7;
/// A turn of more radians has an outer edge that is an arc.
constexpr double TURN = 0.3;
/// The reach of directions, in half-widths.
constexpr double REACH = 0.1;

TInkVector DirectionOf(const TWayPoint& from, const TWayPoint& to) { return UnitOf(to.pt - from.pt, {1, 0}); }

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
    TInkVector OutOf(const TWayPoint& point) const { return m_bLeft ? point.left : -point.left; }
    TInkVector EdgeOf(const TWayPoint& point) const {
        return point.pt + OutOf(point) * (m_bLeft ? point.dLeft : point.dRight);
    }
    bool IsSure(size_t i) const { return m_vWay[i].bSure && m_area.IsAlone(i); }
    // Of the way to a point, where it is long.
    void AddMiddle(size_t i) {
        const TWayPoint& point = m_vWay[i];
        const TWayPoint& last = m_vWay[i - 1];
        if (point.dLength - last.dLength <= SPACING * m_dTolerance) return;
        const TInkVector pt = Mix(EdgeOf(last), EdgeOf(point), 0.5);
        if (IsSure(i - 1) && IsSure(i))
            m_vEdges.push_back({pt, i, m_bLeft});
        else
            Add(pt, i, OutOf(point));
    }
    void AddPoint(size_t i) {
        const TWayPoint& point = m_vWay[i];
        if (point.dLength - m_dLast < SPACING * m_dTolerance) return;
        if (IsSure(i)) {
            m_dLast = point.dLength;
            m_vEdges.push_back({EdgeOf(point), i, m_bLeft});
            return;
        }
        const TInkVector direction = DirectionOf(Before(i), point);
        const TInkVector normal = Perpendicular(direction),
                         next = Perpendicular(DirectionOf(point, Behind(i)));
        // The outer edge of a turn is an arc.
        const double dTurn = LengthOf(next - normal), dArc = dTurn * point.dHalf / (SPACING * m_dTolerance);
        const bool bOuter = m_bLeft == (Cross(normal, next) < 0);
        const bool bArc = bOuter && dTurn > TURN && dArc > 1;
        if (Add(EdgeOf(point), i, OutOf(point)) || bArc) m_dLast = point.dLength;
        if (!bArc) return;
        const TInkVector middle = UnitOf(normal + next, direction);
        const auto add = [&](TInkVector left) {
            const TInkVector out = m_bLeft ? left : -left;
            Add(point.pt + out * point.dHalf, i, out);
        };
        for (const TInkVector side : {normal, next}) {
            add(side);
            if (dArc > 2) add(UnitOf(middle + side, direction));
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
