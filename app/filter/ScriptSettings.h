// Settings of its own for a session that a script plays, so that it neither finds nor changes the user's.
#pragma once

#include "core/Platform/Files.h"

#include <boost/noncopyable.hpp>

#include <filesystem>
#include <string>

/// A temporary settings folder that this process uses from now on. It goes with the object.
class CScriptSettings : boost::noncopyable {
public:
    /// Names the script for the module, which must be loaded after this. Raises std::runtime_error when there
    /// is no such script or no folder can be made.
    CScriptSettings(const std::filesystem::path& pathScript, bool bWindows, IFileStore& files);
    ~CScriptSettings();

    /// What the module says went wrong with the script, empty when nothing did.
    std::string GetFailure() const;

private:
    IFileStore& m_files;
    std::filesystem::path m_pathFolder;
    std::wstring m_strStore;
};
