// A session in real windows that runs out of memory while it starts.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uAllocation` of the program's own code fails, counted from 1 from before the windows'
/// platform to the session's first step; 0 for none. Another session with enough memory follows.
TPlayed PlayStartInWindows(uint64_t uAllocation);
