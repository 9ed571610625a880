// The centre line of a stroke: few cubic curves through a way, smooth at their joints but for its corners.
#pragma once

#include "core/PathFit/CurveFit.h"

#include <span>

/// A curve of the centre line and the points of the way that it stands for; a curve that only turns at a
/// corner stands for none but that.
struct TCentreCurve {
    TInkCubic cubic;
    TWayRange range;

    bool IsTurn() const { return range.idxFirst == range.idxLast; }
    friend bool operator==(const TCentreCurve&, const TCentreCurve&) = default;
};

/// The curves of a way of at least two points, one behind the other. `dTolerance` is that of the whole fit.
/// Uses up to `nThreads` threads; the result is the same with any number.
std::vector<TCentreCurve> FitCentre(const TInkWay& vWay, double dTolerance, size_t nThreads);

/// The two curves that meet in the middle of a curve's points; nullopt when it stands for too few.
std::optional<std::array<TCentreCurve, 2>> DivideCurve(const TCentreCurve& curve, const TInkWay& vWay,
                                                       double dTolerance);

/// Other curves for the same points between the same ends, others for each `nTry`: they keep nearer to the
/// points, and turns reach less far or farther. Neither the first nor the last curve may be a turn.
std::vector<TCentreCurve> RefitCurves(std::span<const TCentreCurve> vCurves, const TInkWay& vWay,
                                      double dTolerance, int nTry);
