#include "core/PanelViews/PanelDraw.h"

#include <algorithm>
#include <cmath>

namespace {

// Calls `fn(pixel, its centre)` for the pixels around a rectangle of positions.
template <class Function>
void ForEachPixel(const CGDIBuffer& target, double dLeft, double dTop, double dRight, double dBottom,
                  Function fn) {
    const CRect rc =
        CRect(static_cast<int32_t>(std::floor(dLeft)), static_cast<int32_t>(std::floor(dTop)),
              static_cast<int32_t>(std::ceil(dRight)) + 1, static_cast<int32_t>(std::ceil(dBottom)) + 1)
            .Intersect(CRect({0, 0}, target.GetSize()));
    for (int32_t y = rc.top; y < rc.bottom; ++y)
        for (int32_t x = rc.left; x < rc.right; ++x) fn(CPoint{x, y}, TDrawPoint{x + 0.5, y + 0.5});
}

// The fraction of a pixel inside an edge whose distance from its centre is `d`, positive outside.
double CoverageOf(double d) { return std::clamp(0.5 - d, 0.0, 1.0); }

} // namespace

TColor MixColors(TColor from, TColor to, double dPart) {
    const auto mix = [=](uint8_t a, uint8_t b) {
        return static_cast<uint8_t>(std::lround(a + (b - a) * dPart));
    };
    return MakeColor(mix(RedOf(from), RedOf(to)), mix(GreenOf(from), GreenOf(to)),
                     mix(BlueOf(from), BlueOf(to)));
}

void FillColor(CGDIBuffer& target, const CRect& rc, TColor color) {
    const CRect rcIn = rc.Intersect(CRect({0, 0}, target.GetSize()));
    for (int32_t y = rcIn.top; y < rcIn.bottom; ++y)
        for (int32_t x = rcIn.left; x < rcIn.right; ++x) {
            uint8_t* p = target.GetPixelPtr({x, y});
            p[0] = BlueOf(color);
            p[1] = GreenOf(color);
            p[2] = RedOf(color);
        }
}

void FrameColor(CGDIBuffer& target, const CRect& rc, TColor color) {
    FillColor(target, {rc.left, rc.top, rc.right, rc.top + 1}, color);
    FillColor(target, {rc.left, rc.bottom - 1, rc.right, rc.bottom}, color);
    FillColor(target, {rc.left, rc.top, rc.left + 1, rc.bottom}, color);
    FillColor(target, {rc.right - 1, rc.top, rc.right, rc.bottom}, color);
}

void BlendPixel(CGDIBuffer& target, CPoint pt, TColor color, double dCoverage) {
    const CSize sz = target.GetSize();
    if (pt.x < 0 || pt.y < 0 || pt.x >= sz.cx || pt.y >= sz.cy || dCoverage <= 0) return;
    const int n = static_cast<int>(dCoverage * 256);
    const auto mix = [n](uint8_t& to, uint8_t from) {
        to = static_cast<uint8_t>(to + (from - to) * n / 256);
    };
    uint8_t* p = target.GetPixelPtr(pt);
    mix(p[0], BlueOf(color));
    mix(p[1], GreenOf(color));
    mix(p[2], RedOf(color));
}

void DrawLine(CGDIBuffer& target, TDrawPoint from, TDrawPoint to, double dWidth, TColor color) {
    const double dX = to.x - from.x, dY = to.y - from.y;
    const double dSquare = dX * dX + dY * dY;
    ForEachPixel(target, std::min(from.x, to.x) - dWidth, std::min(from.y, to.y) - dWidth,
                 std::max(from.x, to.x) + dWidth, std::max(from.y, to.y) + dWidth,
                 [&](CPoint pt, TDrawPoint at) {
                     const double t =
                         dSquare > 0
                             ? std::clamp(((at.x - from.x) * dX + (at.y - from.y) * dY) / dSquare, 0.0, 1.0)
                             : 0;
                     const double d = std::hypot(at.x - from.x - t * dX, at.y - from.y - t * dY);
                     BlendPixel(target, pt, color, CoverageOf(d - dWidth / 2));
                 });
}

void DrawDisc(CGDIBuffer& target, TDrawPoint ptCentre, double dRadius, double dWidth, TColor color) {
    ForEachPixel(target, ptCentre.x - dRadius - 1, ptCentre.y - dRadius - 1, ptCentre.x + dRadius + 1,
                 ptCentre.y + dRadius + 1, [&](CPoint pt, TDrawPoint at) {
                     const double d = std::hypot(at.x - ptCentre.x, at.y - ptCentre.y);
                     const double dInner = dWidth > 0 ? CoverageOf(d - (dRadius - dWidth)) : 0;
                     BlendPixel(target, pt, color, CoverageOf(d - dRadius) - dInner);
                 });
}
