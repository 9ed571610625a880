// Folders for application data.
#pragma once

#include "core/Platform/Files.h"

/// The system is asked at each call.
class CLocations : public ILocations {
public:
    /// The variable that names another folder for application data when it is an absolute path.
    static const char* const APP_DATA_VARIABLE;

    /// On Windows the user's roaming application data, else ".config" in $HOME, else in the home folder of
    /// the user database.
    std::wstring GetAppData() override;
    /// Creates missing parent folders too; only the user has access to new ones.
    void MakeFolder(const std::wstring& strPath) override;
};
