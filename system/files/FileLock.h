// A lock beside a file, between threads and between processes.
#pragma once

#include <boost/noncopyable.hpp>

#include <chrono>
#include <string>

/// Holds the lock file ".NAME.lock" beside a file until it is destroyed. Exclusive among threads as well. The
/// system drops the lock of a process that dies.
class CFileLock : boost::noncopyable {
public:
    /// Waits for `msWait` at most; does not wait where the lock file cannot be created.
    CFileLock(const std::string& strPath, std::chrono::milliseconds msWait);
    ~CFileLock();
    bool IsLocked() const { return m_fd >= 0; }

private:
    enum class EOutcome { Locked, Busy, Impossible };
    EOutcome TryLock();

    std::string m_strLockPath;
    int m_fd = -1;
};
