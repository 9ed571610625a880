#include "core/GDIBuffer/Surround.h"

namespace {

constexpr uint8_t SURROUND_GREY = 0x60;
constexpr uint8_t EDGE_GREY = 0x20;

// Fills the area between two rectangles.
void FillBetween(CGDIBuffer& target, const CRect& rcInner, const CRect& rcOuter, uint8_t uGrey) {
    target.FillGrey({rcOuter.left, rcOuter.top, rcOuter.right, rcInner.top}, uGrey);
    target.FillGrey({rcOuter.left, rcInner.bottom, rcOuter.right, rcOuter.bottom}, uGrey);
    target.FillGrey({rcOuter.left, rcInner.top, rcInner.left, rcInner.bottom}, uGrey);
    target.FillGrey({rcInner.right, rcInner.top, rcOuter.right, rcInner.bottom}, uGrey);
}

} // namespace

void DrawSurround(CGDIBuffer& target, const CRect& rcPicture) {
    const CSize sz = target.GetSize();
    const CRect& rc = rcPicture;
    FillBetween(target, rc, {0, 0, sz.cx, sz.cy}, SURROUND_GREY);
    if (!rc.IsEmpty())
        FillBetween(target, rc, {rc.left - 1, rc.top - 1, rc.right + 1, rc.bottom + 1}, EDGE_GREY);
}
