// Sessions with one failure are played in separate processes, which may crash or hang.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

/// The result of a session with one failure.
struct TPlayed {
    /// Errors: an aborted session, a box with another text, a document that undo does not restore to its
    /// beginning, that differs from its file, or that cannot be saved. Empty for none.
    std::string strWrong;
    std::string strEnd;  ///< the document's final state
    bool bTold = false;  ///< an error box was shown, or a step raised what a box would report
    uint64_t uCount = 0; ///< number of operations that could have failed
};

/// Plays once without a fault, then with each possible fault, counted from 1, or with about `uSteps` of
/// them. Expects no error, and a report to the user when the result differs. VELLUM_FAULTS=all plays every
/// fault, "7" only the seventh.
void ExpectSurvival(uint64_t uSteps, const std::function<TPlayed(uint64_t uFault)>& fnPlay);
