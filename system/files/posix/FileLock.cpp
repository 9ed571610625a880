#include "system/files/FileLock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

CFileLock::~CFileLock() {
    if (!IsLocked()) return;
    // Removed while still locked: a thread or process that waits for this file finds that its name is gone.
    unlink(m_pathLock.c_str());
    close(static_cast<int>(m_nHandle));
}

CFileLock::EOutcome CFileLock::TryLock() {
    const int fd = open(m_pathLock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (fd < 0) return errno == EINTR ? EOutcome::Busy : EOutcome::Impossible;
    struct stat statHeld {};
    struct stat statNamed {};
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool bBusy = errno == EWOULDBLOCK || errno == EINTR;
        close(fd);
        return bBusy ? EOutcome::Busy : EOutcome::Impossible;
    }
    if (fstat(fd, &statHeld) != 0 || stat(m_pathLock.c_str(), &statNamed) != 0 ||
        statHeld.st_dev != statNamed.st_dev || statHeld.st_ino != statNamed.st_ino) {
        close(fd);
        return EOutcome::Busy;
    }
    m_nHandle = fd;
    return EOutcome::Locked;
}
