#include "core/Bezier/Bezier.h"

#include <boost/numeric/conversion/cast.hpp>

#include <algorithm>

namespace {

constexpr int64_t ONE = BEZIER_T_RESOLUTION;

CPoint Checked(int64_t x, int64_t y) {
    return {boost::numeric_cast<int32_t>(x), boost::numeric_cast<int32_t>(y)};
}

// n / 0x10000, halves rounded away from zero.
int64_t RoundFixed(int64_t n) { return n < 0 ? -((-n + ONE / 2) >> 16) : (n + ONE / 2) >> 16; }

// (1 - f) * a + f * b
CPoint Mix(CPoint a, CPoint b, int64_t f) {
    const int64_t u = ONE - f;
    return Checked(ShiftFixed(u * a.x + f * b.x), ShiftFixed(u * a.y + f * b.y));
}

// (1 - f)^2 * a + 2 (1 - f) f * b + f^2 * c
CPoint Mix(CPoint a, CPoint b, CPoint c, int64_t f) {
    const int64_t u = ONE - f;
    const int64_t b0 = u * u;
    const int64_t b1 = 2 * u * f;
    const int64_t b2 = f * f;
    return Checked(ShiftFixed(ShiftFixed(b0 * a.x + b1 * b.x + b2 * c.x)),
                   ShiftFixed(ShiftFixed(b0 * a.y + b1 * b.y + b2 * c.y)));
}

// The vector from a point to the first of three that differs from it, forward or (nSign -1) backward; to
// the last when none does.
CPoint FirstWay(CPoint from, const std::array<CPoint, 3>& aptTo, int nSign) {
    const CPoint to = aptTo[0] != from ? aptTo[0] : aptTo[1] != from ? aptTo[1] : aptTo[2];
    return Checked(nSign * (int64_t{to.x} - from.x), nSign * (int64_t{to.y} - from.y));
}

} // namespace

TBezierWeights::TBezierWeights(uint32_t uFraction) {
    const int64_t f = uFraction;
    const int64_t u = ONE - f;
    b0 = ShiftFixed(u * u * u);
    b1 = ShiftFixed(u * (3 * ONE - 3 * f) * f);
    b2 = ShiftFixed(f * (3 * ONE - 3 * f) * f);
    b3 = ShiftFixed(f * f * f);
}

CPoint CBezier::PointAt(uint32_t uFraction) const {
    if (uFraction == 0) return p0;
    if (uFraction == BEZIER_T_RESOLUTION) return p3;
    if (uFraction == BEZIER_T_RESOLUTION / 2)
        return Checked((int64_t{p0.x} + p3.x + 3 * (int64_t{p1.x} + p2.x)) / 8,
                       (int64_t{p0.y} + p3.y + 3 * (int64_t{p1.y} + p2.y)) / 8);
    return PointAt(TBezierWeights(uFraction));
}

CPoint CBezier::PointAt(const TBezierWeights& weights) const {
    const auto& [b0, b1, b2, b3] = weights;
    return Checked(ShiftFixed(ShiftFixed(p0.x * b0 + p1.x * b1 + p2.x * b2 + p3.x * b3)),
                   ShiftFixed(ShiftFixed(p0.y * b0 + p1.y * b1 + p2.y * b2 + p3.y * b3)));
}

CPoint CBezier::TangentAt(uint32_t uFraction) const {
    if (uFraction == 0) return FirstWay(p0, {p1, p2, p3}, 1);
    if (uFraction == BEZIER_T_RESOLUTION) return FirstWay(p3, {p2, p1, p0}, -1);
    const int64_t f = uFraction;
    const int64_t u = ONE - f;
    const int64_t c0 = ShiftFixed(-3 * u * u);
    const int64_t c1 = ShiftFixed(3 * u * (ONE - 3 * f));
    const int64_t c2 = ShiftFixed(3 * f * (2 * ONE - 3 * f));
    const int64_t c3 = ShiftFixed(3 * f * f);
    const auto sum = [&](int32_t n0, int32_t n1, int32_t n2, int32_t n3) {
        return RoundFixed(n0 * c0) + RoundFixed(n1 * c1) + RoundFixed(n2 * c2) + RoundFixed(n3 * c3);
    };
    return Checked(sum(p0.x, p1.x, p2.x, p3.x), sum(p0.y, p1.y, p2.y, p3.y));
}

std::pair<CBezier, CBezier> CBezier::Split(uint32_t f) const {
    if (f == 0) return {{p0, p0, p0, p0}, *this};
    if (f == BEZIER_T_RESOLUTION) return {*this, {p3, p3, p3, p3}};
    const CPoint ptCut = PointAt(f);
    return {{p0, Mix(p0, p1, f), Mix(p0, p1, p2, f), ptCut}, {ptCut, Mix(p1, p2, p3, f), Mix(p2, p3, f), p3}};
}

CRect BezierBounds(const TPolyBezier& vPoints) {
    if (vPoints.empty()) return {};
    const auto [itLeft, itRight] =
        std::minmax_element(vPoints.begin(), vPoints.end(), [](CPoint a, CPoint b) { return a.x < b.x; });
    const auto [itTop, itBottom] =
        std::minmax_element(vPoints.begin(), vPoints.end(), [](CPoint a, CPoint b) { return a.y < b.y; });
    return {itLeft->x, itTop->y, itRight->x + 1, itBottom->y + 1};
}
