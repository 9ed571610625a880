// A session in real windows with one failing allocation.
#pragma once

#include "tests/faults/Played.h"

/// Draws, types, opens, arranges and closes by Qt's own events. Allocation number `uAllocation` of the
/// program's own code fails, counted from 1; 0 for none.
TPlayed PlayInWindows(uint64_t uAllocation);
