#include "app/session/Pattern.h"

#include <glob.h>

std::vector<std::filesystem::path> FindFiles(const std::string& strPattern) {
    glob_t found{};
    std::vector<std::filesystem::path> vPaths;
    if (glob(strPattern.c_str(), 0, nullptr, &found) == 0)
        vPaths.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    return vPaths;
}

std::filesystem::path FoldName(const std::filesystem::path& name) { return name; }
