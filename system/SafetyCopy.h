// A file is written in place while a whole copy of it lies in the folder "Recovery".
#pragma once

#include "core/Platform/Files.h"

#include <filesystem>

/// The copy of one file, found by the file's path. It looks like a snapshot of a session that has only this
/// one, so that the next start offers it if this process ends before the file is whole.
class CSafetyCopy {
public:
    /// Without a folder for application data there is no copy.
    CSafetyCopy(const std::filesystem::path& path, ILocations& locations);

    /// Fills the copy, then writes it over the file, which exists and may be written, then drops it. The file
    /// is untouched on any failure but HalfWritten, after which the copy stays.
    CFileOutcome WriteOver(const TFillBytes& fnFill);
    /// Removes what is left of an earlier attempt; for after the file has become whole in another way.
    void Drop();

private:
    CFileOutcome Keep(const TFillBytes& fnFill);

    const std::filesystem::path m_path;
    ILocations& m_locations;
    std::filesystem::path m_pathSession; ///< empty without a folder
    std::filesystem::path m_pathCopy, m_pathNote;
};
