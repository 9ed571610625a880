// A session that runs out of memory while it starts.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uFail` fails, counted from 1 from before the session to its first step; 0 for none.
/// Another session with enough memory follows.
TPlayed PlayWithFailingStart(uint64_t uFail);
