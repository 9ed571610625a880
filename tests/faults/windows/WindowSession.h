// A session in real windows in which one allocation fails.
#pragma once

#include "tests/faults/Played.h"

/// Draws, types, opens, arranges and closes by Qt's own events. Allocation number `uAllocation` of the
/// program's own code fails, counted from 1; 0 lets none fail.
TPlayed PlayInWindows(uint64_t uAllocation);
