#include "system/files/FileLock.h"

#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

CFileLock::CFileLock(const std::string& strPath, std::chrono::milliseconds msWait) {
    const size_t nName = strPath.rfind('/') + 1; // npos + 1 is 0
    m_strLockPath = strPath.substr(0, nName) + '.' + strPath.substr(nName) + ".lock";
    const auto timeEnd = std::chrono::steady_clock::now() + msWait;
    while (TryLock() == EOutcome::Busy && std::chrono::steady_clock::now() < timeEnd)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

CFileLock::~CFileLock() {
    if (m_fd < 0) return;
    // Removed while still locked: a thread or process that waits for this file finds that its name is gone.
    unlink(m_strLockPath.c_str());
    close(m_fd);
}

CFileLock::EOutcome CFileLock::TryLock() {
    const int fd = open(m_strLockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (fd < 0) return errno == EINTR ? EOutcome::Busy : EOutcome::Impossible;
    struct stat statHeld {};
    struct stat statNamed {};
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool bBusy = errno == EWOULDBLOCK || errno == EINTR;
        close(fd);
        return bBusy ? EOutcome::Busy : EOutcome::Impossible;
    }
    if (fstat(fd, &statHeld) != 0 || stat(m_strLockPath.c_str(), &statNamed) != 0 ||
        statHeld.st_dev != statNamed.st_dev || statHeld.st_ino != statNamed.st_ino) {
        close(fd);
        return EOutcome::Busy;
    }
    m_fd = fd;
    return EOutcome::Locked;
}
