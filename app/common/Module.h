// A delivery of the application in its process: start and exit.
#pragma once

#include "app/common/ProcessSettings.h"
#include "core/IniConfig/IniConfig.h"
#include "system/environment/Locations.h"
#include "system/files/FileStore.h"

#include <boost/noncopyable.hpp>

/// One for a process. The constructor reads the global switches, the destructor writes them. Programs and the
/// module create it while they are loaded, so that it is destroyed when the process exits; hosts keep the
/// module until then.
class CModule : boost::noncopyable {
public:
    CModule();
    ~CModule();

    IFileStore& GetFiles() { return m_files; }
    ILocations& GetLocations() { return m_locations; }
    /// The settings store, cached.
    CIniConfig& GetConfig() { return m_config; }

private:
    CProcessSettings m_process;
    CLocations m_locations;
    CFileStore m_files{&m_locations};
    CIniConfig m_config{CIniConfig::FindPath(m_locations), m_files};
};
