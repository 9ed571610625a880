// Processes a picture with the filter module, for programs that act as small hosts.
#pragma once

#include "host/PictureHost/PictureHost.h"

#include <filesystem>

class IFileStore;

struct TModuleCall {
    std::filesystem::path pathModule; ///< empty for the one beside the program
    std::filesystem::path pathScript; ///< empty for a session with the user
    bool bWindows = false;            ///< play the script in real windows
    std::filesystem::path pathRecord; ///< empty for no record
};

/// Runs one session over the host's picture. Raises std::runtime_error when the module cannot be loaded or
/// refuses, and with "FILE:LINE: reason" when its script fails. The module stays loaded.
void CallModule(CPictureHost& host, const TModuleCall& call, IFileStore& files);
