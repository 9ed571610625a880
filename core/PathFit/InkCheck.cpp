#include "core/PathFit/InkCheck.h"

#include "core/Base/Parallel.h"
#include "core/PathFit/InkOutline.h"

#include <algorithm>
#include <array>
#include <limits>
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
    const double dSpacing = 1.5 * m_dTolerance;
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
    // Most are on the edge, so all stretches nearby have to be looked at anyway.
    const auto covers = [&](size_t n) { return IsNear(m_vStretches[n], pt, -INSIDE * m_dTolerance); };
    if (!m_grid.Visit({pt, pt}, covers)) m_vEdges.push_back({pt, idx, bLeft});
}

bool CInkCheck::IsNear(const TStretch& stretch, TInkVector pt, double d) {
    const TInkVector off = pt - stretch.from;
    const double t = std::clamp(Dot(off, stretch.way) * stretch.dInverse, 0.0, 1.0);
    const TInkVector away = off - stretch.way * t;
    const double dReach = stretch.dHalf + stretch.dMore * t + d;
    return dReach >= 0 && Dot(away, away) <= dReach * dReach;
}

bool CInkCheck::IsWithin(TInkVector pt, double d, size_t& idxFound) const {
    const auto isNear = [&](size_t n) {
        if (!IsNear(m_vStretches[n], pt, d)) return false;
        idxFound = n;
        return true;
    };
    return VisitAround(idxFound, m_vStretches.size(), isNear) || m_grid.Visit({pt, pt}, isNear);
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

void CInkCheck::FindUncovered(CInkOutline& outline, TFaults& faults) const {
    // An outline leads forward on the left and back on the right.
    std::array<size_t, 2> aFound{0, outline.FirstOfFolds()};
    for (const auto& [pt, idx, bLeft] : m_vEdges) {
        size_t& idxFound = aFound[bLeft ? 0 : 1];
        const double dRounding = m_vWay[idx].dHalf < HAIRLINE ? HAIRLINE_ROUNDING : 0;
        if (outline.HasNear(pt, (1 - FLATNESS) * m_dTolerance + dRounding, idxFound)) continue;
        faults.vPoints.push_back(idx);
        faults.nGross += outline.HasNear(pt, m_dMost, idxFound) ? 0 : 1;
    }
}

void CInkCheck::FindSpikes(const CInkOutline& outline, TFaults& faults) const {
    bool bOut = false, bGross = false;
    size_t idxFound = 0;
    for (const auto& [from, to] : outline.GetLines()) {
        const bool bWasOut = std::exchange(bOut, !IsWithin(to, (1 - FLATNESS) * m_dTolerance, idxFound));
        const bool bWasGross = std::exchange(bGross, bOut && !IsWithin(to, m_dMost, idxFound));
        // A spike counts where it begins: its tip may be near another part of the way.
        if (bOut && !bWasOut) faults.vPoints.push_back(WayAt(from));
        if (bGross && !bWasGross) ++faults.nGross;
    }
}

// A fold of the outline might leave a hole.
void CInkCheck::FindHoles(const std::vector<TPolyBezier>& vShape, CInkOutline& outline,
                          TFaults& faults) const {
    std::vector<TInkBox> vFolds;
    for (size_t nCurve = 1; nCurve < vShape.size(); ++nCurve) {
        TInkBox box{ToVector(vShape[nCurve].front()), ToVector(vShape[nCurve].front())};
        for (const CPoint pt : vShape[nCurve]) box = box.Union({ToVector(pt), ToVector(pt)});
        vFolds.push_back(box.Grown(m_dTolerance));
    }
    if (vFolds.empty() || outline.GetLines().size() > MOST_LINES) return;
    const CCellGrid folds(vFolds, LEAST_CELL);
    const auto isInFold = [&](TInkVector pt) {
        return folds.Visit({pt, pt}, [&](uint32_t n) { return vFolds[n].Has(pt); });
    };
    const auto isFilled = [&](TInkVector pt) {
        const auto isFilledBy = [&](uint32_t n) {
            return vFolds[n].Has(pt) && outline.IsFilledBy(n + 1, pt);
        };
        return folds.Visit({pt, pt}, isFilledBy) || outline.IsFilledBy(0, pt);
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
    CInkOutline outline(vShape, FLATNESS * m_dTolerance);
    TFaults faults, spikes;
    ForEachIndex(2, m_vWay.size() < POINTS_FOR_THREADS ? 1 : AvailableThreads(), [&](size_t n) {
        if (n == 0)
            FindUncovered(outline, faults);
        else
            FindSpikes(outline, spikes);
    });
    faults.vPoints.insert(faults.vPoints.end(), spikes.vPoints.begin(), spikes.vPoints.end());
    faults.nGross += spikes.nGross;
    if (faults.vPoints.empty()) FindHoles(vShape, outline, faults);
    std::sort(faults.vPoints.begin(), faults.vPoints.end());
    faults.vPoints.erase(std::unique(faults.vPoints.begin(), faults.vPoints.end()), faults.vPoints.end());
    return faults;
}
