// A temporary folder of a test.
#pragma once

#include "core/Base/Text.h"
#include "system/environment/Locations.h"
#include "system/environment/Variables.h"
#include "system/files/FilePath.h"
#include "system/files/FileStore.h"
#include "system/files/PrivateFolder.h"
#include <cstdlib>
#include <filesystem>
#include <string>

class CTempFolder {
public:
    CTempFolder() : m_path(MakeTempFolder("vellum-")) {}
    ~CTempFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    std::filesystem::path File(const std::string& strName) const { return m_path / PathOf(strName); }
    const std::filesystem::path& GetPath() const { return m_path; }

private:
    const std::filesystem::path m_path;
};

/// The same, set as the folder of the program's settings.
struct CTestSettings : CTempFolder {
    CTestSettings() { SetVariable(CLocations::APP_DATA_VARIABLE, Utf8Of(GetPath())); }
    ~CTestSettings() { SetVariable(CLocations::APP_DATA_VARIABLE, {}); }
};
