// Lookup of the modules that are loaded in this process.
#pragma once

#include "core/Platform/Files.h"

#include <filesystem>

/// Only modules of Windows carry a version resource; elsewhere bResource is always false.
class CModules : public IModules {
public:
    TModuleInfo GetProgram() override;
    /// Ignores case, the ending ".dll", a leading "lib" and a trailing ".so" with version numbers.
    TModuleInfo GetLibrary(const std::wstring& strName) override;
    /// The program or library that contains this code; empty when the system does not tell.
    static std::filesystem::path FindOwnFile();
};
