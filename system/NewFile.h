// A file on its way to take another's place.
#pragma once

#include "system/Descriptor.h"

#include <filesystem>
#include <string_view>

#include <sys/types.h>

/// Lies beside the file that it is to replace, under a short name of its own, and is removed unless it took
/// the other's place.
class CNewFile : boost::noncopyable {
public:
    /// Makes the file, with rights that the process's mask and the folder may lessen.
    CNewFile(const std::filesystem::path& path, mode_t mode);
    ~CNewFile();

    bool IsOpen() const { return m_fd >= 0; }
    int GetHandle() const { return m_fd; }
    /// Writes at the end; false when not all of it could be.
    bool Write(std::string_view strBytes);
    /// Flushes the file to the disk and renames it over the other.
    bool TakePlace();
    /// The error number of the first failure, 0 for none.
    int GetError() const { return m_nError; }

private:
    bool Fail();

    const std::filesystem::path m_path;
    std::filesystem::path m_pathNew; ///< empty when there is nothing to remove
    CDescriptor m_fd;
    int m_nError = 0;
};
