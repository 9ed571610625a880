// Lookup of the manual's files.
#pragma once

#include <filesystem>
#include <string>

/// The folder with the manual's first page: `share/vellumcraft/manual` in a folder above `pathModule`,
/// where an installation and a build have it, else `vellumcraft/manual` in one of the folders
/// `strDataFolders`, which are parted by colons. Empty when it is in none.
std::filesystem::path FindManual(const std::filesystem::path& pathModule, const std::string& strDataFolders);
/// The same for the program or library that contains this code, and the desktop's data folders
/// ($XDG_DATA_DIRS).
std::filesystem::path FindManual();
