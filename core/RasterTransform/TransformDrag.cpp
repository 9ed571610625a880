#include "core/RasterTransform/TransformDrag.h"

#include "core/Base/StableMath.h"
#include "core/Tools/Tools.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr int STEPS_OF_TURN = 24; ///< of 15 degrees
/// Corners lie on fractions of a pixel that hold no rounding errors of sines.
constexpr double FRACTION = 1 << 16;

double Dot(TPosition a, TPosition b) { return a.x * b.x + a.y * b.y; }
double LengthOf(TPosition pt) { return std::sqrt(Dot(pt, pt)); }
TPosition Rounded(TPosition pt) { return {std::floor(pt.x + 0.5), std::floor(pt.y + 0.5)}; }
bool IsWhole(TPosition pt) { return pt == Rounded(pt); }

TQuad Clean(TQuad quad) {
    for (TPosition& pt : quad) pt = Rounded(pt * FRACTION) * (1 / FRACTION);
    return quad;
}

// The rectangle of a quadrilateral whose sides are horizontal and vertical, at whole pixels.
bool IsWholeRect(const TQuad& quad) {
    const TPosition right = quad[1] - quad[0], down = quad[3] - quad[0];
    return std::ranges::all_of(quad, IsWhole) && quad[1] + down == quad[2] &&
           ((right.y == 0 && down.x == 0) || (right.x == 0 && down.y == 0));
}

// Turned around a point by the angle of a vector of length 1.
TQuad Turned(TQuad quad, TPosition ptAround, TPosition turn) {
    for (TPosition& pt : quad) {
        const TPosition at = pt - ptAround;
        pt = ptAround + TPosition{at.x * turn.x - at.y * turn.y, at.x * turn.y + at.y * turn.x};
    }
    return quad;
}

TQuad Move(const TTransformDrag& drag, TPosition away, uint32_t flags) {
    if (flags & POINTER_SHIFT) (std::abs(away.x) < std::abs(away.y) ? away.x : away.y) = 0;
    TQuad quad = drag.quad;
    for (TPosition& pt : quad) pt = pt + Rounded(away);
    return quad;
}

TQuad Rotate(const TTransformDrag& drag, TPosition ptNow, uint32_t flags) {
    const TPosition ptMiddle = MiddleOf(drag.quad);
    const TPosition from = drag.ptPress - ptMiddle, to = ptNow - ptMiddle;
    const double dLength = LengthOf(from) * LengthOf(to);
    if (dLength == 0) return drag.quad;
    TPosition turn{Dot(from, to) / dLength, Cross(from, to) / dLength};
    if (flags & POINTER_SHIFT) {
        // The upper side gets the nearest of the directions.
        const TPosition side = drag.quad[1] - drag.quad[0];
        const TPosition unit = side * (1 / LengthOf(side));
        const TPosition wanted{unit.x * turn.x - unit.y * turn.y, unit.x * turn.y + unit.y * turn.x};
        TPosition best{};
        for (int n = 0; n < STEPS_OF_TURN; ++n) {
            const auto [dSin, dCos] = StableSinCos(2 * PI * n / STEPS_OF_TURN);
            if (n == 0 || Dot({dCos, dSin}, wanted) > Dot(best, wanted)) best = {dCos, dSin};
        }
        turn = {Dot(unit, best), Cross(unit, best)};
    }
    TQuad quad = Clean(Turned(drag.quad, ptMiddle, turn));
    // A rectangle that was turned by quarters keeps its pixels.
    if (IsWholeRect(drag.quad) && !IsWholeRect(quad)) {
        TQuad whole = quad;
        for (TPosition& pt : whole) pt = pt + (Rounded(quad[0]) - quad[0]);
        if (IsWholeRect(whole)) quad = whole;
    }
    return quad;
}

