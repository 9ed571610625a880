// The centre line of a stroke: few cubic curves through a way, smooth at their joints but for its corners.
#pragma once

#include "core/PathFit/CurveFit.h"

/// A curve of the centre line and the points of the way that it stands for; a curve that only turns at a
/// corner stands for none but that.
struct TCentreCurve {
    TInkCubic cubic;
    TWayRange range;
};

/// The curves of a way of at least two points, one behind the other. `dTolerance` is that of the whole fit.
/// Uses up to `nThreads` threads; the result is the same with any number.
std::vector<TCentreCurve> FitCentre(const TInkWay& vWay, double dTolerance, size_t nThreads);

/// Replaces a curve by two that meet in the middle of its points; leaves one that stands for too few.
void DivideCurve(std::vector<TCentreCurve>& vCurves, size_t idx, const TInkWay& vWay, double dTolerance);
