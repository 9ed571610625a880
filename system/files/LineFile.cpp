#include "system/files/LineFile.h"

#include "system/files/FileErrors.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

CLineFile::CLineFile(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        std::filesystem::rename(path, path.native() + '~', error);
    m_nFile = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
    if (!IsOpen()) m_failure = WriteFailure(errno);
}

CLineFile::~CLineFile() {
    if (IsOpen()) close(m_nFile);
}

bool CLineFile::Write(std::string_view strLine) {
    if (!IsOpen()) return false;
    const off_t nBefore = lseek(m_nFile, 0, SEEK_END);
    while (!strLine.empty()) {
        const ssize_t n = write(m_nFile, strLine.data(), strLine.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            // The line is incomplete: remove what has been written of it.
            [[maybe_unused]] const bool bBack = nBefore >= 0 && ftruncate(m_nFile, nBefore) == 0;
            return false;
        }
        strLine.remove_prefix(static_cast<size_t>(n));
    }
    return true;
}
