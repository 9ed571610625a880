// The small curve by which a stroke turns at a corner.
#pragma once

#include "core/PathFit/CurveFit.h"

/// A corner of a way with the unit directions before and behind it.
struct TInkCorner {
    TInkVector pt;
    TInkVector in;
    TInkVector out;
    double dHalf; ///< half-width of the line
};

/// True when the edges of the stroke, extended until they meet, stand out of the drawn round corner by at
/// most `dMost`: then one anchor is enough.
bool IsMitreEnough(const TInkCorner& corner, double dMost);

/// How far from the corner its turn may begin and end, in path units.
double TurnReach(const TInkCorner& corner, double dTolerance);

/// A curve of whole path units around the corner, beside which the outline stays within the tolerance of the
/// drawn one if that is possible; mostly nowhere farther from the corner than about twice `dReach`.
/// Builds at most `nBuilds` outlines.
TInkCubic TurnAt(const TInkCorner& corner, double dReach, double dTolerance, size_t nBuilds);
