#include "core/PathOutline/Outline.h"

#include <boost/numeric/conversion/cast.hpp>

CPoint ToOutline(CPoint pt) {
    return {boost::numeric_cast<int32_t>(int64_t{pt.x} * OUTLINE_UNIT),
            boost::numeric_cast<int32_t>(int64_t{pt.y} * OUTLINE_UNIT)};
}

uint32_t ToOutline(uint32_t uWidth) {
    return static_cast<uint32_t>(boost::numeric_cast<int32_t>(int64_t{uWidth} * OUTLINE_UNIT));
}

TPolyBezier CloseOutline(const TOutlinePoints& vPoints) {
    TPolyBezier vCurve;
    vCurve.reserve(1 + 3 * vPoints.size()); // there are many outlines, so they take no spare memory
    vCurve.push_back(vPoints.front().anchor);
    const auto append = [&](const TOutlinePoint& from, const TOutlinePoint& to) {
        const CBezier segment = SegmentOf(from, to);
        vCurve.insert(vCurve.end(), {segment.p1, segment.p2, segment.p3});
    };
    for (size_t i = 1; i < vPoints.size(); ++i) append(vPoints[i - 1], vPoints[i]);
    if (vCurve.back() != vCurve.front()) append(vPoints.back(), vPoints.front());
    return vCurve;
}
