// The result of a session with one failure.
#pragma once

#include <cstdint>
#include <string>

struct TPlayed {
    /// Errors: an aborted session, a box with another text, a document that undo does not restore to its
    /// beginning, that differs from its file, or that cannot be saved. Empty for none.
    std::string strWrong;
    std::string strEnd;  ///< the document's final state
    bool bTold = false;  ///< an error box was shown, or a step raised what a box would report
    uint64_t uCount = 0; ///< number of operations that could have failed
};
