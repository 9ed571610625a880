// The program, or the module in a host's process: what happens when it is loaded and when it goes.
#pragma once

#include "core/IniConfig/IniConfig.h"
#include "system/FileStore.h"
#include "system/Locations.h"

#include <boost/noncopyable.hpp>

/// Made while the program or module is being loaded, destroyed when the process exits (hosts keep the module
/// until then): the global switches are read and written at those moments.
class CModule : boost::noncopyable {
public:
    CModule();
    ~CModule();

    IFileStore& GetFiles() { return m_files; }
    ILocations& GetLocations() { return m_locations; }
    /// The settings store, found once.
    CIniConfig& GetConfig() { return m_config; }

private:
    CLocations m_locations;
    CFileStore m_files{&m_locations};
    CIniConfig m_config{CIniConfig::FindPath(m_locations), m_files};
};

extern CModule g_Module;
