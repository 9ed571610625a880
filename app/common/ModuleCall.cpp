#include "app/common/ModuleCall.h"

#include "app/common/Recording.h"
#include "app/common/ScriptSettings.h"
#include "core/Base/Text.h"
#include "system/environment/Modules.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <dlfcn.h>

namespace fs = std::filesystem;

namespace {

constexpr char MODULE_NAME[] = "vellumcraft.8bf";

// Returns where the installation puts the module, else where the build does: beside the program.
fs::path FindModule() {
    const fs::path folder = fs::path(ToUtf8(CModules().GetProgram().strPath)).parent_path();
    const fs::path installed = folder / VELLUM_MODULE_FOLDER / MODULE_NAME;
    return fs::exists(installed) ? installed : folder / MODULE_NAME;
}

/// The module stays loaded until the process exits, when it saves its switches.
hostabi::PluginMainProc LoadModule(fs::path path) {
    if (path.empty()) path = FindModule();
    void* const pModule = dlopen(fs::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const pMain = pModule ? dlsym(pModule, "PluginMain") : nullptr;
    if (!pMain) throw std::runtime_error(dlerror());
    return reinterpret_cast<hostabi::PluginMainProc>(pMain);
}

std::string DescribeResult(int16_t nResult) {
    if (nResult == hostabi::errPlugInHostInsufficient) return " (is there a display? --script needs none)";
    if (nResult == hostabi::memFullErr) return " (out of memory)";
    return {};
}

} // namespace

void CallModule(CPictureHost& host, const TModuleCall& call, IFileStore& files) {
    std::unique_ptr<CScriptSettings> pSettings;
    if (!call.pathScript.empty())
        pSettings = std::make_unique<CScriptSettings>(call.pathScript, call.bWindows, files);
    if (!call.pathRecord.empty()) setenv(RECORD_VARIABLE, fs::absolute(call.pathRecord).c_str(), 1);
    const int16_t nResult = host.Run(LoadModule(call.pathModule));
    if (pSettings && !pSettings->GetFailure().empty()) throw std::runtime_error(pSettings->GetFailure());
    if (nResult != hostabi::noErr)
        throw std::runtime_error("the filter refused with " + std::to_string(nResult) +
                                 DescribeResult(nResult));
}
