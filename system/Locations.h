// Where the user keeps application data.
#pragma once

#include "core/Platform/Files.h"

/// The environment is read at each call.
class CLocations : public ILocations {
public:
    /// $XDG_CONFIG_HOME when it is an absolute path, else ".config" in $HOME, else in the home folder that
    /// the user database knows.
    std::wstring GetAppData() override;
    /// Makes the folders above it too; new ones are the user's alone.
    void MakeFolder(const std::wstring& strPath) override;
};
