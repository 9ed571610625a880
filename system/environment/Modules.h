// Lookup of the modules that are loaded in this process.
#pragma once

#include "core/Platform/Files.h"

/// The modules here carry no version resource, so bResource is always false.
class CModules : public IModules {
public:
    TModuleInfo GetProgram() override;
    /// Ignores case, a leading "lib" and a trailing ".so" with version numbers.
    TModuleInfo GetLibrary(const std::wstring& strName) override;
};
