// The irregular hand: random widths along a stroke.
#pragma once

#include "core/PathOutline/Outline.h"

/// The width points that replace the given ones: one at each sample of each segment, between the given ones
/// and the ends' own widths, with noise that is reduced at thin places. `source` has a segment and a wave;
/// `vLengths` are the lengths of its segments. The noise is the same at each call, so that a drag does not
/// flicker.
std::vector<TOutlineWidth> WaveWidths(const TOutlineSource& source, const std::vector<uint32_t>& vLengths);

/// The number of width points that WaveWidths makes.
uint64_t CountWaveWidths(const TOutlineSource& source);
