// A lock beside a file, between threads and between processes.
#pragma once

#include <boost/noncopyable.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>

/// Holds the lock file ".NAME.lock" beside a file until it is destroyed. Exclusive among threads as well. The
/// system drops the lock of a process that dies.
class CFileLock : boost::noncopyable {
public:
    /// Waits for `msWait` at most; does not wait where the lock file cannot be created.
    CFileLock(const std::filesystem::path& path, std::chrono::milliseconds msWait);
    ~CFileLock();
    bool IsLocked() const { return m_nHandle != NONE; }

private:
    enum class EOutcome { Locked, Busy, Impossible };
    EOutcome TryLock();

    static constexpr intptr_t NONE = -1;

    std::filesystem::path m_pathLock;
    intptr_t m_nHandle = NONE; ///< the system's descriptor or handle
};
