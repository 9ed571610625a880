#include "system/files/FileLock.h"

#include "system/files/FilePath.h"

#include <thread>

CFileLock::CFileLock(const std::filesystem::path& path, std::chrono::milliseconds msWait)
    : m_pathLock(path.parent_path() / PathOf('.' + Utf8Of(path.filename()) + ".lock")) {
    const auto timeEnd = std::chrono::steady_clock::now() + msWait;
    while (TryLock() == EOutcome::Busy && std::chrono::steady_clock::now() < timeEnd)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}
