// A text file that grows line by line.
#pragma once

#include "core/Base/FileFailure.h"

#include <boost/noncopyable.hpp>

#include <filesystem>
#include <string_view>

/// What was written is in the file whatever becomes of this process.
class CLineFile : boost::noncopyable {
public:
    /// Begins the file anew; the old one stays beside it under its name with "~" behind.
    explicit CLineFile(const std::filesystem::path& path);
    ~CLineFile();

    bool IsOpen() const { return m_nFile >= 0; }
    /// Why it is not open; means nothing for an open file.
    EFileFailure GetFailure() const { return m_failure; }
    /// Adds a line with its line end. False when it cannot be written, then it is not there in part either.
    bool Write(std::string_view strLine);

private:
    int m_nFile = -1;
    EFileFailure m_failure = EFileFailure::Unknown;
};
