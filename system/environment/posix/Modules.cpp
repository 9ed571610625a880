#include "system/environment/Modules.h"

#include "core/Base/Text.h"
#include "system/files/FilePath.h"

#include <dlfcn.h>
#include <link.h>

namespace {

namespace fs = std::filesystem;

// Returns "foo" for "/usr/lib/libfoo.so.1.2".
std::string_view StemOf(std::string_view strName) {
    strName.remove_prefix(strName.rfind('/') + 1); // npos + 1 is 0
    for (size_t n = strName.find(".so"); n != std::string_view::npos; n = strName.find(".so", n + 1)) {
        if (strName.find_first_not_of(".0123456789", n + 3) != std::string_view::npos) continue;
        strName = strName.substr(0, n);
        break;
    }
    if (strName.starts_with("lib")) strName.remove_prefix(3);
    return strName;
}

struct TSearch {
    std::string_view strStem;
    std::string strPath;
};

int VisitLibrary(dl_phdr_info* pInfo, size_t, void* pArgument) {
    auto& search = *static_cast<TSearch*>(pArgument);
    // The program itself has an empty name.
    const std::string_view strPath = pInfo->dlpi_name ? pInfo->dlpi_name : "";
    if (strPath.empty() || !EqualNoCase(StemOf(strPath), search.strStem)) return 0;
    search.strPath = strPath;
    return 1;
}

fs::path FindProgram() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

} // namespace

TModuleInfo CModules::GetProgram() {
    TModuleInfo info;
    info.strPath = TextOf(FindProgram());
    return info;
}

TModuleInfo CModules::GetLibrary(const std::wstring& strName) {
    const std::string strBytes = ToUtf8(strName);
    TSearch search{StemOf(strBytes), {}};
    TModuleInfo info;
    if (search.strStem.empty()) return info;
    dl_iterate_phdr(VisitLibrary, &search);
    info.strPath = FromUtf8(search.strPath);
    return info;
}

fs::path CModules::FindOwnFile() {
    Dl_info info{};
    void* pExtra = nullptr;
    std::error_code error;
    if (dladdr1(reinterpret_cast<const void*>(&CModules::FindOwnFile), &info, &pExtra, RTLD_DL_LINKMAP) &&
        pExtra) {
        // The program itself has an empty name.
        const char* pszName = static_cast<const link_map*>(pExtra)->l_name;
        if (pszName && *pszName) return fs::canonical(pszName, error);
    }
    return FindProgram();
}
