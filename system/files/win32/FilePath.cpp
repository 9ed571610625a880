#include "system/files/FilePath.h"

#include "core/Base/Text.h"

namespace fs = std::filesystem;

fs::path PathOf(std::wstring_view strPath) { return strPath; }
fs::path PathOf(std::string_view strPath) { return FromUtf8(strPath); }

std::wstring TextOf(const fs::path& path) { return path.native(); }
std::string Utf8Of(const fs::path& path) { return ToUtf8(path.native()); }
