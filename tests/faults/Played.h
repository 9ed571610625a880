// What is told of a session in which one thing failed.
#pragma once

#include <cstdint>
#include <string>

struct TPlayed {
    /// What should not be: a session that broke off, a box of another text, a document that undo does not
    /// lead back to its beginning, that differs from its file, or that does not survive saving. Empty when
    /// all is well.
    std::string strWrong;
    std::string strEnd;  ///< the document that was drawn in, in the end
    bool bTold = false;  ///< an error box was shown, or a step of the script raised what a box would tell
    uint64_t uCount = 0; ///< how much could have failed
};
