#include "core/PathFill/FillReach.h"

#include "core/Base/Failure.h"
#include "core/PathFill/FlattenOutline.h"

#include <algorithm>
#include <climits>

void CheckOutline(std::span<const CPoint> points) {
    SELF_CHECK(invalid_argument, points.size() % 3 == 1 || points.empty());
    SELF_CHECK(invalid_argument, points.empty() || points.front() == points.back());
}

CRect ReachOf(std::span<const CPoint> points, CPoint ptOrigin, CSize szPlane) {
    int32_t nLeft = INT32_MAX, nTop = INT32_MAX, nRight = INT32_MIN, nBottom = INT32_MIN;
    for (const CPoint& pt : points) {
        nLeft = std::min(nLeft, pt.x), nRight = std::max(nRight, pt.x);
        nTop = std::min(nTop, pt.y), nBottom = std::max(nBottom, pt.y);
    }
    const auto pixel = [](int32_t n, int32_t nFrom, int32_t nMore, int32_t nSize) {
        const int64_t nPixel = (int64_t{n} >> 3) - nFrom + nMore;
        return static_cast<int32_t>(std::clamp<int64_t>(nPixel, 0, nSize));
    };
    return {pixel(nLeft, ptOrigin.x, -2, szPlane.cx), pixel(nTop, ptOrigin.y, -2, szPlane.cy),
            pixel(nRight, ptOrigin.x, 3, szPlane.cx), pixel(nBottom, ptOrigin.y, 3, szPlane.cy)};
}

int32_t BandHeight(std::span<const std::span<const CPoint>> outlines, CPoint ptOrigin, CSize szPlane,
                   const CRect& rcTarget, int32_t nStep) {
    constexpr int64_t MAX_CROSSINGS = 1 << 22;
    const int32_t nHeight = rcTarget.Height();
    // A segment turns up or down at most twice. Hulls are checked only where that may be too many.
    int64_t nCrossings = 0;
    for (const auto& points : outlines)
        nCrossings += static_cast<int64_t>(points.size()) * nHeight * FILL_CELLS;
    if (nCrossings > MAX_CROSSINGS) {
        nCrossings = 0;
        for (const auto& points : outlines)
            for (size_t i = 0; i + 3 < points.size(); i += 3) {
                const CRect rc = ReachOf(points.subspan(i, 4), ptOrigin, szPlane).Intersect(rcTarget);
                nCrossings += std::max(rc.Height(), 0) * int64_t{3 * FILL_CELLS};
            }
    }
    const auto nBands = static_cast<int32_t>(std::min<int64_t>(nCrossings / MAX_CROSSINGS + 1, nHeight));
    return RoundUp((nHeight + nBands - 1) / nBands, nStep);
}