// Scales along the sides; a rectangle's corner goes to a whole pixel.
TQuad Scale(const TTransformDrag& drag, TPosition away, uint32_t flags) {
    const TQuad& quad = drag.quad;
    const bool bMiddle = flags & POINTER_ALT, bProportions = flags & POINTER_SHIFT;
    const TPosition ptCorner = quad[drag.grip.nCorner];
    const TPosition ptFixed = bMiddle ? MiddleOf(quad) : quad[(drag.grip.nCorner + 2) % 4];
    TPosition ptTo = ptCorner + away;
    if (IsWholeRect(quad) && !bProportions) ptTo = Rounded(ptTo);
    const TPosition reach = ptCorner - ptFixed;
    const TPosition right = (quad[1] - quad[0]) + (quad[2] - quad[3]);
    const TPosition down = (quad[3] - quad[0]) + (quad[2] - quad[1]);
    const double dArea = Cross(right, down);
    // A vector as parts of both sides' directions.
    const auto split = [&](TPosition pt) {
        return TPosition{Cross(pt, down) / dArea, Cross(right, pt) / dArea};
    };
    const TPosition before = split(reach), now = split(ptTo - ptFixed);
    const auto ratio = [](double dNow, double dBefore) { return dBefore == 0 ? 1 : dNow / dBefore; };
    TPosition scale{ratio(now.x, before.x), ratio(now.y, before.y)};
    if (bProportions) {
        const double d = Dot(ptTo - ptFixed, reach) / Dot(reach, reach);
        scale = {d, d};
    }
    TQuad result;
    for (size_t n = 0; n < 4; ++n) {
        const TPosition parts = split(quad[n] - ptFixed);
        result[n] = ptFixed + right * (parts.x * scale.x) + down * (parts.y * scale.y);
    }
    return Clean(result);
}

// Moves the side along which the pointer moves.
TQuad Skew(const TTransformDrag& drag, TPosition away, uint32_t flags) {
    const size_t nCorner = drag.grip.nCorner;
    TQuad quad = drag.quad;
    const auto along = [&](size_t nOther) {
        const TPosition side = quad[nOther] - quad[nCorner];
        return side * (Dot(away, side) / Dot(side, side));
    };
    const size_t nNext = (nCorner + 1) % 4, nLast = (nCorner + 3) % 4;
    const TPosition next = along(nNext), last = along(nLast);
    const bool bNext = Dot(next, next) >= Dot(last, last);
    const TPosition move = bNext ? next : last;
    const size_t nWith = bNext ? nNext : nLast;
    for (size_t n = 0; n < 4; ++n) {
        if (n == nCorner || n == nWith)
            quad[n] = quad[n] + move;
        else if (flags & POINTER_ALT)
            quad[n] = quad[n] - move;
    }
    return Clean(quad);
}

TQuad Distort(const TTransformDrag& drag, TPosition away, uint32_t flags) {
    TQuad quad = drag.quad;
    quad[drag.grip.nCorner] = quad[drag.grip.nCorner] + away;
    TPosition& ptOpposite = quad[(drag.grip.nCorner + 2) % 4];
    if (flags & POINTER_ALT) ptOpposite = ptOpposite - away;
    return quad;
}

} // namespace

TPosition MiddleOf(const TQuad& quad) { return (quad[0] + quad[1] + quad[2] + quad[3]) * 0.25; }

TQuad DragQuad(const TTransformDrag& drag, TPosition ptNow, uint32_t flags) {
    const TPosition away = ptNow - drag.ptPress;
    if (drag.grip.kind == TTransformGrip::EKind::Inside) return Move(drag, away, flags);
    if (drag.grip.kind == TTransformGrip::EKind::Outside || drag.mode == TRANSFORM_ROTATE)
        return Rotate(drag, ptNow, flags);
    if (drag.mode == TRANSFORM_SCALE) return Scale(drag, away, flags);
    return drag.mode == TRANSFORM_SKEW ? Skew(drag, away, flags) : Distort(drag, away, flags);
}

TQuad FixedQuad(const TQuad& quad, EFixedTransform fixed) {
    const TPosition ptMiddle = MiddleOf(quad);
    TQuad result = quad;
    switch (fixed) {
    case EFixedTransform::TurnHalf:
        return Clean(Turned(quad, ptMiddle, {-1, 0}));
    case EFixedTransform::FlipAcross:
        for (TPosition& pt : result) pt.x = 2 * ptMiddle.x - pt.x;
        return Clean(result);
    case EFixedTransform::FlipDown:
        for (TPosition& pt : result) pt.y = 2 * ptMiddle.y - pt.y;
        return Clean(result);
    default:
        break;
    }
    result = Clean(Turned(quad, ptMiddle, {0, fixed == EFixedTransform::TurnRight ? 1.0 : -1.0}));
    if (!IsWholeRect(quad) || IsWholeRect(result)) return result;
    const auto least = [](const TQuad& of) {
        return TPosition{std::min(of[0].x, of[2].x), std::min(of[0].y, of[2].y)};
    };
    const TPosition ptBefore = least(quad), ptAfter = least(result);
    // The middle is half a pixel off in both directions.
    const auto move = [](double dBefore, double dAfter) {
        return std::trunc(dAfter - dBefore) + dBefore - dAfter;
    };
    const TPosition away{move(ptBefore.x, ptAfter.x), move(ptBefore.y, ptAfter.y)};
    for (TPosition& pt : result) pt = pt + away;
    return result;
}
