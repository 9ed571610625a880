// Sessions with faults are played in processes of their own, which may crash or hang.
#pragma once

#include "tests/faults/Played.h"

#include <functional>

/// Plays in a process of its own. How that one ended is told in `strWrong`.
TPlayed PlayApart(const std::function<TPlayed()>& fnPlay);

/// Plays once with each of `uCount` faults, or with about `uSteps` of them, and expects that nothing is wrong
/// and that a user was told when the end is not `whole`'s. VELLUM_FAULTS=all plays every one, "7" the seventh
/// alone.
void ExpectSurvival(uint64_t uCount, uint64_t uSteps, const TPlayed& whole,
                    const std::function<TPlayed(uint64_t uFault)>& fnPlay);
