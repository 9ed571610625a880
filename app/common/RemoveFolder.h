// Removes temporary folders.
#pragma once

#include <filesystem>

/// Removes a folder with everything in it. Where files stay until the last program closes them, as those of a
/// process that has just ended, it waits for up to a second; a failure is not reported.
void RemoveFolder(const std::filesystem::path& path);
