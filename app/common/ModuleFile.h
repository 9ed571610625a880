// The file of the filter module.
#pragma once

#include "host/Abi/Types.h"

#include <filesystem>

/// The place where an installation has the module, else where the build does: beside the program.
std::filesystem::path FindModule();

/// Loads a module and finds its export. Raises std::runtime_error with the system's reason. It stays loaded
/// until the process exits, when it saves its switches.
hostabi::PluginMainProc LoadModule(const std::filesystem::path& path);
