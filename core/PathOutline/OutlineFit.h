// The pieces that a stroke's side is put together from: points beside the centre line, handles fitted to it,
// corners.
#pragma once

#include "core/PathOutline/Outline.h"

#include <optional>

/// The curve's tangent at a fraction or, where that is below 4 path units and too short to tell a direction,
/// the nearest one that is not, the one before it first; zero where the curve has none.
CPoint DirectionAt(const CBezier& bez, uint32_t f);

/// The side's point beside a fraction of the centre line `piece`, where `width` is the half-width over the
/// arc length; its handles are mere directions along the side. Nothing where one of the two curves has no
/// direction anywhere.
std::optional<TOutlinePoint> OffsetPoint(const CBezier& piece, const CBezier& width, uint32_t f);

/// Gives the fore of `a` and the back of `b`, until then mere directions, their lengths: so that the curve
/// from `a` to `b` runs beside `centre` at the distance `width`. Their lengths stay near those of the
/// centre's handles, or a tight inner bend would burst.
void FitHandles(TOutlinePoint& a, TOutlinePoint& b, const CBezier& centre, const CBezier& width);

/// The points of the corner between the curves from `p1` to `p2` and from `a` to `m`, in place of `p2` and
/// `a`: their crossing on the inner side, a mitre of at most 50 pixels or a straight edge on the outer.
TOutlinePoints JoinCorner(TOutlinePoint& p1, const TOutlinePoint& p2, const TOutlinePoint& a,
                          TOutlinePoint& m);
