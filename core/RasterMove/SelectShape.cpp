#include "core/RasterMove/SelectShape.h"

#include "core/PathFill/SelectFill.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr int32_t UNIT = 8; ///< an outline's steps in a pixel

// Appends a straight line: its handles lie at its ends.
void AddLine(std::vector<CPoint>& vOutline, CPoint ptTo) {
    vOutline.insert(vOutline.end(), {vOutline.back(), ptTo, ptTo});
}

std::vector<CPoint> RectangleOutline(const CRect& rc) {
    std::vector<CPoint> vOutline{rc.TopLeft()};
    for (const CPoint pt :
         {CPoint{rc.right, rc.top}, CPoint{rc.right, rc.bottom}, CPoint{rc.left, rc.bottom}, rc.TopLeft()})
        AddLine(vOutline, pt);
    return vOutline;
}

// Eight arcs, so that the curves stay within 1/16 of a pixel of the ellipse up to the largest canvas; four
// would be half a pixel off on a side of 4000.
std::vector<CPoint> EllipseOutline(const CRect& rc) {
    // One octant of the unit circle in 65536ths: its points, and the handles on the tangents.
    constexpr int64_t CORNER = 46341, ONE = 65536, HANDLE = 17381, INNER = 34051, OUTER = 58631;
    constexpr std::array<std::array<int64_t, 2>, 6> QUARTER{
        {{ONE, HANDLE}, {OUTER, INNER}, {CORNER, CORNER}, {INNER, OUTER}, {HANDLE, ONE}, {0, ONE}}};
    const int64_t xTwice = int64_t{rc.left} + rc.right, yTwice = int64_t{rc.top} + rc.bottom;
    const auto place = [&](int64_t x, int64_t y) {
        // The distance from the centre is rounded, the same on all sides.
        const auto away = [](int64_t n, int64_t nSide) {
            const int64_t nAway = ((n < 0 ? -n : n) * nSide + ONE) / (2 * ONE);
            return n < 0 ? -nAway : nAway;
        };
        return CPoint{static_cast<int32_t>(xTwice / 2 + away(x, rc.Width())),
                      static_cast<int32_t>(yTwice / 2 + away(y, rc.Height()))};
    };
    std::vector<CPoint> vOutline{place(ONE, 0)};
    int64_t nCos = 1, nSin = 0; // of the quarters' turns
    for (int n = 0; n < 4; ++n, std::swap(nCos, nSin), nCos = -nCos)
        for (const auto& [x, y] : QUARTER)
            vOutline.push_back(place(nCos * x - nSin * y, nSin * x + nCos * y));
    return vOutline;
}

// Areas that a line crosses or goes around twice stay selected (the outline winds around them a number of
// times that is not 0): a hand that overshoots its beginning must not cut out the overlap.
std::vector<CPoint> PolygonOutline(std::span<const CPoint> points) {
    const auto centre = [](CPoint pt) { return CPoint{pt.x * UNIT + UNIT / 2, pt.y * UNIT + UNIT / 2}; };
    std::vector<CPoint> vOutline;
    vOutline.reserve(points.size() * 3 + 1);
    vOutline.push_back(centre(points.front()));
    for (const CPoint pt : points.subspan(1)) AddLine(vOutline, centre(pt));
    AddLine(vOutline, vOutline.front());
    return vOutline;
}

} // namespace

CRect SpanOf(CPoint ptFrom, CPoint ptTo) {
    return {std::min(ptFrom.x, ptTo.x), std::min(ptFrom.y, ptTo.y), std::max(ptFrom.x, ptTo.x) + 1,
            std::max(ptFrom.y, ptTo.y) + 1};
}

TSelectPtr MakeShapeSelect(ESelectShape shape, std::span<const CPoint> points, bool bAntialias,
                           CSize szCanvas) {
    const auto isFirst = [&](CPoint pt) { return pt == points.front(); };
    if (std::ranges::all_of(points, isFirst)) return {};
    const CRect rc = SpanOf(points.front(), points.back());
    const CRect rcEdges{rc.left * UNIT, rc.top * UNIT, rc.right * UNIT, rc.bottom * UNIT};
    const auto spSelect = boost::make_shared<CSelectBuffer>(szCanvas);
    FillSelect(*spSelect,
               shape == ESelectShape::Polygon   ? PolygonOutline(points)
               : shape == ESelectShape::Ellipse ? EllipseOutline(rcEdges)
                                                : RectangleOutline(rcEdges),
               bAntialias);
    return IsSameSelection(spSelect, {}) ? TSelectPtr() : spSelect;
}

TSelectPtr CombineSelect(const TSelectPtr& spOld, const TSelectPtr& spNew, EShapeMode mode) {
    const TSelectPtr& spBase =
        mode == EShapeMode::Replace || (mode == EShapeMode::Add && !spOld) ? spNew : spOld;
    if (!spBase) return {};
    const auto spSelect = boost::make_shared<CSelectBuffer>(spBase->GetCanvasSize());
    spSelect->Combine(ESelectMode::Add, *spBase);
    if (spNew && spNew != spBase)
        spSelect->Combine(mode == EShapeMode::Add ? ESelectMode::Add : ESelectMode::Subtract, *spNew);
    spSelect->UpdateOutline();
    return IsSameSelection(spSelect, {}) ? TSelectPtr() : spSelect;
}

bool IsSameSelection(const TSelectPtr& sp1, const TSelectPtr& sp2) {
    if (sp1 == sp2) return true;
    const CAlphaBufferImpl<uint8_t>& mask = (sp1 ? sp1 : sp2)->GetMask();
    const auto tile = [](const TSelectPtr& sp, CPoint pt) {
        return sp ? sp->GetMask().FindBlock(pt) : nullptr;
    };
    bool bSame = true;
    mask.ForEachBlock([&](CPoint pt) {
        const CAlphaBlock8* const p1 = tile(sp1, pt);
        const CAlphaBlock8* const p2 = tile(sp2, pt);
        if (!bSame || p1 == p2) return;
        // Pixels of a tile beyond the canvas do not count.
        const CSize sz = CRect(pt, DEFAULT_BLOCKSIZE).Intersect(mask.GetRect()).Size();
        constexpr std::array<uint8_t, DEFAULT_BLOCKSIZE.cx> NONE{};
        for (int32_t y = 0; bSame && y < sz.cy; ++y) {
            const auto row = [y, pNone = NONE.data()](const CAlphaBlock8* pTile) {
                return pTile ? pTile->GetAlpha() + y * DEFAULT_BLOCKSIZE.cx : pNone;
            };
            bSame = std::memcmp(row(p1), row(p2), static_cast<size_t>(sz.cx)) == 0;
        }
    });
    return bSame;
}
