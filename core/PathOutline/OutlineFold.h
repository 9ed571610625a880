// The areas that a stroke's sides cancel where it is wider than its bend.
#pragma once

#include "core/PathOutline/OutlineSide.h"

/// The area between two positions of the centre line, from side to side.
struct TFold {
    uint32_t tBegin; ///< both the same at an anchor
    uint32_t tEnd;
    TOutlinePoints vPoints; ///< closed; may cross itself
    bool bStraight;         ///< without handles, so that it can be clipped
};

/// The inner side of a bend that is tighter than the stroke's width runs backwards, and its winding cancels
/// the area below. The folds are all areas that such places cover by themselves.
std::vector<TFold> FindFolds(const TSide& left, const TSide& right);
