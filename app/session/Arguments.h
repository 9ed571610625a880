// What the user asked the player of session scripts to do.
#pragma once

#include "app/common/CommandLine.h"

#include <filesystem>
#include <string>
#include <vector>

extern const char USAGE[];

struct TArguments {
    std::filesystem::path pathScript;
    std::filesystem::path pathIn;     ///< empty for a session of the desktop delivery
    std::filesystem::path pathOut;    ///< empty for nowhere
    std::filesystem::path pathModule; ///< empty for the one beside the program
    std::string strEach;              ///< pattern of a batch's pages, empty for no batch
    std::filesystem::path pathOutDir; ///< where a batch's results go
    unsigned uJobs = 0;               ///< processes at a time, 0 for one a processor
    bool bHelp = false;
};

/// Reads the command line without the program's name. Raises usage_error, also when the result would fall on
/// the picture.
TArguments ParseArguments(const std::vector<std::string>& vArguments);
