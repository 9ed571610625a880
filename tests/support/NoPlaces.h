// Locations without real folders; the settings are in "/settings".
#pragma once

#include "core/Platform/Files.h"
#include "core/Platform/System.h"

struct CNoPlaces : ILocations, IModules {
    std::wstring GetAppData() override { return m_strAppData; }
    void MakeFolder(const std::wstring& strPath) override { m_strMade = strPath; }
    TModuleInfo GetProgram() override { return {}; }
    TModuleInfo GetLibrary(const std::wstring&) override { return {}; }

    std::wstring m_strAppData = L"/settings", m_strMade;
};
