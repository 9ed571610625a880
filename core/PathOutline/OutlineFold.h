// The ground that a stroke's sides take away from each other where it is wider than its bend.
#pragma once

#include "core/PathOutline/OutlineSide.h"

/// The ground between two places of the centre line, from side to side.
struct TFold {
    uint32_t tBegin; ///< both the same at an anchor
    uint32_t tEnd;
    TOutlinePoints vPoints; ///< closed; may cross itself
    bool bStraight;         ///< without handles, so that it can be clipped
};

/// The inner side of a bend that is tighter than the stroke is wide runs backwards, and what its outline
/// winds around there cancels what lies under it. The folds are all the ground that such places cover by
/// themselves.
std::vector<TFold> FindFolds(const TSide& left, const TSide& right);
