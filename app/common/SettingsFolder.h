// Separate settings for a session that a script plays, so that it neither reads nor changes the user's.
#pragma once

#include <boost/noncopyable.hpp>

#include <filesystem>

/// A temporary settings folder that this process uses from now on. The destructor removes it.
class CSettingsFolder : boost::noncopyable {
public:
    /// Raises std::runtime_error when no folder can be created.
    CSettingsFolder();
    ~CSettingsFolder();

private:
    std::filesystem::path m_pathFolder;
};
