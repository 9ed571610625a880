// Cutting a stroke's sides across.
#pragma once

#include "core/PathOutline/OutlineSide.h"

/// A stretch of a stroke: the left side's part in the path's direction, the right side's against it. A part
/// of length 0 repeats its point, so that an end there keeps its tip.
struct TStretch {
    TOutlinePoints vLeft;
    TOutlinePoints vRight;
};

/// A cut at its position, in outline units.
struct TPlacedCut {
    uint32_t t;
    CPoint position;
    CPoint tangent;                  ///< of the centre line
    int nAngle;                      ///< degrees
    std::array<uint32_t, 2> auWidth; ///< the stroke's half-widths there, without a wave
    uint32_t tFirst;                 ///< of the ribs that it goes through, known when the sides are cut
    uint32_t tLast;
};

/// The cuts that have an effect: clamped to the path, sorted; two at one `t` cancel each other.
std::vector<TOutlineCut> EffectiveCuts(const TOutlineSource& source);

/// The cuts of a stroke with an anchor; the widths are eased between the width points around.
std::vector<TPlacedCut> PlaceCuts(const TOutlineSource& source, const CCentreLine& line);

/// The stretches from one cut to the next, from the path's start on. A cut that misses a side uses that
/// side's point at its `t`. A side of one point is not cut. Sets the cuts' `tFirst` and `tLast`.
std::vector<TStretch> CutSides(const TSide& left, const TSide& right, std::vector<TPlacedCut>& vCuts);

/// A cut's line; the stroke behind the cut lies on its inner side.
TEndLine LineOf(const TPlacedCut& cut);
