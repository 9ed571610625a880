// The line that a stroke draws, as discs along its centre.
#pragma once

#include "core/RasterStroke/BrushParam.h"
#include "core/RasterStroke/CtlPoint.h"

#include <vector>

/// A place of the line as it is drawn: a disc. Distances are canvas eighths, which are path units.
struct TInkDisc {
    double x;
    double y;
    double dHalf;  ///< radius of what is covered
    double dAlpha; ///< 0 to 255
};

/// The line through a stroke's control points as CRasterStroke draws it, from its first stamp on: smoothed by
/// `param.CurveStrength`, STEPS_PER_POINT discs a point, without wobble and spray. The points are those of
/// CRasterStroke::GetPoints, faded in, and the edge is hard, without the final one. Stretches without
/// pressure at either end, where nothing is drawn, are left out; empty when no point has pressure.
std::vector<TInkDisc> DrawnLine(const std::vector<TCtlPoint>& vPoints, const TBrushParam& param);
