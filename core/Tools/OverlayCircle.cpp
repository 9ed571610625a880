#include "core/Tools/OverlayCircle.h"

#include <algorithm>

namespace {

constexpr int32_t SMALLEST_CIRCLE = 4; ///< screen pixels across

} // namespace

CRect CircleBox(const TOverlayMapper& mapper, CPoint ptCentre, int32_t nRadius) {
    CRect rc(mapper(ptCentre), CSize());
    for (const CPoint ptReach : {CPoint{nRadius, 0}, {-nRadius, 0}, {0, nRadius}, {0, -nRadius}}) {
        const CPoint pt = mapper(ptCentre + ptReach);
        rc = {std::min(rc.left, pt.x), std::min(rc.top, pt.y), std::max(rc.right, pt.x),
              std::max(rc.bottom, pt.y)};
    }
    return rc;
}

void DrawCircle(COverlay& overlay, const TOverlayMapper& mapper, CPoint ptCentre, int32_t nRadius) {
    const CRect rc = CircleBox(mapper, ptCentre, nRadius);
    if (rc.Width() >= SMALLEST_CIRCLE && rc.Height() >= SMALLEST_CIRCLE)
        overlay.DrawEllipse(rc, {.bInvert = true});
}
