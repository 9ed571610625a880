#include "system/files/win32/FileHandle.h"

namespace fs = std::filesystem;

namespace {

/// The system's limit of ordinary paths, less room for the name of a file in a folder that is made with them.
constexpr size_t SHORT_PATH = 240;
constexpr size_t LONGEST_NAME = 255; ///< characters

} // namespace

bool HasLongName(const fs::path& path) { return path.filename().native().size() > LONGEST_NAME; }

fs::path LongPathOf(const fs::path& path) {
    if (path.native().size() < SHORT_PATH || path.native().starts_with(L"\\\\?\\")) return path;
    std::error_code error;
    // The long form is taken literally, without "." or "..", and with the system's own separators only.
    const fs::path whole = fs::absolute(path, error).lexically_normal().make_preferred();
    if (error) return path;
    if (whole.native().starts_with(L"\\\\")) return L"\\\\?\\UNC" + whole.native().substr(1);
    return L"\\\\?\\" + whole.native();
}
