// Command line of the desktop program.
#pragma once

#include <string>
#include <vector>

extern const char DESKTOP_USAGE[];

struct TDesktopArguments {
    std::vector<std::string> vFiles; ///< absolute paths as Utf8Of returns them; NEW_DOCUMENT
    bool bNewWindow = false;         ///< start a new instance
    std::string strRecord;           ///< absolute path, empty for no record
    bool bHelp = false;
};

/// Parses the command line without the program's name. Raises usage_error for an unknown option and one
/// without its file.
TDesktopArguments ParseDesktopArguments(const std::vector<std::string>& vArguments);
