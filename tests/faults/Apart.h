// Sessions with faults are played in processes of their own, which may crash or hang.
#pragma once

#include "tests/faults/Played.h"

#include <functional>

/// Plays once without a fault, then with each that there may be, or with about `uSteps` of them, and expects
/// that nothing is wrong and that the user was told when the end is not the same. VELLUM_FAULTS=all plays
/// every one, "7" the seventh alone.
void ExpectSurvival(uint64_t uSteps, const std::function<TPlayed(uint64_t uFault)>& fnPlay);
