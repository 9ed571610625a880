// The program, or the module in a host's process: start and exit.
#pragma once

#include "core/IniConfig/IniConfig.h"
#include "system/environment/Locations.h"
#include "system/files/FileStore.h"

#include <boost/noncopyable.hpp>

/// Created while the program or module is loaded, destroyed when the process exits (hosts keep the module
/// until then): the global switches are read and written at those moments.
class CModule : boost::noncopyable {
public:
    CModule();
    ~CModule();

    IFileStore& GetFiles() { return m_files; }
    ILocations& GetLocations() { return m_locations; }
    /// The settings store, cached.
    CIniConfig& GetConfig() { return m_config; }

private:
    CLocations m_locations;
    CFileStore m_files{&m_locations};
    CIniConfig m_config{CIniConfig::FindPath(m_locations), m_files};
};

extern CModule g_Module;
