// Independent pieces of work on several threads.
#pragma once

#include <cstddef>
#include <functional>

/// The threads that the machine runs at once, at least 1.
size_t AvailableThreads();

/// Calls `fn(i)` for every i from 0 to before `nCount`, in any order, on up to `nThreads` threads, of which
/// this one is the first. Returns when all calls have ended. The first exception is raised then; calls that
/// had not begun by that time are left out. Threads that cannot be started are done without.
void ForEachIndex(size_t nCount, size_t nThreads, const std::function<void(size_t)>& fn);
