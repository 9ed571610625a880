// Session scripts: JSON Lines, one object a line with one verb. Blank lines and lines that start with # are
// skipped. docs/session-scripts.md lists the verbs.
#pragma once

#include "session/seam/ScriptValue.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class CPlayer;
class IFileStore;

/// The action that a line performs. Raises step_failure or any exception of the application.
using TAction = std::function<void(CPlayer&)>;

/// A failure while a line was played.
struct step_failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The role of a verb's lines in the order of a script.
enum class EStepKind {
    Plain,
    Expects,  ///< may refer to an error box of the line before
    Prepares, ///< at the head of a script: played before the session begins
    Replies,  ///< answers a window that the line before it opens
    Cancels,  ///< cancels the long work that the line before it begins
};

struct TStep {
    int nLine = 0; ///< from 1
    TAction fnPlay;
    EStepKind kind = EStepKind::Plain;
    std::string strPast = {}; ///< the line itself when it bypasses the platform interface, else empty
};

struct TScript {
    std::string strName; ///< the name in failure messages
    std::vector<TStep> vSteps;
};

/// Parses a whole script before anything is played. Raises script_error.
TScript ParseScript(std::string_view strBytes, const std::string& strName);

/// ParseScript for a file; also raises script_error when it cannot be read.
TScript ReadScript(const std::wstring& strPath, IFileStore& files);
