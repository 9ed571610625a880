// A file that another program has asked for.
#pragma once

#include "core/Base/FileFailure.h"

#include <filesystem>
#include <string_view>

/// Replaces the file by these bytes. In a sandbox the file alone may be writable, not its folder: then it is
/// overwritten. After a failure there is no file, or it is as it was, or an overwritten one is empty.
CFileOutcome WriteOutput(const std::filesystem::path& path, std::string_view strBytes);
