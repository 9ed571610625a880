#include "core/Base/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

size_t AvailableThreads() { return std::max(1u, std::thread::hardware_concurrency()); }

void ForEachIndex(size_t nCount, size_t nThreads, const std::function<void(size_t)>& fn) {
    std::atomic<size_t> nNext{0};
    std::mutex mutex;
    std::exception_ptr pFailure;
    const auto work = [&]() noexcept {
        for (size_t i = nNext++; i < nCount; i = nNext++) {
            try {
                fn(i);
            } catch (...) {
                const std::lock_guard lock(mutex);
                if (!pFailure) pFailure = std::current_exception();
                nNext = nCount;
            }
        }
    };
    {
        std::vector<std::jthread> vThreads;
        try {
            while (vThreads.size() + 1 < std::min(nThreads, nCount)) vThreads.emplace_back(work);
        } catch (const std::exception&) { // neither memory nor the system's limit stop the work
        }
        work();
    }
    if (pFailure) std::rethrow_exception(pFailure);
}
