#include "app/common/ModuleFile.h"

#include "system/environment/Modules.h"
#include "system/files/FilePath.h"

#include <stdexcept>

#include <dlfcn.h>

namespace fs = std::filesystem;

namespace {

constexpr char MODULE_NAME[] = "vellumcraft.8bf";

} // namespace

fs::path FindModule() {
    const fs::path folder = PathOf(CModules().GetProgram().strPath).parent_path();
    const fs::path installed = folder / VELLUM_MODULE_FOLDER / MODULE_NAME;
    return fs::exists(installed) ? installed : folder / MODULE_NAME;
}

hostabi::PluginMainProc LoadModule(const fs::path& path) {
    void* const pModule = dlopen(fs::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const pMain = pModule ? dlsym(pModule, "PluginMain") : nullptr;
    if (!pMain) throw std::runtime_error(dlerror());
    return reinterpret_cast<hostabi::PluginMainProc>(pMain);
}
