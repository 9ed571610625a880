// What is loaded in this process.
#pragma once

#include "core/Platform/Files.h"

/// The modules here carry no version resource, so bResource is always false.
class CModules : public IModules {
public:
    TModuleInfo GetProgram() override;
    /// Names are compared without regard to case, to a "lib" before and ".so" with version numbers behind.
    TModuleInfo GetLibrary(const std::wstring& strName) override;
};
