// Runs a program in another process.
#pragma once

#include <filesystem>
#include <string>

/// Runs a program inside a folder, with settings and temporary files there (".config", ".tmp") and without a
/// display, where the system has programs without one. The arguments are parted by spaces but inside single
/// quotes. Returns its exit code, -1 when it crashed, and its output in `strSaid`.
int RunInFolder(const std::filesystem::path& folder, const std::string& strProgram,
                const std::string& strArguments, std::string& strSaid);
