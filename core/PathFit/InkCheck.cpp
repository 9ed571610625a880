#include "core/PathFit/InkCheck.h"

#include <array>
#include <utility>

namespace {

/// Places farther inside than this, in tolerances, are not on the edge.
constexpr double INSIDE = 0.1;
/// Of the chords that stand for an outline's curve, in path units.
constexpr double FLATNESS = 0.2;
constexpr double LEAST_CELL = 8;
/// The outlines of scribbles are not searched for holes.
constexpr size_t MOST_LINES = 16000;
/// The cosine of a turn beside which the edge is looked at closer.
constexpr double STRAIGHT = 0.9;

struct TLine {
    TInkVector from;
    TInkVector to;
    size_t nCurve; ///< of the closed curve that it belongs to
};

double SquareTo(const TLine& line, TInkVector pt) {
    const TInkVector way = line.to - line.from;
    const double dSquare = Dot(way, way);
    const double t = dSquare > 0 ? std::clamp(Dot(pt - line.from, way) / dSquare, 0.0, 1.0) : 0;
    const TInkVector away = line.from + way * t - pt;
    return Dot(away, away);
}

TInkVector ToVector(CPoint pt) { return {static_cast<double>(pt.x), static_cast<double>(pt.y)}; }

std::vector<TLine> LinesOf(const std::vector<TPolyBezier>& vShape) {
    std::vector<TLine> vLines;
    for (size_t nCurve = 0; nCurve < vShape.size(); ++nCurve) {
        const TPolyBezier& vCurve = vShape[nCurve];
        for (size_t i = 0; i + 3 < vCurve.size(); i += 3) {
            const TInkVector p0 = ToVector(vCurve[i]), p1 = ToVector(vCurve[i + 1]),
                             p2 = ToVector(vCurve[i + 2]), p3 = ToVector(vCurve[i + 3]);
            // A chord's distance from the curve is at most an eighth of the second derivative.
            const double dBend = 6 * std::max(LengthOf(p0 - p1 * 2 + p2), LengthOf(p1 - p2 * 2 + p3));
            const double dParts = std::sqrt(dBend / (8 * FLATNESS));
            const int nParts = std::clamp(static_cast<int>(std::min(dParts, 64.0)) + 1, 1, 64);
            TInkVector from = p0;
            for (int n = 1; n <= nParts; ++n) {
                const double t = static_cast<double>(n) / nParts, s = 1 - t;
                const TInkVector to =
                    p0 * (s * s * s) + p1 * (3 * s * s * t) + p2 * (3 * s * t * t) + p3 * (t * t * t);
                vLines.push_back({from, to, nCurve});
                from = to;
            }
        }
    }
    return vLines;
}

std::vector<TInkBox> BoxesOf(const TInkWay& vWay, double dTolerance) {
    std::vector<TInkBox> vBoxes;
    vBoxes.reserve(vWay.size());
    for (size_t i = 1; i < vWay.size(); ++i) {
        const auto boxOf = [&](const TWayPoint& point) {
            return TInkBox{point.pt, point.pt}.Grown(point.dHalf + dTolerance);
        };
        vBoxes.push_back(boxOf(vWay[i - 1]).Union(boxOf(vWay[i])));
    }
    return vBoxes;
}

double CellFor(const TInkWay& vWay, double dTolerance) {
    double dMost = LEAST_CELL;
    for (const TWayPoint& point : vWay) dMost = std::max(dMost, (point.dHalf + dTolerance) / 3);
    return dMost;
}

// Whether places are filled by closed curves of non-zero winding, each by itself: by the lines that cross the
// place's row to its left.
class CFilled {
public:
    CFilled(const std::vector<TLine>& vLines, size_t nCurves)
        : m_vLines(vLines), m_vWinding(nCurves), m_grid(RowsOf(vLines), ROW) {}

