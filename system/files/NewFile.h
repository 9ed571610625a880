// A new file that replaces another one when it is complete.
#pragma once

#include "system/files/Descriptor.h"

#include <filesystem>
#include <string_view>

#include <sys/types.h>

/// Lies beside the file to be replaced, under a short name of its own. Removed unless it replaced it.
class CNewFile : boost::noncopyable {
public:
    /// Creates the file; the process's mask and the folder may reduce the rights `mode`.
    CNewFile(const std::filesystem::path& path, mode_t mode);
    ~CNewFile();

    bool IsOpen() const { return m_fd >= 0; }
    int GetHandle() const { return m_fd; }
    /// Appends the bytes. Returns false when not all of them could be written.
    bool Write(std::string_view strBytes);
    /// Flushes the file to the disk and renames it over the other.
    bool TakePlace();
    /// The errno value of the first failure, 0 for none.
    int GetError() const { return m_nError; }

private:
    bool Fail();

    const std::filesystem::path m_path;
    std::filesystem::path m_pathNew; ///< empty when there is nothing to remove
    CDescriptor m_fd;
    int m_nError = 0;
};
