#include "app/thumbnail/Limits.h"

#include <cstdint>
#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr rlim_t MOST_SECONDS = 60;
constexpr rlim_t MOST_MEMORY = rlim_t{512} << 20;

void Limit(__rlimit_resource resource, rlim_t uMost) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0) return;
    if (limit.rlim_max < uMost) uMost = limit.rlim_max;
    limit.rlim_cur = uMost;
    setrlimit(resource, &limit);
}

} // namespace

void LimitProcess() {
    Limit(RLIMIT_CORE, 0); // a process that is ended leaves nothing behind
    Limit(RLIMIT_CPU, MOST_SECONDS);
    // The memory that the limit counts is the sixth number, in pages.
    std::ifstream statm("/proc/self/statm");
    uint64_t uPages = 0;
    for (int n = 0; n < 6; ++n) statm >> uPages;
    if (statm) Limit(RLIMIT_DATA, uPages * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)) + MOST_MEMORY);
}
