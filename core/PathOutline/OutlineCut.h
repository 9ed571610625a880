// Cutting a stroke's sides across.
#pragma once

#include "core/PathOutline/Outline.h"

/// A stretch of a stroke: the left side's part in the path's direction, the right side's against it.
struct TStretch {
    TOutlinePoints vLeft;
    TOutlinePoints vRight;
};

/// A cut where it lies, in outline units.
struct TPlacedCut {
    CPoint position;
    CPoint tangent;                  ///< of the centre line
    int nAngle;                      ///< degrees
    std::array<uint32_t, 2> auWidth; ///< the stroke's half-widths there, without a wave
};

/// The cuts of a stroke with an anchor; the widths are eased between the width points around.
std::vector<TPlacedCut> PlaceCuts(const TOutlineSource& source);

/// The stretches from one cut to the next, from the path's start on. A side that a cut misses is empty from
/// there on, and with it the cuts end.
std::vector<TStretch> CutSides(TOutlinePoints vLeft, TOutlinePoints vRight,
                               const std::vector<TPlacedCut>& vCuts);
