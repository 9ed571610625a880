// A session in real windows that has no memory for a part of its beginning.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uAllocation` of the program's own code fails, counted from 1 from before the windows'
/// platform to the session's first step; 0 lets none fail. Another session follows, for which there is
/// memory.
TPlayed PlayStartInWindows(uint64_t uAllocation);

/// True when a session in real windows begins though one allocation fails in its scope. `bLeft` tells whether
/// the application still looks as if one were running.
bool BeginInWindows(uint64_t uAllocation, bool& bLeft);
