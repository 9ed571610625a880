// The irregular hand: random widths along a stroke.
#pragma once

#include "core/PathOutline/Outline.h"

/// The width points in whose place the wave's stand: one at each sample of each segment, between the given
/// ones and the ends' own widths, with noise that thin places get less of. `source` has a segment and a wave.
/// The noise is the same at each call, so that a drag does not flicker.
std::vector<TOutlineWidth> WaveWidths(const TOutlineSource& source);

/// How many width points WaveWidths makes.
uint64_t CountWaveWidths(const TOutlineSource& source);
