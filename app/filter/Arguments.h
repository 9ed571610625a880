// Command line of the filter program.
#pragma once

#include "app/common/CommandLine.h"

#include <filesystem>
#include <string>
#include <vector>

extern const char USAGE[];

struct TArguments {
    std::filesystem::path pathIn;
    std::filesystem::path pathOut;                ///< as given, else derived from pathIn
    std::vector<std::filesystem::path> vAlphas;   ///< further channels
    std::vector<std::filesystem::path> vAlphaOut; ///< their output files, one for each
    std::filesystem::path pathModule;             ///< empty for the one beside the program
    std::filesystem::path pathScript;             ///< empty for a session with the user
    std::filesystem::path pathRecord;             ///< empty for no record
    bool bWindows = false;                        ///< play the script in real windows
    bool bHelp = false;
};

/// Parses the command line without the program's name. Raises usage_error, also when an output would
/// overwrite an input without permission.
TArguments ParseArguments(const std::vector<std::string>& vArguments);
