// Command line of the player of session scripts.
#pragma once

#include "app/common/CommandLine.h"

#include <filesystem>
#include <string>
#include <vector>

extern const char USAGE[];

struct TArguments {
    std::filesystem::path pathScript;
    std::filesystem::path pathIn;     ///< empty for a session of the desktop program
    std::filesystem::path pathOut;    ///< empty for no output
    std::filesystem::path pathModule; ///< empty for the one beside the program
    std::string strEach;              ///< pattern of a batch's pages, empty for no batch
    std::filesystem::path pathOutDir; ///< folder for a batch's results
    std::string strFormat;            ///< ending of a batch's results, empty for their pages' own
    unsigned uJobs = 0;               ///< number of parallel processes, 0 for one per processor
    bool bDesktop = false;            ///< a picture is opened by the desktop application, not by the filter
    bool bHelp = false;
};

/// Parses the command line without the program's name. Raises usage_error, also when the result would
/// overwrite the picture.
TArguments ParseArguments(const std::vector<std::string>& vArguments);
