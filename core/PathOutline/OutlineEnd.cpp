#include "core/PathOutline/OutlineEnd.h"

#include <algorithm>

namespace {

// The fraction at which a curve that begins beyond the line and ends inside crosses it.
uint32_t EntryOf(const CBezier& bez, const TEndLine& line) {
    uint32_t fBeyond = 0;
    uint32_t fInside = BEZIER_T_RESOLUTION;
    while (fInside - fBeyond > 1) {
        const uint32_t f = (fBeyond + fInside) / 2;
        (line.IsInside(bez.PointAt(f)) ? fInside : fBeyond) = f;
    }
    return fInside;
}

void Reverse(TOutlinePoints& vPoints) {
    std::reverse(vPoints.begin(), vPoints.end());
    for (TOutlinePoint& point : vPoints) std::swap(point.back, point.fore);
}

} // namespace

TEndLine EndLine(CPoint position, CPoint corner, CPoint tangent) {
    constexpr int64_t LENGTH = 1 << 20; // products with any point stay in 64 bits
    const CPoint across = Scale(Rot90(corner - position), LENGTH);
    return {position, Dot(across, tangent) < 0 ? CPoint{-across.x, -across.y} : across};
}

void TrimStart(TOutlinePoints& vPoints, const TEndLine& line, const TOutlinePoint& corner) {
    constexpr int64_t REACH = 2;
    const auto beginAt = [&](TOutlinePoints::iterator itNext, const TOutlinePoint& first) {
        std::fill(vPoints.begin(), itNext - 1, TOutlinePoint{first.anchor, {}, {}});
        *(itNext - 1) = first;
    };
    const auto itInside = std::find_if(vPoints.begin(), vPoints.end(),
                                       [&](const auto& point) { return line.IsInside(point.anchor); });
    if (itInside == vPoints.begin()) return;
    const CPoint toCorner = corner.anchor - line.position;
    if (itInside != vPoints.end()) {
        const CBezier bez = SegmentOf(*(itInside - 1), *itInside);
        const CBezier rest = bez.Split(EntryOf(bez, line)).second;
        const CPoint way = rest.p0 - line.position;
        if (Dot(way, toCorner) > 0 && LengthDown(way) <= REACH * LengthDown(toCorner)) {
            itInside->back = rest.p2 - rest.p3;
            beginAt(itInside, {rest.p0, {}, rest.p1 - rest.p0});
            return;
        }
    }
    const auto itAhead = std::find_if(vPoints.begin() + 1, vPoints.end() - 1, [&](const auto& point) {
        return Dot(point.anchor - corner.anchor, corner.fore) > 0;
    });
    itAhead->back = {};
    beginAt(itAhead, {corner.anchor, {}, {}});
}

void TrimEnd(TOutlinePoints& vPoints, const TEndLine& line, const TOutlinePoint& corner) {
    Reverse(vPoints);
    TrimStart(vPoints, line, {corner.anchor, corner.fore, corner.back});
    Reverse(vPoints);
}

std::vector<CPoint> ClipPolygon(std::span<const CPoint> points, const TEndLine& line) {
    std::vector<CPoint> vClipped;
    for (size_t i = 0; i < points.size(); ++i) {
        const CPoint from = points[i];
        const CPoint to = points[(i + 1) % points.size()];
        const int64_t nFrom = Dot(from - line.position, line.inward);
        const int64_t nTo = Dot(to - line.position, line.inward);
        if (nFrom >= 0) vClipped.push_back(from);
        if ((nFrom < 0) == (nTo < 0)) continue;
        const CPoint way = to - from;
        vClipped.push_back(from + CPoint{static_cast<int32_t>(MulDiv(way.x, nFrom, nFrom - nTo)),
                                         static_cast<int32_t>(MulDiv(way.y, nFrom, nFrom - nTo))});
    }
    return vClipped;
}
