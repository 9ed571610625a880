// Files by pattern and name.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The existing files, sorted by name. "*" stands for any characters but a separator, "?" for one. On Windows
/// they may stand in the last component alone; elsewhere in each, and "[ab]" for one of several characters.
std::vector<std::filesystem::path> FindFiles(const std::string& strPattern);

/// A form of a file's name that is the same for all names that mean the same file of a folder.
std::filesystem::path FoldName(const std::filesystem::path& name);
