#include "core/PathFit/InkCheck.h"

#include "core/Base/Parallel.h"
#include "core/PathFit/InkOutline.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

/// Of the chords that stand for an outline's curve, in tolerances.
constexpr double FLATNESS = 0.05;
/// Places of its sides are looked at no farther from each other than this, in tolerances, but in addition to
/// the ends of its lines no more than about so many.
constexpr double STEP = 4;
constexpr double MOST_PLACES = 4000;
constexpr double LEAST_CELL = 8;
/// The outlines of scribbles are not searched for holes.
constexpr size_t MOST_LINES = 16000;
} // namespace

CInkCheck::CInkCheck(const TInkWay& vWay, double dTolerance, double dMost)
    : m_vWay(vWay), m_dTolerance(dTolerance), m_dMost(dMost), m_area(vWay, dMost),
      m_vEdges(FindInkEdges(vWay, m_area, dTolerance)) {}

void CInkCheck::FindUncovered(CInkOutline& outline, TFaults& faults) const {
    // An outline leads forward on the left and back on the right.
    std::array<size_t, 2> aFound{0, outline.FirstOfFolds()};
    for (const auto& [pt, idx, bLeft] : m_vEdges) {
        size_t& idxFound = aFound[bLeft ? 0 : 1];
        if (outline.HasNear(pt, (1 - FLATNESS) * m_dTolerance - m_vWay[idx].dOff, idxFound)) continue;
        faults.vPoints.push_back(idx);
        faults.nGross += outline.HasNear(pt, m_dMost, idxFound) ? 0 : 1;
    }
}

void CInkCheck::FindSpikes(const CInkOutline& outline, TFaults& faults) const {
    bool bOut = false, bGross = false;
    size_t idxFound = 0;
    const auto check = [&](TInkVector from, TInkVector to) {
        const bool bWasOut =
            std::exchange(bOut, !m_area.HasNear(to, (1 - FLATNESS) * m_dTolerance, idxFound));
        const bool bWasGross = std::exchange(bGross, bOut && !m_area.HasNear(to, m_dMost, idxFound));
        // A spike counts where it begins: its tip may be near another part of the way.
        if (bOut && !bWasOut) faults.vPoints.push_back(m_area.NearestEdge(from));
        if (bGross && !bWasGross) ++faults.nGross;
    };
    // Straight sides may be long.
    double dAll = 0;
    for (const auto& [from, to] : outline.GetLines()) dAll += LengthOf(to - from);
    const double dStep = std::max(STEP * m_dTolerance, dAll / MOST_PLACES);
    for (const auto& [from, to] : outline.GetLines()) {
        const double dParts = LengthOf(to - from) / dStep;
        TInkVector last = from;
        for (int n = 1; n < dParts; ++n) {
            const TInkVector next = Mix(from, to, n / dParts);
            check(last, next);
            last = next;
        }
        check(last, to);
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
