// A text file that grows line by line.
#pragma once

#include "core/Base/FileFailure.h"
#include "system/files/OpenFile.h"

/// Written lines stay in the file even if this process crashes.
class CLineFile : boost::noncopyable {
public:
    /// Starts a new file; the old one is renamed to its name with "~" appended.
    explicit CLineFile(const std::filesystem::path& path);

    bool IsOpen() const { return m_file.IsOpen(); }
    /// The reason why it is not open; undefined for an open file.
    EFileFailure GetFailure() const { return m_failure; }
    /// Adds a line with its line end. When it cannot be written, returns false and leaves no part of it.
    bool Write(std::string_view strLine);

private:
    COpenFile m_file;
    EFileFailure m_failure = EFileFailure::Unknown;
};
