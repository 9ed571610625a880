// Writes a file in place, after a complete copy of it was saved in the folder "Recovery".
#pragma once

#include "core/Platform/Files.h"

#include <filesystem>

/// The copy of one file, identified by the file's path. It is stored as the only snapshot of a session, so
/// that the next start offers it if this process ends before the file is complete.
class CSafetyCopy {
public:
    /// Without a folder for application data there is no copy.
    CSafetyCopy(const std::filesystem::path& path, ILocations& locations);

    /// Fills the copy, writes it over the existing, writable file, then removes the copy. The file is
    /// unchanged after any failure except HalfWritten, which also keeps the copy.
    CFileOutcome WriteOver(const TFillBytes& fnFill);
    /// Removes the copy of an earlier attempt, after the file has been written in another way.
    void Drop();

private:
    CFileOutcome Keep(const TFillBytes& fnFill);

    const std::filesystem::path m_path;
    ILocations& m_locations;
    std::filesystem::path m_pathSession; ///< empty without a folder
    std::filesystem::path m_pathCopy, m_pathNote;
};
