// Settings of its own for a session that a script plays, so that it neither finds nor changes the user's.
#pragma once

#include <boost/noncopyable.hpp>

#include <filesystem>

/// A temporary settings folder that this process uses from now on. It goes with the object.
class CSettingsFolder : boost::noncopyable {
public:
    /// Raises std::runtime_error when no folder can be made.
    CSettingsFolder();
    ~CSettingsFolder();

private:
    std::filesystem::path m_pathFolder;
};
