#include "core/PathFit/InkCorners.h"
#include "core/PathFit/InkEnds.h"
#include "core/PathFit/InkFit.h"
#include "core/PathFit/InkTurn.h"

#include <algorithm>

namespace {

/// Of the way, in path units.
constexpr double TOLERANCE = 2.8;
/// The least distance between anchors, in path units, and the number of steps of a long line.
constexpr double LEAST_STEP = 12;
constexpr double MOST_STEPS = 256;

// Some of the way's points, with both ends and all corners.
TInkWay Sparse(const TInkWay& vWay) {
    std::vector<size_t> vKept = FindCorners(vWay, TOLERANCE);
    vKept.push_back(vWay.size() - 1);
    auto itKept = vKept.begin();
    const double dLeast = std::max(LEAST_STEP, vWay.back().dLength / MOST_STEPS);
    TInkWay vSparse;
    double dNext = 0;
    for (size_t idx = 0; idx < vWay.size(); ++idx) {
        const TWayPoint& point = vWay[idx];
        const bool bKept = idx == *itKept;
        // The points beside a corner would hide its turn.
        if (!bKept && idx > 0 &&
            (point.dLength < dNext || vWay[*itKept].dLength - point.dLength < std::max(dLeast, point.dHalf)))
            continue;
        if (bKept) ++itKept;
        // The edge of a wide line shows each small turn.
        dNext = point.dLength + std::max(dLeast, point.dHalf);
        vSparse.push_back(point);
        vSparse.back().pt = Nearest(point.pt);
    }
    return vSparse;
}

// Adds the anchors of a point: a small curve where the line turns sharply.
void AddAnchors(TFittedInk& ink, const TInkWay& vWay, size_t idx) {
    const TInkVector pt = vWay[idx].pt;
    if (idx > 0 && idx + 1 < vWay.size()) {
        const TInkVector in = UnitOf(pt - vWay[idx - 1].pt, {1, 0}), out = UnitOf(vWay[idx + 1].pt - pt, in);
        const TInkCorner corner{pt, in, out, vWay[idx].dHalf};
        if (!IsMitreEnough(corner, TOLERANCE)) {
            const auto [p0, p1, p2, p3] = TurnAt(corner, TurnReach(corner, TOLERANCE), TOLERANCE, 0);
            ink.vAnchors.push_back({ToPoint(p0), {}, ToPoint(p1 - p0)});
            ink.vAnchors.push_back({ToPoint(p3), ToPoint(p2 - p3), {}});
            return;
        }
    }
    ink.vAnchors.push_back({ToPoint(pt), {}, {}});
}

} // namespace

boost::shared_ptr<COpenPathObject> MakeRoughInkPath(std::span<const TInkDisc> vLine) {
    const TInkWay vAll = MakeInkWay(vLine, TOLERANCE);
    if (vAll.empty()) return {};
    if (vAll.size() == 1) return MakeInkPath(MakeDot(vAll.front()));
    const TInkWay vWay = Sparse(vAll);
    TFittedInk ink;
    for (size_t n = 0; n < vWay.size(); ++n) {
        const auto t = static_cast<uint32_t>(ink.vAnchors.size()) * BEZIER_T_RESOLUTION;
        AddAnchors(ink, vWay, n);
        ink.vWidths.push_back({t, std::max(static_cast<uint32_t>(Nearest(vWay[n].dHalf)), 1U)});
        ink.vAlphas.push_back({t, static_cast<uint32_t>(Nearest(vWay[n].dAlpha))});
        ink.uWidth = std::max(ink.uWidth, ink.vWidths.back().uValue);
    }
    return MakeInkPath(ink);
}
