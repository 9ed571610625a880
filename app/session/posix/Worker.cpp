#include "app/session/Worker.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void Fail(const std::string& strWhat, int nError) {
    throw std::runtime_error(strWhat + ": " + std::strerror(nError));
}

} // namespace

TProcessId StartWorker(const std::vector<std::string>& vCommand, const std::filesystem::path& pathSaid) {
    std::vector<char*> vArguments;
    for (const std::string& str : vCommand) vArguments.push_back(const_cast<char*>(str.c_str()));
    vArguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, pathSaid.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t pid = 0;
    const int nError =
        posix_spawn(&pid, vCommand.front().c_str(), &actions, nullptr, vArguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (nError != 0) Fail(vCommand.front(), nError);
    return pid;
}

TEnded WaitForWorker() {
    TEnded ended;
    int nStatus = 0;
    while ((ended.id = waitpid(-1, &nStatus, 0)) < 0)
        if (errno != EINTR) Fail("waiting for a page", errno);
    if (WIFSIGNALED(nStatus)) {
        const int nSignal = WTERMSIG(nStatus);
        ended.strCrashed = "ended by signal " + std::to_string(nSignal) + " (" + strsignal(nSignal) + ")";
    } else {
        ended.nCode = WEXITSTATUS(nStatus);
    }
    return ended;
}
