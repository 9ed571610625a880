#include "tests/faults/FailingDisk.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool Fails(int nError) {
    if (!CFailingDisk::CountOne()) return false;
    errno = nError;
    return true;
}

/// The original function that this one replaces.
template <class Function>
Function* Real(Function*, const char* pszName) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, pszName));
}

} // namespace

#define REAL(fn) Real(fn, #fn)
#define OURS extern "C" __attribute__((visibility("default")))

OURS int open(const char* psz, int nFlags, ...) {
    va_list arguments;
    va_start(arguments, nFlags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return Fails(EMFILE) ? -1 : REAL(open)(psz, nFlags, mode);
}
OURS int open64(const char* psz, int nFlags, ...) {
    va_list arguments;
    va_start(arguments, nFlags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return Fails(EMFILE) ? -1 : REAL(open64)(psz, nFlags, mode);
}
OURS ssize_t read(int fd, void* p, size_t n) { return Fails(EIO) ? -1 : REAL(read)(fd, p, n); }
OURS ssize_t pread(int fd, void* p, size_t n, off_t at) {
    return Fails(EIO) ? -1 : REAL(pread)(fd, p, n, at);
}
OURS ssize_t write(int fd, const void* p, size_t n) {
    if (!Fails(ENOSPC)) return REAL(write)(fd, p, n);
    // Write the part that still had room.
    (void)!REAL(write)(fd, p, n / 2);
    errno = ENOSPC;
    return -1;
}
OURS ssize_t pwrite(int fd, const void* p, size_t n, off_t at) {
    return Fails(ENOSPC) ? -1 : REAL(pwrite)(fd, p, n, at);
}
OURS int ftruncate(int fd, off_t n) noexcept { return Fails(EIO) ? -1 : REAL(ftruncate)(fd, n); }
OURS int fsync(int fd) { return Fails(EIO) ? -1 : REAL(fsync)(fd); }
OURS int fdatasync(int fd) { return Fails(EIO) ? -1 : REAL(fdatasync)(fd); }
OURS int fchmod(int fd, mode_t mode) noexcept { return Fails(EPERM) ? -1 : REAL(fchmod)(fd, mode); }
OURS int rename(const char* pszFrom, const char* pszTo) noexcept {
    return Fails(EACCES) ? -1 : REAL(rename)(pszFrom, pszTo);
}
OURS int renameat2(int fdFrom, const char* pszFrom, int fdTo, const char* pszTo, unsigned uFlags) noexcept {
    return Fails(EACCES) ? -1 : REAL(renameat2)(fdFrom, pszFrom, fdTo, pszTo, uFlags);
}
OURS int linkat(int fdFrom, const char* pszFrom, int fdTo, const char* pszTo, int nFlags) noexcept {
    return Fails(EACCES) ? -1 : REAL(linkat)(fdFrom, pszFrom, fdTo, pszTo, nFlags);
}