    bool IsFilled(TInkVector pt) {
        m_vTouched.clear();
        m_grid.Visit({{0, pt.y}, {0, pt.y}}, [&](uint32_t n) {
            const auto& [from, to, nCurve] = m_vLines[n];
            if ((from.y <= pt.y) == (to.y <= pt.y)) return false;
            if (from.x + (to.x - from.x) * (pt.y - from.y) / (to.y - from.y) >= pt.x) return false;
            m_vWinding[nCurve] += from.y <= pt.y ? 1 : -1;
            m_vTouched.push_back(nCurve);
            return false;
        });
        bool bFilled = false;
        for (const size_t nCurve : m_vTouched) {
            bFilled |= m_vWinding[nCurve] != 0;
            m_vWinding[nCurve] = 0;
        }
        return bFilled;
    }

private:
    static constexpr double ROW = 4;

    static std::vector<TInkBox> RowsOf(const std::vector<TLine>& vLines) {
        std::vector<TInkBox> vRows;
        vRows.reserve(vLines.size());
        for (const TLine& line : vLines) {
            const auto [dLow, dHigh] = std::minmax(line.from.y, line.to.y);
            vRows.push_back({{0, dLow}, {0, dHigh}});
        }
        return vRows;
    }

    const std::vector<TLine>& m_vLines;
    std::vector<int> m_vWinding;
    std::vector<size_t> m_vTouched;
    CCellGrid m_grid;
};

} // namespace

CInkCheck::CInkCheck(const TInkWay& vWay, double dTolerance)
    : m_vWay(vWay), m_dTolerance(dTolerance), m_grid(BoxesOf(vWay, dTolerance), CellFor(vWay, dTolerance)) {
    m_vEdges.reserve(4 * vWay.size());
    // Over about the tolerance: neighbours on whole path units lie in any direction.
    const auto directionAt = [&](size_t i) {
        size_t j = i - 1;
        while (j > 0 && vWay[i].dLength - vWay[j].dLength < dTolerance) --j;
        return UnitOf(vWay[i].pt - vWay[j].pt, {1, 0});
    };
    const auto nextDirectionAt = [&](size_t i) {
        size_t j = i + 1;
        while (j + 1 < vWay.size() && vWay[j].dLength - vWay[i].dLength < dTolerance) ++j;
        return UnitOf(vWay[j].pt - vWay[i].pt, {1, 0});
    };
    // Places nearer to each other tell nothing new.
    const double dSpacing = 2 * dTolerance;
    double dLast = -dSpacing;
    for (size_t i = 1; i < vWay.size(); ++i) {
        const TInkVector direction = directionAt(i);
        const TInkVector normal = Perpendicular(direction);
        const auto addBoth = [&](TInkVector pt, TInkVector across) {
            AddEdge(pt + across, i);
            AddEdge(pt - across, i);
        };
        if (vWay[i].dLength - vWay[i - 1].dLength > dSpacing)
            addBoth(Mix(vWay[i - 1].pt, vWay[i].pt, 0.5), normal * ((vWay[i - 1].dHalf + vWay[i].dHalf) / 2));
        if (i + 1 == vWay.size()) break;
        const TInkVector nextDirection = nextDirectionAt(i);
        const bool bTurns = Dot(direction, nextDirection) < STRAIGHT;
        if (vWay[i].dLength - dLast < dSpacing && !bTurns) continue;
        dLast = vWay[i].dLength;
        const TInkVector next = Perpendicular(nextDirection);
        addBoth(vWay[i].pt, UnitOf(normal + next, direction) * vWay[i].dHalf);
        if (!bTurns) continue;
        for (const TInkVector side : {normal, next}) {
            addBoth(vWay[i].pt, side * vWay[i].dHalf);
            addBoth(vWay[i].pt, UnitOf(UnitOf(normal + next, direction) + side, direction) * vWay[i].dHalf);
        }
    }
    const auto addCap = [&](size_t idx, TInkVector outward) {
        const TInkVector across = Perpendicular(outward);
        constexpr std::array<TInkVector, 5> DIRECTIONS{{{0, 1}, {0.8, 0.6}, {1, 0}, {0.8, -0.6}, {0, -1}}};
        for (const TInkVector d : DIRECTIONS)
            AddEdge(vWay[idx].pt + (outward * d.x + across * d.y) * vWay[idx].dHalf, idx);
    };
    addCap(0, -nextDirectionAt(0));
    addCap(vWay.size() - 1, directionAt(vWay.size() - 1));
}

void CInkCheck::AddEdge(TInkVector pt, size_t idx) {
    if (!IsWithin(pt, -INSIDE * m_dTolerance)) m_vEdges.push_back({pt, idx});
}

