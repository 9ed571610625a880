// Command line of the thumbnailer.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

extern const char THUMBNAIL_USAGE[];

struct TThumbnailArguments {
    std::filesystem::path pathIn;
    std::filesystem::path pathOut;
    int32_t nSide = 128; ///< 1 to MAX_THUMBNAIL_SIDE
    bool bVerbose = false;
    bool bHelp = false;
};

/// Parses the command line without the program's name. Raises usage_error.
TThumbnailArguments ParseThumbnailArguments(const std::vector<std::string>& vArguments);
