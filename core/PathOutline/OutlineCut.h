// Cutting a stroke's sides across.
#pragma once

#include "core/PathOutline/Outline.h"

/// A stretch of a stroke: the left side's part in the path's direction, the right side's against it.
struct TStretch {
    TOutlinePoints vLeft;
    TOutlinePoints vRight;
};

/// The stretches from one cut to the next, from the path's start on. A side that a cut misses is empty from
/// there on, and with it the cuts end.
std::vector<TStretch> CutSides(TOutlinePoints vLeft, TOutlinePoints vRight,
                               const std::vector<TOutlineCut>& vCuts);
