#include "core/PathFit/InkCheck.h"

#include <array>
#include <limits>
#include <optional>
#include <span>
#include <utility>

namespace {

/// Places farther inside than this, in tolerances, are not on the edge.
constexpr double INSIDE = 0.1;
/// Of the chords that stand for an outline's curve, in tolerances.
constexpr double FLATNESS = 0.1;
/// Both sides of a line with a smaller half-width are rounded to whole path units, which moves it as a whole.
constexpr double HAIRLINE = 2;
constexpr double HAIRLINE_ROUNDING = 0.7;
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

bool IsNearLine(const TLine& line, TInkVector pt, double d) {
    const TInkVector way = line.to - line.from, off = pt - line.from;
    const double dAlong = Dot(off, way), dSquare = Dot(way, way);
    if (dAlong <= 0) return Dot(off, off) <= d * d;
    const TInkVector rest = pt - line.to;
    if (dAlong >= dSquare) return Dot(rest, rest) <= d * d;
    const double dAside = Cross(way, off);
    return dAside * dAside <= d * d * dSquare;
}

/// Neighbours that are looked at before a search: what follows one another lies side by side.
constexpr size_t NEIGHBOURS = 24;

// Calls `visit` with a number and its neighbours until it returns true, and tells the number for which it
// did.
template <class Visitor>
std::optional<size_t> VisitAround(size_t n, size_t nCount, Visitor visit) {
    if (n < nCount && visit(n)) return n;
    for (size_t k = 1; k <= NEIGHBOURS; ++k) {
        if (n + k < nCount && visit(n + k)) return n + k;
        if (n >= k && n - k < nCount && visit(n - k)) return n - k;
    }
    return {};
}

TInkVector ToVector(CPoint pt) { return {static_cast<double>(pt.x), static_cast<double>(pt.y)}; }

std::vector<TLine> LinesOf(const std::vector<TPolyBezier>& vShape, double dFlatness) {
    constexpr double MOST_PARTS = 64;
    std::vector<TLine> vLines;
    for (size_t nCurve = 0; nCurve < vShape.size(); ++nCurve) {
        const TPolyBezier& vCurve = vShape[nCurve];
        for (size_t i = 0; i + 3 < vCurve.size(); i += 3) {
            const TInkVector p0 = ToVector(vCurve[i]), p1 = ToVector(vCurve[i + 1]),
                             p2 = ToVector(vCurve[i + 2]), p3 = ToVector(vCurve[i + 3]);
            // A chord's distance from the curve is at most an eighth of the second derivative.
            const double dBend = 6 * std::max(LengthOf(p0 - p1 * 2 + p2), LengthOf(p1 - p2 * 2 + p3));
            const int nParts = static_cast<int>(std::min(std::sqrt(dBend / (8 * dFlatness)), MOST_PARTS)) + 1;
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

std::vector<TInkBox> BoxesOf(const std::vector<TLine>& vLines) {
    std::vector<TInkBox> vBoxes;
    vBoxes.reserve(vLines.size());
    for (const TLine& line : vLines)
        vBoxes.push_back(TInkBox{line.from, line.from}.Union({line.to, line.to}));
    return vBoxes;
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
// place's row to its left. The lines of a curve follow one another; the first curve has the most by far.
class CFilled {
public:
    CFilled(const std::vector<TLine>& vLines, size_t nCurves) : m_vLines(vLines), m_vStarts(nCurves + 1) {
        for (const TLine& line : vLines) ++m_vStarts[line.nCurve + 1];
        for (size_t n = 1; n < m_vStarts.size(); ++n) m_vStarts[n] += m_vStarts[n - 1];
    }

    bool IsFilledByFirst(TInkVector pt) {
        if (!m_rows) m_rows.emplace(RowsOf({m_vLines.data(), m_vStarts[1]}), ROW);
        int nWinding = 0;
        m_rows->Visit({{0, pt.y}, {0, pt.y}}, [&](uint32_t n) {
            nWinding += WindingOf(m_vLines[n], pt);
            return false;
        });
        return nWinding != 0;
    }
    bool IsFilledBy(size_t nCurve, TInkVector pt) const {
        int nWinding = 0;
        for (size_t n = m_vStarts[nCurve]; n < m_vStarts[nCurve + 1]; ++n)
            nWinding += WindingOf(m_vLines[n], pt);
        return nWinding != 0;
    }

private:
    static constexpr double ROW = 4;

    static int WindingOf(const TLine& line, TInkVector pt) {
        const auto& [from, to, nCurve] = line;
        if ((from.y <= pt.y) == (to.y <= pt.y)) return 0;
        if (from.x + (to.x - from.x) * (pt.y - from.y) / (to.y - from.y) >= pt.x) return 0;
        return from.y <= pt.y ? 1 : -1;
    }
    static std::vector<TInkBox> RowsOf(std::span<const TLine> vLines) {
        std::vector<TInkBox> vRows;
        vRows.reserve(vLines.size());
        for (const TLine& line : vLines) {
            const auto [dLow, dHigh] = std::minmax(line.from.y, line.to.y);
            vRows.push_back({{0, dLow}, {0, dHigh}});
        }
        return vRows;
    }

    const std::vector<TLine>& m_vLines;
    std::vector<size_t> m_vStarts; ///< of each curve's lines
    std::optional<CCellGrid> m_rows;
};

} // namespace

CInkCheck::CInkCheck(const TInkWay& vWay, double dTolerance, double dMost)
    : m_vWay(vWay), m_dTolerance(dTolerance), m_dMost(dMost),
      m_grid(BoxesOf(vWay, dMost), CellFor(vWay, dTolerance)) {
    m_vStretches.reserve(vWay.size());
    for (size_t i = 1; i < vWay.size(); ++i) {
        const TInkVector way = vWay[i].pt - vWay[i - 1].pt;
        const double dSquare = Dot(way, way);
        m_vStretches.push_back({vWay[i - 1].pt, way, dSquare > 0 ? 1 / dSquare : 0, vWay[i - 1].dHalf,
                                vWay[i].dHalf - vWay[i - 1].dHalf});
    }
    AddEdges();
}

void CInkCheck::AddEdges() {
    const TInkWay& vWay = m_vWay;
    m_vEdges.reserve(4 * vWay.size());
    // Over about the tolerance: neighbours on whole path units lie in any direction.
    const auto before = [&](size_t i) -> const TWayPoint& {
        size_t j = i - 1;
        while (j > 0 && vWay[i].dLength - vWay[j].dLength < m_dTolerance) --j;
        return vWay[j];
    };
    const auto behind = [&](size_t i) -> const TWayPoint& {
        size_t j = i + 1;
        while (j + 1 < vWay.size() && vWay[j].dLength - vWay[i].dLength < m_dTolerance) ++j;
        return vWay[j];
    };
    const auto directionOf = [](const TWayPoint& from, const TWayPoint& to) {
        return UnitOf(to.pt - from.pt, {1, 0});
    };
    // The edge touches growing discs farther back.
    const auto slopeOf = [](const TWayPoint& from, const TWayPoint& to) {
        constexpr double MOST_SLOPE = 0.95;
        const double dLength = to.dLength - from.dLength;
        return dLength > 0 ? std::clamp((to.dHalf - from.dHalf) / dLength, -MOST_SLOPE, MOST_SLOPE) : 0;
    };
    // Places nearer to each other tell nothing new.
    const double dSpacing = m_dTolerance;
    double dLast = -dSpacing;
    for (size_t i = 1; i < vWay.size(); ++i) {
        const TWayPoint& point = vWay[i];
        const TWayPoint& last = before(i);
        const TInkVector direction = directionOf(last, point);
        const auto addBoth = [&](TInkVector pt, double dHalf, TInkVector normal, double dSlope) {
            const TInkVector aside = normal * (dHalf * std::sqrt(1 - dSlope * dSlope));
            const TInkVector back = Perpendicular(normal) * (dHalf * dSlope);
            AddEdge(pt + aside + back, i, true);
            AddEdge(pt - aside + back, i, false);
        };
        const TInkVector normal = Perpendicular(direction);
        if (point.dLength - vWay[i - 1].dLength > dSpacing)
            addBoth(Mix(vWay[i - 1].pt, point.pt, 0.5), (vWay[i - 1].dHalf + point.dHalf) / 2, normal,
                    slopeOf(last, point));
        if (i + 1 == vWay.size()) break;
        const TWayPoint& following = behind(i);
        const TInkVector nextDirection = directionOf(point, following);
        const bool bTurns = Dot(direction, nextDirection) < STRAIGHT;
        if (point.dLength - dLast < (bTurns ? m_dTolerance / 2 : dSpacing)) continue;
        dLast = point.dLength;
        const TInkVector next = Perpendicular(nextDirection);
        const TInkVector middle = UnitOf(normal + next, direction);
        addBoth(point.pt, point.dHalf, middle, slopeOf(last, following));
        if (!bTurns) continue;
        for (const TInkVector side : {normal, next}) {
            addBoth(point.pt, point.dHalf, side, 0);
            addBoth(point.pt, point.dHalf, UnitOf(middle + side, direction), 0);
        }
    }
    const auto addCap = [&](size_t idx, TInkVector outward) {
        const TInkVector across = Perpendicular(outward);
        constexpr std::array<TInkVector, 5> DIRECTIONS{{{0, 1}, {0.8, 0.6}, {1, 0}, {0.8, -0.6}, {0, -1}}};
        for (const TInkVector d : DIRECTIONS)
            AddEdge(vWay[idx].pt + (outward * d.x + across * d.y) * vWay[idx].dHalf, idx, d.y > 0);
    };
    addCap(0, directionOf(behind(0), vWay.front()));
    addCap(vWay.size() - 1, directionOf(before(vWay.size() - 1), vWay.back()));
}

void CInkCheck::AddEdge(TInkVector pt, size_t idx, bool bLeft) {
    size_t idxFound = idx;
    if (!IsWithin(pt, -INSIDE * m_dTolerance, idxFound)) m_vEdges.push_back({pt, idx, bLeft});
}

bool CInkCheck::IsNear(const TStretch& stretch, TInkVector pt, double d) {
    const TInkVector off = pt - stretch.from;
    const double t = std::clamp(Dot(off, stretch.way) * stretch.dInverse, 0.0, 1.0);
    const TInkVector away = off - stretch.way * t;
    const double dReach = stretch.dHalf + stretch.dMore * t + d;
    return dReach >= 0 && Dot(away, away) <= dReach * dReach;
}

bool CInkCheck::IsWithin(TInkVector pt, double d, size_t& idxFound) const {
    const auto isNear = [&](size_t n) { return IsNear(m_vStretches[n], pt, d); };
    if (const auto found = VisitAround(idxFound, m_vStretches.size(), isNear)) {
        idxFound = *found;
        return true;
    }
    return m_grid.Visit({pt, pt}, [&](uint32_t n) {
        if (!isNear(n)) return false;
        idxFound = n;
        return true;
    });
}

size_t CInkCheck::WayAt(TInkVector pt) const {
    size_t idxBest = 0;
    double dBest = std::numeric_limits<double>::max();
    for (size_t i = 0; i < m_vStretches.size(); ++i) {
        const auto& [from, way, dInverse, dHalf, dMore] = m_vStretches[i];
        const double t = std::clamp(Dot(pt - from, way) * dInverse, 0.0, 1.0);
        const double d = std::abs(LengthOf(from + way * t - pt) - (dHalf + dMore * t));
        if (d >= dBest) continue;
        dBest = d;
        idxBest = i;
    }
    return idxBest;
}

struct CInkCheck::TOutline {
    std::vector<TLine> vLines;
    std::optional<CCellGrid> grid{}; ///< made when it is needed

    // Whether a line is within `d` of the place; it is looked at first the next time.
    bool HasNear(TInkVector pt, double d, size_t& idxFound) {
        const auto isNear = [&](size_t n) { return IsNearLine(vLines[n], pt, d); };
        if (const auto found = VisitAround(idxFound, vLines.size(), isNear)) {
            idxFound = *found;
            return true;
        }
        if (!grid) grid.emplace(BoxesOf(vLines), LEAST_CELL);
        return grid->Visit(TInkBox{pt, pt}.Grown(d), [&](uint32_t n) {
            if (!isNear(n)) return false;
            idxFound = n;
            return true;
        });
    }
};

void CInkCheck::FindUncovered(TOutline& outline, TFaults& faults) const {
    // An outline leads forward on the left and back on the right.
    const auto isFold = [](const TLine& line) { return line.nCurve > 0; };
    const auto itFolds = std::ranges::find_if(outline.vLines, isFold);
    std::array<size_t, 2> aFound{0, static_cast<size_t>(itFolds - outline.vLines.begin())};
    for (const auto& [pt, idx, bLeft] : m_vEdges) {
        size_t& idxFound = aFound[bLeft ? 0 : 1];
        const double dRounding = m_vWay[idx].dHalf < HAIRLINE ? HAIRLINE_ROUNDING : 0;
        if (outline.HasNear(pt, (1 - FLATNESS) * m_dTolerance + dRounding, idxFound)) continue;
        faults.vPoints.push_back(idx);
        faults.nGross += outline.HasNear(pt, m_dMost, idxFound) ? 0 : 1;
    }
}

void CInkCheck::FindSpikes(const TOutline& outline, TFaults& faults) const {
    bool bOut = false, bGross = false;
    size_t idxFound = 0;
    for (const TLine& line : outline.vLines) {
        const bool bWasOut = std::exchange(bOut, !IsWithin(line.to, (1 - FLATNESS) * m_dTolerance, idxFound));
        const bool bWasGross = std::exchange(bGross, bOut && !IsWithin(line.to, m_dMost, idxFound));
        // A spike counts where it begins: its tip may be near another part of the way.
        if (bOut && !bWasOut) faults.vPoints.push_back(WayAt(line.from));
        if (bGross && !bWasGross) ++faults.nGross;
    }
}

// A fold of the outline might leave a hole.
void CInkCheck::FindHoles(const std::vector<TPolyBezier>& vShape, const TOutline& outline,
                          TFaults& faults) const {
    std::vector<TInkBox> vFolds;
    for (size_t nCurve = 1; nCurve < vShape.size(); ++nCurve) {
        TInkBox box{ToVector(vShape[nCurve].front()), ToVector(vShape[nCurve].front())};
        for (const CPoint pt : vShape[nCurve]) box = box.Union({ToVector(pt), ToVector(pt)});
        vFolds.push_back(box.Grown(m_dTolerance));
    }
    if (vFolds.empty() || outline.vLines.size() > MOST_LINES) return;
    const CCellGrid folds(vFolds, LEAST_CELL);
    CFilled filled(outline.vLines, vShape.size());
    const auto isInFold = [&](TInkVector pt) {
        return folds.Visit({pt, pt}, [&](uint32_t n) { return vFolds[n].Has(pt); });
    };
    const auto isFilled = [&](TInkVector pt) {
        const auto isFilledBy = [&](uint32_t n) { return vFolds[n].Has(pt) && filled.IsFilledBy(n + 1, pt); };
        return folds.Visit({pt, pt}, isFilledBy) || filled.IsFilledByFirst(pt);
    };
    for (size_t i = 1; i < m_vWay.size(); ++i) {
        const TInkVector pt = m_vWay[i].pt;
        if (m_vWay[i].dHalf <= m_dTolerance || !isInFold(pt)) continue;
        const TInkVector across = Perpendicular(UnitOf(pt - m_vWay[i - 1].pt, {1, 0}));
        const auto isHole = [&](double dTolerance) {
            const double dAside = std::max(m_vWay[i].dHalf - dTolerance, 0.0) * 0.9;
            return !isFilled(pt) || !isFilled(pt + across * dAside) || !isFilled(pt - across * dAside);
        };
        if (!isHole(m_dTolerance)) continue;
        faults.vPoints.push_back(i);
        faults.nGross += isHole(m_dMost) ? 1 : 0;
    }
}

CInkCheck::TFaults CInkCheck::Find(const std::vector<TPolyBezier>& vShape) const {
    TOutline outline{LinesOf(vShape, FLATNESS * m_dTolerance)};
    TFaults faults;
    FindUncovered(outline, faults);
    FindSpikes(outline, faults);
    if (faults.vPoints.empty()) FindHoles(vShape, outline, faults);
    std::sort(faults.vPoints.begin(), faults.vPoints.end());
    faults.vPoints.erase(std::unique(faults.vPoints.begin(), faults.vPoints.end()), faults.vPoints.end());
    return faults;
}
