// Sessions with faults are played in separate processes, which may crash or hang.
#pragma once

#include "tests/faults/Played.h"

#include <functional>

/// Plays once without a fault, then with each possible fault, or with about `uSteps` of them. Expects no
/// error, and a report to the user when the result differs. VELLUM_FAULTS=all plays every fault, "7" only
/// the seventh.
void ExpectSurvival(uint64_t uSteps, const std::function<TPlayed(uint64_t uFault)>& fnPlay);
