// Places where a way turns so sharply that no smooth curve follows it.
#pragma once

#include "core/PathFit/InkWay.h"

/// The corners of a way, in its order, without its ends.
std::vector<size_t> FindCorners(const TInkWay& vWay, double dTolerance);

/// The direction and the place of a way at one of its points, whole path units.
struct TWayTangent {
    TInkVector pt;
    TInkVector direction; ///< forward, a unit
};

/// Found by a parabola through the largest surroundings that follow one, no farther than the points
/// `idxFirst` and `idxLast`, which may be `idx` itself: there the direction is that of one side.
TWayTangent TangentAt(const TInkWay& vWay, size_t idx, size_t idxFirst, size_t idxLast, double dTolerance);
