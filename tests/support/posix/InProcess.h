// Runs code in a separate process, or as another user.
#pragma once

#include <csignal>

#include <grp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// True when the separate process exited normally and `body` returned true there.
template <class Body>
bool InProcess(Body body) {
    const pid_t id = fork();
    if (id == 0) _exit(body() ? 0 : 1);
    int nStatus = 0;
    return waitpid(id, &nStatus, 0) == id && WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

/// The same in a process whose files cannot grow beyond `uBytes`.
template <class Body>
bool OnFullDisk(rlim_t uBytes, Body body) {
    return InProcess([&] {
        const rlimit limit{uBytes, uBytes};
        return signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0 && body();
    });
}

constexpr uid_t PLAIN_USER = 65534;
constexpr gid_t PLAIN_GROUP = 65534;

/// The same for a user without the superuser's rights, who is also in the group `uGroup`. Keeps the user if
/// it is no superuser.
template <class Body>
bool AsPlainUser(gid_t uGroup, Body body) {
    return InProcess([&] {
        return (geteuid() != 0 ||
                (setgroups(1, &uGroup) == 0 && setegid(PLAIN_GROUP) == 0 && seteuid(PLAIN_USER) == 0)) &&
               body();
    });
}
