// The message by which a second start hands its files to the instance that runs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Longest message, in bytes; a command line is shorter.
constexpr size_t MAX_HANDOVER = 8 << 20;

/// What the running instance says first, and what it says when it has the files.
constexpr std::string_view HANDOVER_GREETING = "vellumcraft 1\n";
constexpr std::string_view HANDOVER_THANKS = "taken\n";

/// The message: the length of what follows as eight hexadecimal digits, then each path with a zero byte
/// behind it. A path may hold any other byte.
std::string PackPaths(const std::vector<std::string>& vPaths);

/// True when `strBytes` holds a whole message, or can no longer become one.
bool IsHandoverWhole(std::string_view strBytes);

/// The paths, none to come to the front only. nullopt for anything that PackPaths does not make of absolute
/// paths.
std::optional<std::vector<std::string>> UnpackPaths(std::string_view strBytes);
