// Runs code in a process of its own, or as another user.
#pragma once

#include <csignal>

#include <grp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// True when a process of its own ended by itself and `body` was true there.
template <class Body>
bool InProcess(Body body) {
    const pid_t id = fork();
    if (id == 0) _exit(body() ? 0 : 1);
    int nStatus = 0;
    return waitpid(id, &nStatus, 0) == id && WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

/// The same where no file can grow beyond `uBytes`.
template <class Body>
bool OnFullDisk(rlim_t uBytes, Body body) {
    return InProcess([&] {
        const rlimit limit{uBytes, uBytes};
        return signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0 && body();
    });
}

constexpr uid_t PLAIN_USER = 65534;
constexpr gid_t PLAIN_GROUP = 65534;

/// The same for a user without the superuser's rights, who is in the group `uGroup` too. Whoever is no
/// superuser stays as he is.
template <class Body>
bool AsPlainUser(gid_t uGroup, Body body) {
    return InProcess([&] {
        return (geteuid() != 0 ||
                (setgroups(1, &uGroup) == 0 && setegid(PLAIN_GROUP) == 0 && seteuid(PLAIN_USER) == 0)) &&
               body();
    });
}
