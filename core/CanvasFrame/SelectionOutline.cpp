#include "core/CanvasFrame/SelectionOutline.h"

#include <cstring>

namespace {

constexpr int64_t DASH = 5;
constexpr int64_t STEP_MS = 100;

// Rounds down, so that the dash across zero is as long as any other.
bool IsWhite(int64_t n) { return (n >= 0 ? n / DASH : -((-n + DASH - 1) / DASH)) % 2 != 0; }

} // namespace

void DrawSelectionOutline(CGDIBuffer& target, const CRect& rcClip, const CSelectBuffer& select,
                          const CCanvasView& view, uint32_t uTick) {
    const CRect rcInside = rcClip.Intersect(CRect({0, 0}, target.GetSize()));
    const int64_t nStep = uTick / STEP_MS;
    for (const TOutlineSegment& segment : select.GetOutline()) {
        CRect rc = view.ToWindow(CRect(segment.x1, segment.y1, segment.x2, segment.y2));
        ++rc.right; // both ends belong to the line
        ++rc.bottom;
        rc = rc.Intersect(rcInside);
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x)
                std::memset(target.GetPixelPtr({x, y}), IsWhite(int64_t{x} + y - nStep) ? 255 : 0, 3);
    }
}

CRect SelectionRect(const CSelectBuffer& select, const CCanvasView& view) {
    if (select.GetOutline().empty()) return {};
    CRect rc = view.ToWindow(select.GetBound());
    ++rc.right;
    ++rc.bottom;
    return rc.Intersect(CRect({0, 0}, view.GetClient()));
}
