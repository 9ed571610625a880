#include "app/session/Pattern.h"

#include "core/Base/Text.h"

#include <algorithm>

#include <windows.h>

namespace {

namespace fs = std::filesystem;

bool Matches(std::wstring_view strName, std::wstring_view strPattern) {
    size_t nName = 0, nPattern = 0;
    size_t nStar = std::wstring_view::npos, nStarName = 0; // the last star, and where its text ends so far
    while (nName < strName.size()) {
        const wchar_t ch = nPattern < strPattern.size() ? strPattern[nPattern] : L'\0';
        if (ch == L'*') {
            nStar = nPattern++;
            nStarName = nName;
        } else if (ch == L'?' || ch == strName[nName]) {
            ++nPattern;
            ++nName;
        } else if (nStar != std::wstring_view::npos) {
            nPattern = nStar + 1;
            nName = ++nStarName;
        } else {
            return false;
        }
    }
    return strPattern.find_first_not_of(L'*', nPattern) == std::wstring_view::npos;
}

} // namespace

// The system's own search would match short names too, "*.png" with "a.pngx".
std::vector<fs::path> FindFiles(const std::string& strPattern) {
    const std::wstring strWhole = FromUtf8(strPattern);
    const std::wstring strName = FoldName(FileNameOf(strWhole)).native();
    // The folder as it was typed, with its separator.
    const std::wstring strFolder = strWhole.substr(0, strWhole.size() - strName.size());
    std::vector<fs::path> vPaths;
    std::error_code error;
    for (fs::directory_iterator it(strFolder.empty() ? fs::path(L".") : fs::path(strFolder), error), end;
         !error && it != end; it.increment(error)) {
        const fs::path name = it->path().filename();
        if (!it->is_directory(error) && Matches(FoldName(name).native(), strName))
            vPaths.emplace_back(strFolder + name.native());
    }
    std::ranges::sort(vPaths);
    return vPaths;
}

fs::path FoldName(const fs::path& name) {
    std::wstring strName = name.native();
    CharUpperBuffW(strName.data(), static_cast<DWORD>(strName.size()));
    return strName;
}
