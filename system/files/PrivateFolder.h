// Folders that other users cannot look into.
#pragma once

#include <filesystem>
#include <string>

/// Makes a new folder whose name begins with `strPrefix` among the temporary files, for this user alone.
/// Raises std::runtime_error.
std::filesystem::path MakeTempFolder(const std::string& strPrefix);

/// Gives access to an existing folder to this user alone, as far as the system allows it.
void MakePrivate(const std::filesystem::path& pathFolder);
