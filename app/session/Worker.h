// The processes of a batch.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

/// A process that has ended.
struct TEnded {
    pid_t pid = 0;
    int nStatus = 0; ///< as returned by waitpid
};

/// Starts a program with its output redirected to a file. Raises std::runtime_error.
pid_t StartWorker(const std::vector<std::string>& vCommand, const std::filesystem::path& pathSaid);

/// Waits until one of the started processes has ended. Raises std::runtime_error.
TEnded WaitForWorker();

/// The reason of a worker's failure: the first line of its output, or the signal that ended it. Empty when
/// it did not fail.
std::string DescribeEnd(const TEnded& ended, const std::filesystem::path& pathSaid);
