// What the user asked the desktop program to do.
#pragma once

#include <string>
#include <vector>

extern const char DESKTOP_USAGE[];

struct TDesktopArguments {
    std::vector<std::string> vFiles; ///< absolute paths, in the bytes of the file system
    bool bNewWindow = false;         ///< an instance of its own
    std::string strRecord;           ///< absolute path, empty for no record
    bool bHelp = false;
};

/// Reads the command line without the program's name. Raises usage_error for an unknown option and one
/// without its file.
TDesktopArguments ParseDesktopArguments(const std::vector<std::string>& vArguments);
