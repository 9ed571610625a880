// The irregular hand: random widths along a stroke.
#pragma once

#include "core/PathOutline/Outline.h"

/// The width points that replace the given ones: one at each sample of each segment, between the given ones
/// and the ends' own widths, with noise that is reduced at thin places. `source` has a segment and a wave.
/// The noise is the same at each call, so that a drag does not flicker.
std::vector<TOutlineWidth> WaveWidths(const TOutlineSource& source);

/// The number of width points that WaveWidths makes.
uint64_t CountWaveWidths(const TOutlineSource& source);
