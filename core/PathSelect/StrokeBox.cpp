#include "core/PathSelect/StrokeBox.h"

#include "core/Base/StableMath.h"
#include "core/Tools/Tools.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace {

constexpr double LEAST = 8;          ///< path units of a pixel
constexpr double FURTHEST = 1 << 24; ///< path units, more than a path can store
constexpr int STEPS_OF_TURN = 24;    ///< of 15 degrees

// The handle's place along each axis: 0 at the left or top, 1 in the middle, 2 at the right or bottom.
struct TPlace {
    int x, y;
};
constexpr TPlace PLACES[BOX_HANDLES] = {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {1, 2}, {0, 2}, {0, 1}};

// A place along one axis of the box, whose far side is the last position inside.
double Along(int32_t nNear, int32_t nFar, int nPlace) {
    return nNear + (static_cast<double>(nFar) - nNear) * nPlace / 2;
}

double AcrossBox(const CRect& rcBox, int nPlace) { return Along(rcBox.left, rcBox.right - 1, nPlace); }
double DownBox(const CRect& rcBox, int nPlace) { return Along(rcBox.top, rcBox.bottom - 1, nPlace); }

// The factor of one axis for a handle at `dHandle` that goes to `dTo`.
double FactorOf(double dHandle, double dFixed, double dTo) {
    const double dReach = dHandle - dFixed;
    if (std::abs(dReach) <= LEAST) return 1;
    return std::max((dTo - dFixed) / dReach, LEAST / std::abs(dReach));
}

TStrokeMap Scaled(const CRect& rcBox, EBoxPart part, CPoint ptPress, CPoint ptNow, uint32_t flags) {
    const TPlace place = PLACES[part];
    const bool bCentre = flags & POINTER_ALT;
    const auto handle = [&](TPlace at) { return std::pair(AcrossBox(rcBox, at.x), DownBox(rcBox, at.y)); };
    const auto [x, y] = handle(place);
    const auto [xFixed, yFixed] = handle(bCentre ? TPlace{1, 1} : TPlace{2 - place.x, 2 - place.y});
    const double xTo = x + ptNow.x - ptPress.x, yTo = y + ptNow.y - ptPress.y;
    double dAcross = place.x == 1 ? 1 : FactorOf(x, xFixed, xTo);
    double dDown = place.y == 1 ? 1 : FactorOf(y, yFixed, yTo);
    if (IsBoxCorner(part) && (flags & POINTER_SHIFT)) {
        const double xReach = x - xFixed, yReach = y - yFixed;
        const double dReach = xReach * xReach + yReach * yReach;
        const double dLeast = LEAST / std::max({LEAST, std::abs(xReach), std::abs(yReach)});
        dAcross = dDown =
            dReach == 0 ? 1 : std::max(((xTo - xFixed) * xReach + (yTo - yFixed) * yReach) / dReach, dLeast);
    }
    return {xFixed, yFixed, xFixed, yFixed, {dAcross, 0, 0, dDown}, std::sqrt(dAcross * dDown)};
}

TStrokeMap Turned(const CRect& rcBox, CPoint ptPress, CPoint ptNow, uint32_t flags) {
    const double x = AcrossBox(rcBox, 1), y = DownBox(rcBox, 1);
    const double xFrom = ptPress.x - x, yFrom = ptPress.y - y, xTo = ptNow.x - x, yTo = ptNow.y - y;
    const double dLength = std::sqrt((xFrom * xFrom + yFrom * yFrom) * (xTo * xTo + yTo * yTo));
    if (dLength == 0) return {};
    double dCos = (xFrom * xTo + yFrom * yTo) / dLength, dSin = (xFrom * yTo - yFrom * xTo) / dLength;
    if (flags & POINTER_SHIFT) {
        TSinCos best{0, 1};
        for (int n = 1; n < STEPS_OF_TURN; ++n) {
            const TSinCos step = StableSinCos(2 * std::numbers::pi * n / STEPS_OF_TURN);
            if (dCos * step.dCos + dSin * step.dSin > dCos * best.dCos + dSin * best.dSin) best = step;
        }
        // The sines of quarter turns are not quite 0.
        const auto clean = [](double d) { return std::abs(d) < 1e-9 ? 0.0 : d; };
        dCos = clean(best.dCos);
        dSin = clean(best.dSin);
    }
    return {x, y, x, y, {dCos, -dSin, dSin, dCos}, 1};
}

TStrokeMap Moved(CPoint ptAway, uint32_t flags) {
    if (flags & POINTER_SHIFT) (std::abs(ptAway.x) < std::abs(ptAway.y) ? ptAway.x : ptAway.y) = 0;
    TStrokeMap map;
    map.dToX = ptAway.x;
    map.dToY = ptAway.y;
    return map;
}

int32_t Rounded(double d) {
    return static_cast<int32_t>(std::clamp(std::floor(d + 0.5), -FURTHEST, FURTHEST));
}

} // namespace

CPoint BoxHandleAt(const CRect& rcBox, EBoxPart part) {
    const TPlace place = PLACES[part];
    return {rcBox.left + (rcBox.Width() - 1) * place.x / 2, rcBox.top + (rcBox.Height() - 1) * place.y / 2};
}

CPoint TStrokeMap::operator()(CPoint pt) const {
    const double x = pt.x - dFromX, y = pt.y - dFromY;
    return {Rounded(dToX + (x * adMatrix[0] + y * adMatrix[1])),
            Rounded(dToY + (x * adMatrix[2] + y * adMatrix[3]))};
}

bool TStrokeMap::IsIdentity() const {
    return dFromX == dToX && dFromY == dToY && adMatrix == std::array<double, 4>{1, 0, 0, 1};
}

TStrokeMap DragBox(const CRect& rcBox, EBoxPart part, CPoint ptPress, CPoint ptNow, uint32_t flags) {
    if (part == BOX_INSIDE) return Moved(ptNow - ptPress, flags);
    if (part == BOX_TURN) return Turned(rcBox, ptPress, ptNow, flags);
    return IsBoxHandle(part) ? Scaled(rcBox, part, ptPress, ptNow, flags) : TStrokeMap();
}
