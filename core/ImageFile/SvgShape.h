// A path's outlines as shapes of a format that adds their windings.
//
// Outlines that we fill together are one shape: none takes anything away from another. A format that fills
// by the sum of all windings leaves a hole where one outline runs round a place forwards and another
// backwards, as the folds of a stroke that is wider than its bend do.
#pragma once

#include "core/Bezier/Bezier.h"

#include <vector>

/// Closed curves that may be filled as one, by the sum of their windings.
using TSvgShape = std::vector<TPolyBezier>;

/// Groups of the outlines that together fill, on a canvas of that size, what the outlines fill as one shape:
/// as few as possible, for where edges of two groups lie on each other a seam may show. Outlines that add
/// nothing to those before them are left out.
std::vector<TSvgShape> GroupOutlines(const std::vector<TPolyBezier>& vOutlines, CSize szCanvas);
