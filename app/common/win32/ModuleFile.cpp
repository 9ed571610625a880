#include "app/common/ModuleFile.h"

#include "app/common/win32/SystemText.h"
#include "system/environment/Modules.h"
#include "system/files/FilePath.h"

#include <stdexcept>

namespace fs = std::filesystem;

fs::path FindModule() { return PathOf(CModules().GetProgram().strPath).parent_path() / L"vellumcraft.8bf"; }

hostabi::PluginMainProc LoadModule(const fs::path& path) {
    const auto fail = [&] {
        throw std::runtime_error(Utf8Of(path) + ": " + DescribeSystemError(GetLastError()));
    };
    // Libraries that the module needs are searched for beside it.
    const HMODULE hModule =
        LoadLibraryExW(fs::absolute(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!hModule) fail();
    const FARPROC pMain = GetProcAddress(hModule, "PluginMain");
    if (!pMain) fail();
    return reinterpret_cast<hostabi::PluginMainProc>(reinterpret_cast<void*>(pMain));
}
