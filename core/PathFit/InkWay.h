// The discs of a line that the fit looks at: without what others cover and what lies too near to matter.
#pragma once

#include "core/PathFit/InkLine.h"
#include "core/PathFit/InkVector.h"

#include <span>
#include <vector>

/// A place of the centre line.
struct TWayPoint {
    TInkVector pt;
    double dHalf;
    double dAlpha;
    double dLength = 0; ///< along the way, from its first point
    double dShare = 1;  ///< of the tolerance, for the width: less near faults of an outline
    double dOff = 0;    ///< how far the line's discs that were left out before this point may stand out
    TInkVector left{};  ///< the unit direction to the left of the way
    double dLeft = 0;   ///< how far the edge is to the left, by the discs around the point
    double dRight = 0;  ///< and to the right
    bool bSure = false; ///< nothing of the way around it covers its edges

    /// The half-width across the way: where discs grow it is more than their radius.
    double GetWide() const { return (dLeft + dRight) / 2; }
};

using TInkWay = std::vector<TWayPoint>;

/// From so many points on a second thread saves more time than its start takes.
constexpr size_t POINTS_FOR_THREADS = 500;

/// The way of a line: dots and dwelling become one point; discs at an end that another one covers are left
/// out, so an end shows its real half-width, and so is a hook there smaller than the tolerance. Points that
/// lie nearly on a straight line are left out, and long stretches between points divided. Ends too thin to be
/// seen are left out; empty for a line of which nothing can be seen.
TInkWay MakeInkWay(std::span<const TInkDisc> vLine, double dTolerance);

/// Sets the lengths and the sides anew.
void MeasureWay(TInkWay& vWay, double dTolerance);
/// The same for the lengths alone, and for a point's sides by the lengths.
void MeasureLengths(TInkWay& vWay);
void MeasureSides(TInkWay& vWay, size_t idx, double dTolerance);

/// Moves the points to the middle between their edges: the wider a line, the less its edges follow the tremor
/// of a hand.
void MoveToMiddle(TInkWay& vWay);
