#include "core/PathOutline/WidthProfile.h"

#include <boost/numeric/conversion/cast.hpp>

#include <algorithm>

CBezier SegmentOf(const TOutlinePoint& from, const TOutlinePoint& to) {
    return {from.anchor, CheckedAdd(from.anchor, from.fore), CheckedAdd(to.anchor, to.back), to.anchor};
}

std::vector<CBezier> SegmentsOf(const TOutlinePoints& vAnchors) {
    std::vector<CBezier> vSegments;
    for (size_t i = 1; i < vAnchors.size(); ++i) vSegments.push_back(SegmentOf(vAnchors[i - 1], vAnchors[i]));
    return vSegments;
}

CBezier EaseWidth(CPoint from, uint32_t uLength, int32_t nWidth) {
    const auto at = [&](uint64_t u) {
        return boost::numeric_cast<int32_t>(int64_t{from.x} + static_cast<int64_t>(u));
    };
    return {from, {at(uLength / 3), from.y}, {at(uint64_t{uLength} * 2 / 3), nWidth}, {at(uLength), nWidth}};
}

uint32_t FractionAt(const CBezier& width, int32_t nLength) {
    uint32_t fBelow = 0;
    uint32_t fAbove = BEZIER_T_RESOLUTION;
    while (fAbove - fBelow > 1) {
        const uint32_t f = (fBelow + fAbove) / 2;
        (width.PointAt(f).x < nLength ? fBelow : fAbove) = f;
    }
    return width.p0.x < nLength ? fAbove : 0;
}

uint32_t PathLength(const std::vector<CBezier>& vSegments, uint32_t tFirst, uint32_t tLast) {
    uint64_t uSum = 0;
    for (uint32_t t = tFirst; t < tLast;) {
        const size_t idx = t / BEZIER_T_RESOLUTION;
        if (idx >= vSegments.size()) break;
        const uint32_t tBegin = static_cast<uint32_t>(idx) * BEZIER_T_RESOLUTION;
        const uint32_t tEnd = std::min(tLast, tBegin + BEZIER_T_RESOLUTION);
        const CBezier rest = vSegments[idx].Split(t - tBegin).second;
        const uint32_t uWhole = tBegin + BEZIER_T_RESOLUTION - t;
        uSum += rest.ArcLength(static_cast<uint32_t>(MulDiv(tEnd - t, BEZIER_T_RESOLUTION, uWhole)));
        t = tEnd;
    }
    return boost::numeric_cast<uint32_t>(uSum);
}

uint32_t WidthAt(const std::vector<CBezier>& vSegments, const std::vector<TOutlineWidth>& vWidths,
                 uint32_t uWidth, uint32_t t, EPathSide side) {
    if (vWidths.empty()) return uWidth;
    const auto itUpper =
        std::find_if(vWidths.begin(), vWidths.end(), [&](const auto& w) { return w.t >= t; });
    if (itUpper == vWidths.end()) return vWidths.back().auWidth[side];
    if (itUpper == vWidths.begin() || itUpper->t == t) return itUpper->auWidth[side];
    const auto itLower = itUpper - 1;
    const uint32_t uAll = PathLength(vSegments, itLower->t, itUpper->t);
    if (uAll == 0) return itUpper->auWidth[side];
    const uint32_t uPart = std::min(PathLength(vSegments, itLower->t, t), uAll);
    const CBezier curve = EaseWidth({0, static_cast<int32_t>(itLower->auWidth[side])}, uAll,
                                    static_cast<int32_t>(itUpper->auWidth[side]));
    return static_cast<uint32_t>(
        curve.PointAt(static_cast<uint32_t>(MulDiv(uPart, BEZIER_T_RESOLUTION, uAll))).y);
}
