#include "core/PathOutline/OutlineCut.h"

#include "core/Base/StableMath.h"
#include "core/PathOutline/WidthProfile.h"

#include <algorithm>

#include <numbers>

namespace {

constexpr int64_t REACH = 3; ///< times the half-width

// The parts before and behind the place where the line meets the side nearest to the line's start; both empty
// when it does not.
std::pair<TOutlinePoints, TOutlinePoints> CutByLine(const TOutlinePoints& vSide, const CBezier& line) {
    size_t idxBest = 0;
    uint32_t fBest = 0;
    int64_t nBest = -1;
    for (size_t i = 0; i + 1 < vSide.size(); ++i) {
        const CBezier segment = SegmentOf(vSide[i], vSide[i + 1]);
        const auto crossing = FindCrossing(segment, line);
        if (!crossing) continue;
        const CPoint ptAway = segment.PointAt(crossing->uFirst) - line.p0;
        const int64_t nDistance = Dot(ptAway, ptAway);
        if (nBest >= 0 && nDistance >= nBest) continue;
        nBest = nDistance;
        idxBest = i;
        fBest = crossing->uFirst;
    }
    if (nBest < 0) return {};
    const auto [head, tail] = SegmentOf(vSide[idxBest], vSide[idxBest + 1]).Split(fBest);
    const auto itCut = vSide.begin() + static_cast<std::ptrdiff_t>(idxBest) + 1;
    TOutlinePoints vFirst(vSide.begin(), itCut);
    vFirst.back().fore = head.p1 - head.p0;
    vFirst.push_back({head.p3, head.p2 - head.p3, {}});
    TOutlinePoints vSecond{{tail.p0, {}, tail.p1 - tail.p0}};
    vSecond.insert(vSecond.end(), itCut, vSide.end());
    vSecond[1].back = tail.p2 - tail.p3;
    return {vFirst, vSecond};
}

// The cut's direction toward the left side.
CPoint DirectionOf(const TPlacedCut& cut) {
    const TSinCos turn = StableSinCos(-cut.nAngle * (std::numbers::pi / 180));
    return {static_cast<int32_t>(turn.dCos * cut.tangent.x - turn.dSin * cut.tangent.y),
            static_cast<int32_t>(turn.dSin * cut.tangent.x + turn.dCos * cut.tangent.y)};
}

} // namespace

std::vector<TPlacedCut> PlaceCuts(const TOutlineSource& source) {
    const auto vSegments = SegmentsOf(source.vAnchors);
    if (vSegments.empty() || source.vCuts.empty()) return {};
    const CPathLengths lengths(vSegments);
    std::vector<TPlacedCut> vCuts;
    for (const TOutlineCut& cut : source.vCuts) {
        const uint32_t t = std::min(cut.t, LastParameter(source.vAnchors));
        const size_t idx = std::min<size_t>(t / BEZIER_T_RESOLUTION, vSegments.size() - 1);
        const uint32_t f = t - static_cast<uint32_t>(idx) * BEZIER_T_RESOLUTION;
        const auto widthOf = [&](EPathSide side) {
            return WidthAt(lengths, source.vWidths, source.uWidth, t, side);
        };
        vCuts.push_back({vSegments[idx].PointAt(f),
                         vSegments[idx].TangentAt(f),
                         cut.nAngle % 360,
                         {widthOf(SIDE_LEFT), widthOf(SIDE_RIGHT)}});
    }
    return vCuts;
}

std::vector<TStretch> CutSides(TOutlinePoints vLeft, TOutlinePoints vRight,
                               const std::vector<TPlacedCut>& vCuts) {
    std::vector<TStretch> vStretches;
    for (const TPlacedCut& cut : vCuts) {
        if (vLeft.size() < 2 || vRight.size() < 2) break;
        const CPoint direction = DirectionOf(cut);
        const CPoint toLeft = Scale(direction, REACH * cut.auWidth[SIDE_LEFT]);
        const CPoint toRight = Scale(direction, -REACH * cut.auWidth[SIDE_RIGHT]);
        auto left = CutByLine(vLeft, CBezier::Line(cut.position, CheckedAdd(cut.position, toLeft)));
        auto right = CutByLine(vRight, CBezier::Line(cut.position, CheckedAdd(cut.position, toRight)));
        vStretches.push_back({std::move(left.first), std::move(right.second)});
        vLeft = std::move(left.second);
        vRight = std::move(right.first);
    }
    vStretches.push_back({std::move(vLeft), std::move(vRight)});
    return vStretches;
}
