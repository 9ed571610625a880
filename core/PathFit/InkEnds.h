// The ends of a fitted stroke, by what the ends of the way look like.
#pragma once

#include "core/PathFit/InkFit.h"
#include "core/PathFit/InkWay.h"

/// True for an end that tapers: nearly a point, while the line is wider elsewhere.
bool IsTapering(const TInkWay& vWay, bool bBegin, double dTolerance);

/// Lengthens a way to the points in which tapering ends meet the edge of their last disc, nearly.
void ExtendTapers(TInkWay& vWay, bool bBegin, bool bEnd, double dTolerance);

/// The multiple of the half-width `uWidth` by which a round end protrudes so that it meets the disc best.
/// `ptAnchor` is the path's end, `outward` its direction out of the stroke.
uint32_t GrowOf(const TWayPoint& disc, TInkVector ptAnchor, TInkVector outward, uint32_t uWidth);

/// A dot: two anchors beside the disc's middle and round ends.
TFittedInk MakeDot(const TWayPoint& disc);
