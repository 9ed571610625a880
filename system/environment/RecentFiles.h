// The lists of recent documents on this system.
#pragma once

#include "core/Platform/RecentFiles.h"

#include <memory>

/// `files` outlives the result.
std::unique_ptr<IRecentFiles> MakeRecentFiles(IFileStore& files);
