// Session scripts: JSON Lines, one object a line with one verb. Blank lines and lines that start with # are
// skipped. docs/session-scripts.md lists the verbs.
#pragma once

#include "session/ScriptValue.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class CPlayer;
class IFileStore;

/// What a line does when it is played. Raises step_failure or any exception of the application.
using TAction = std::function<void(CPlayer&)>;

/// What went wrong while a line was played.
struct step_failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// How a verb's lines stand among the others.
enum class EStepKind {
    Plain,
    Expects,  ///< may be about an error box of the line before
    Prepares, ///< at the head of a script: played before the session begins
    Replies,  ///< answers what the line before it opens
};

struct TStep {
    int nLine = 0; ///< from 1
    TAction fnPlay;
    EStepKind kind = EStepKind::Plain;
    std::string strPast = {}; ///< the line itself when it acts past the platform's seam, else empty
};

struct TScript {
    std::string strName; ///< as failures name it
    std::vector<TStep> vSteps;
};

/// Reads a whole script, every line of it, before anything is played. Raises script_error.
TScript ParseScript(std::string_view strBytes, const std::string& strName);

/// ParseScript of a file; also raises script_error when it cannot be read.
TScript ReadScript(const std::wstring& strPath, IFileStore& files);
