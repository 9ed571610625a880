// Places on the edge of the area that a way's discs sweep.
#pragma once

#include "core/PathFit/InkArea.h"

/// A place of the edge beside a point of the way.
struct TInkEdge {
    TInkVector pt;
    size_t idx;
    bool bLeft;
};

/// Places along both sides of the way and around its ends, about a tolerance apart: those on the left in the
/// order of the way's points, then those on the right. None lies deeper in the area than a tenth of the
/// tolerance.
std::vector<TInkEdge> FindInkEdges(const TInkWay& vWay, const CInkArea& area, double dTolerance);
