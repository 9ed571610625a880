// The processes of a batch.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// Identifies a started process until WaitForWorker returns its end: the system's number or handle.
using TProcessId = intptr_t;

/// A process that has ended.
struct TEnded {
    TProcessId id = 0;
    int nCode = 0;          ///< its exit code
    std::string strCrashed; ///< "ended by" and the reason if the system has ended it, else empty
};

/// Starts a program by its path, without input and with its output redirected to a file. Raises
/// std::runtime_error.
TProcessId StartWorker(const std::vector<std::string>& vCommand, const std::filesystem::path& pathSaid);

/// Waits until one of the started processes has ended. Raises std::runtime_error.
TEnded WaitForWorker();

/// The reason of a worker's failure: the first line of its output, or why the system ended it. Empty when it
/// did not fail.
std::string DescribeEnd(const TEnded& ended, const std::filesystem::path& pathSaid);
