// A new file that replaces another one when it is complete.
#pragma once

#include "system/files/OpenFile.h"

#include <filesystem>
#include <string_view>

/// Lies beside the file to be replaced, under a short name of its own. Removed unless it replaced it.
class CNewFile : boost::noncopyable {
public:
    /// Creates the file. `bReplaces`: there is an old one, whose rights the new one gets as far as the user
    /// may.
    CNewFile(const std::filesystem::path& path, bool bReplaces);
    ~CNewFile();

    bool IsOpen() const { return m_file.IsOpen(); }
    /// Appends the bytes. Returns false when not all of them could be written.
    bool Write(std::string_view strBytes);
    /// Flushes the file to the disk and puts it in the other's place.
    bool TakePlace();
    /// The system's number of the first failure, 0 for none.
    int GetError() const { return m_nError; }

private:
    bool Fail();

    const std::filesystem::path m_path;
    const bool m_bReplaces;
    std::filesystem::path m_pathNew; ///< empty when there is nothing to remove
    COpenFile m_file;
    int m_nError = 0;
};
