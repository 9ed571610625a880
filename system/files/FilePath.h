// Paths between the application's texts and the standard library, whose own conversions depend on the system.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// The path that a text of the application names.
std::filesystem::path PathOf(std::wstring_view strPath);
/// The same for the UTF-8 bytes of a command line or a file.
std::filesystem::path PathOf(std::string_view strPath);

/// A path, or a part of one, as text of the application.
std::wstring TextOf(const std::filesystem::path& path);
/// The same as UTF-8. Where the system's paths are bytes these are unchanged, whatever they encode.
std::string Utf8Of(const std::filesystem::path& path);
