// Threads that take none of the process's signals.
#pragma once

#include <functional>
#include <thread>

/// Starts a thread. A host's signals go on to the host's threads. Raises std::system_error.
std::thread StartQuietThread(std::function<void()> fn);
