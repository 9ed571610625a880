// A session that has no memory for a part of its beginning.
#pragma once

#include "tests/faults/Played.h"

/// Allocation number `uFail` fails, counted from 1 from before the session to its first step; 0 lets none
/// fail. Another session follows, for which there is memory.
TPlayed PlayWithFailingStart(uint64_t uFail);
