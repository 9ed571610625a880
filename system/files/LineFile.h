// A text file that grows line by line.
#pragma once

#include "core/Base/FileFailure.h"

#include <boost/noncopyable.hpp>

#include <filesystem>
#include <string_view>

/// Written lines stay in the file even if this process crashes.
class CLineFile : boost::noncopyable {
public:
    /// Starts a new file; the old one is renamed to its name with "~" appended.
    explicit CLineFile(const std::filesystem::path& path);
    ~CLineFile();

    bool IsOpen() const { return m_nFile >= 0; }
    /// The reason why it is not open; undefined for an open file.
    EFileFailure GetFailure() const { return m_failure; }
    /// Adds a line with its line end. When it cannot be written, returns false and leaves no part of it.
    bool Write(std::string_view strLine);

private:
    int m_nFile = -1;
    EFileFailure m_failure = EFileFailure::Unknown;
};