// To the area between two points, negative inside.
double CInkCheck::DistanceTo(size_t idx, TInkVector pt) const {
    const TWayPoint& from = m_vWay[idx];
    const TWayPoint& to = m_vWay[idx + 1];
    const TInkVector way = to.pt - from.pt;
    const double dSquare = Dot(way, way);
    const double t = dSquare > 0 ? std::clamp(Dot(pt - from.pt, way) / dSquare, 0.0, 1.0) : 0;
    return LengthOf(from.pt + way * t - pt) - (from.dHalf + (to.dHalf - from.dHalf) * t);
}

bool CInkCheck::IsWithin(TInkVector pt, double d) const {
    return m_grid.Visit({pt, pt}, [&](uint32_t n) { return DistanceTo(n, pt) <= d; });
}

size_t CInkCheck::WayAt(TInkVector pt) const {
    size_t idxBest = 0;
    double dBest = std::abs(DistanceTo(0, pt));
    for (size_t i = 1; i + 1 < m_vWay.size(); ++i) {
        const double d = std::abs(DistanceTo(i, pt));
        if (d >= dBest) continue;
        dBest = d;
        idxBest = i;
    }
    return idxBest;
}

std::vector<size_t> CInkCheck::FindAll(const std::vector<TPolyBezier>& vShape) const {
    const std::vector<TLine> vLines = LinesOf(vShape);
    std::vector<TInkBox> vBoxes;
    vBoxes.reserve(vLines.size());
    for (const TLine& line : vLines)
        vBoxes.push_back(TInkBox{line.from, line.from}.Union({line.to, line.to}));
    const CCellGrid grid(vBoxes, LEAST_CELL);
    std::vector<size_t> vFaults;
    const double dSquare = m_dTolerance * m_dTolerance;
    for (const auto& [pt, idx] : m_vEdges) {
        const auto isNear = [&](uint32_t n) { return SquareTo(vLines[n], pt) <= dSquare; };
        if (!grid.Visit(TInkBox{pt, pt}.Grown(m_dTolerance), isNear)) vFaults.push_back(idx);
    }
    // A spike counts where it begins: its tip may be near another part of the way.
    bool bOut = false;
    for (const TLine& line : vLines) {
        const bool bWasOut = std::exchange(bOut, !IsWithin(line.to, m_dTolerance));
        if (bOut && !bWasOut) vFaults.push_back(WayAt(line.from));
    }
    // A fold of the outline might leave a hole.
    std::vector<TInkBox> vFolds;
    for (size_t nCurve = 1; nCurve < vShape.size(); ++nCurve) {
        TInkBox box{ToVector(vShape[nCurve].front()), ToVector(vShape[nCurve].front())};
        for (const CPoint pt : vShape[nCurve]) box = box.Union({ToVector(pt), ToVector(pt)});
        vFolds.push_back(box.Grown(m_dTolerance));
    }
    if (vFolds.empty() || vLines.size() > MOST_LINES) return vFaults;
    const CCellGrid folds(vFolds, LEAST_CELL);
    CFilled filled(vLines, vShape.size());
    for (size_t i = 1; i < m_vWay.size(); ++i) {
        const TInkVector pt = m_vWay[i].pt;
        if (m_vWay[i].dHalf <= m_dTolerance) continue;
        if (!folds.Visit({pt, pt}, [&](uint32_t n) { return vFolds[n].Has(pt); })) continue;
        const TInkVector way = pt - m_vWay[i - 1].pt;
        const TInkVector across = Perpendicular(UnitOf(way, {1, 0})) * (m_vWay[i].dHalf - m_dTolerance);
        for (const double d : {-0.9, 0.0, 0.9})
            if (!filled.IsFilled(pt + across * d)) vFaults.push_back(i);
    }
    return vFaults;
}

std::vector<size_t> CInkCheck::FindFaults(const std::vector<TPolyBezier>& vShape) const {
    std::vector<size_t> vFaults = FindAll(vShape);
    std::sort(vFaults.begin(), vFaults.end());
    vFaults.erase(std::unique(vFaults.begin(), vFaults.end()), vFaults.end());
    return vFaults;
}
