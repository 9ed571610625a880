// A text file that grows line by line.
#pragma once

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
    /// Adds a line with its line end. False when it cannot be written, then it is not there in part either.
    bool Write(std::string_view strLine);

private:
    int m_nFile = -1;
};
