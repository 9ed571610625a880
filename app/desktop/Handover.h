// The message by which a second start passes its files to the running instance.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Longest message, in bytes; a command line is shorter.
constexpr size_t MAX_HANDOVER = 8 << 20;

/// The running instance's greeting, and its confirmation when it has the files.
constexpr std::string_view HANDOVER_GREETING = "vellumcraft 1\n";
constexpr std::string_view HANDOVER_THANKS = "taken\n";

/// Stands among the paths for a new document. No absolute path is like it.
constexpr std::string_view NEW_DOCUMENT = "new";

/// Begins the first entry if the desktop gave the second start a token by which the window may come to the
/// front.
constexpr std::string_view ACTIVATION = "activation ";

/// The entries for these paths and a token, which is empty for none.
std::vector<std::string> WithActivation(const std::vector<std::string>& vPaths, const std::string& strToken);

/// The message: the length of the rest as eight hexadecimal digits, then each path with a zero byte after
/// it. A path may hold any other byte.
std::string PackPaths(const std::vector<std::string>& vPaths);

/// True when `strBytes` is a whole message, or can no longer become one.
bool IsHandoverWhole(std::string_view strBytes);

/// The paths; none means only to activate the window. nullopt for anything that PackPaths does not make of
/// absolute paths, NEW_DOCUMENT and a token.
std::optional<std::vector<std::string>> UnpackPaths(std::string_view strBytes);
