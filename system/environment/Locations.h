// Folders for application data.
#pragma once

#include "core/Platform/Files.h"

/// The environment is read at each call.
class CLocations : public ILocations {
public:
    /// $XDG_CONFIG_HOME when it is an absolute path, else ".config" in $HOME, else in the home folder of
    /// the user database.
    std::wstring GetAppData() override;
    /// The same by $XDG_DATA_HOME, else ".local/share": the folder for data that programs share.
    std::wstring GetUserData();
    /// Creates missing parent folders too; only the user has access to new ones.
    void MakeFolder(const std::wstring& strPath) override;
};
