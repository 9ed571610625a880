#include "app/common/RemoveFolder.h"

#include <chrono>
#include <thread>

namespace {

constexpr int TRIES = 40;
constexpr std::chrono::milliseconds WAIT{25};

} // namespace

void RemoveFolder(const std::filesystem::path& path) {
    std::error_code error;
    for (int n = 0; n < TRIES; ++n) {
        std::filesystem::remove_all(path, error);
        if (!std::filesystem::exists(path, error)) return;
        std::this_thread::sleep_for(WAIT);
    }
}
