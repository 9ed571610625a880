// The construction of a stroke's side: points beside the centre line, handles fitted to it, corners.
#pragma once

#include "core/PathOutline/Outline.h"

#include <optional>

/// The curve's tangent at a fraction or, where that is below 4 path units and too short to tell a direction,
/// the nearest one that is not, the one before it first; zero where the curve has none.
CPoint DirectionAt(const CBezier& bez, uint32_t f);

/// The side's point beside a fraction of the centre line `piece`, where `width` is the half-width over the
/// arc length; its handles give only directions along the side. Nullopt where one of the two curves has no
/// direction.
std::optional<TOutlinePoint> OffsetPoint(const CBezier& piece, const CBezier& width, uint32_t f);

/// Sets the lengths of the fore of `a` and the back of `b`, until then only directions, so that the curve
/// from `a` to `b` follows `centre` at the distance `width`. They stay near those of the centre's handles,
/// since a tight inner bend would diverge.
void FitHandles(TOutlinePoint& a, TOutlinePoint& b, const CBezier& centre, const CBezier& width);

/// The corner between two curves that would meet at an anchor.
struct TCorner {
    CPoint fore;            ///< of the point where the first curve begins
    TOutlinePoints vPoints; ///< replace the first curve's end and the second one's beginning
    CPoint back;            ///< of the point where the second curve ends
};

/// Their crossing on the inner side, a mitre of at most 50 pixels or a straight edge on the outer.
TCorner JoinCorner(const CBezier& before, const CBezier& behind);
