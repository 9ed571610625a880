// A session in real windows that has no memory for a part of its beginning.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uAllocation` of the program's own code fails, counted from 1 from before the windows'
/// platform to the session's first step; 0 lets none fail. Another session follows, for which there is
/// memory.
TPlayed PlayStartInWindows(uint64_t uAllocation);
