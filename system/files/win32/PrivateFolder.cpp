#include "system/files/PrivateFolder.h"

#include "system/files/FilePath.h"

#include <random>
#include <stdexcept>

#include <windows.h>

namespace fs = std::filesystem;

namespace {

constexpr int TRIES = 100;

} // namespace

// The user's folder for temporary files is closed to others.
fs::path MakeTempFolder(const std::string& strPrefix) {
    std::random_device random;
    const fs::path folder = fs::temp_directory_path();
    for (int n = 0; n < TRIES; ++n) {
        const fs::path path = folder / PathOf(strPrefix + std::to_string(random()));
        if (CreateDirectoryW(path.c_str(), nullptr)) return path;
        if (GetLastError() != ERROR_ALREADY_EXISTS) break;
    }
    throw std::runtime_error(Utf8Of(folder) + ": no temporary folder");
}

// The folders of a user's profile are closed to other users already.
void MakePrivate(const fs::path&) {}
