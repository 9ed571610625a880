#include "system/files/LineFile.h"

#include "system/files/FileErrors.h"

namespace {

namespace fs = std::filesystem;

// Renames an older file, so that it is not lost.
const fs::path& PutAside(const fs::path& path) {
    std::error_code error;
    if (fs::is_regular_file(path, error)) fs::rename(path, fs::path(path) += "~", error);
    return path;
}

} // namespace

CLineFile::CLineFile(const fs::path& path) : m_file(PutAside(path), COpenFile::EAccess::Append) {
    if (!IsOpen()) m_failure = WriteFailure(LastFileError());
}

bool CLineFile::Write(std::string_view strLine) {
    const auto uBefore = IsOpen() ? m_file.GetSize() : std::nullopt;
    if (!uBefore) return false;
    if (m_file.Write(strLine)) return true;
    // The line is incomplete: remove what has been written of it.
    m_file.SetSize(*uBefore);
    return false;
}
