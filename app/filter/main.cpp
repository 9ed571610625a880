// A host for one picture file: presents it to the filter module and writes what comes back.
#include "app/filter/Arguments.h"
#include "app/filter/PictureFiles.h"
#include "app/filter/ScriptSettings.h"
#include "core/Base/Text.h"
#include "system/FileStore.h"
#include "system/ImageCodecs.h"
#include "system/Modules.h"

#include <iostream>
#include <memory>

#include <dlfcn.h>

namespace fs = std::filesystem;

namespace {

/// The module stays loaded until the process ends, when it saves its switches.
hostabi::PluginMainProc LoadModule(fs::path path) {
    if (path.empty())
        path = fs::path(ToUtf8(CModules().GetProgram().strPath)).parent_path() / "vellumcraft.8bf";
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

void RunFilter(const TArguments& arguments) {
    CFileStore files;
    CImageCodecs codecs(files);
    codecs.Startup();
    THostPicture picture = LoadPicture(arguments.pathIn, codecs);
    const CSize sz = picture.rc.Size();
    for (const fs::path& path : arguments.vAlphas) picture.vAlphas.push_back(LoadAlpha(path, sz, codecs));
    CheckSave(arguments.pathOut, codecs);

    std::unique_ptr<CScriptSettings> pSettings;
    if (!arguments.pathScript.empty())
        pSettings = std::make_unique<CScriptSettings>(arguments.pathScript, arguments.bWindows, files);
    CPictureHost host(std::move(picture));
    const int16_t nResult = host.Run(LoadModule(arguments.pathModule));
    if (pSettings && !pSettings->GetFailure().empty()) throw std::runtime_error(pSettings->GetFailure());
    if (nResult != hostabi::noErr)
        throw std::runtime_error("the filter refused with " + std::to_string(nResult) +
                                 DescribeResult(nResult));

    SavePicture(arguments.pathOut, host.GetPicture(), codecs);
    for (size_t i = 0; i < arguments.vAlphaOut.size(); ++i)
        SaveAlpha(arguments.vAlphaOut[i], host.GetPicture().vAlphas[i], sz, codecs);
}

} // namespace

int main(int nArguments, char** ppszArguments) {
    try {
        const TArguments arguments = ParseArguments({ppszArguments + 1, ppszArguments + nArguments});
        if (arguments.bHelp)
            std::cout << USAGE;
        else
            RunFilter(arguments);
        return 0;
    } catch (const usage_error& e) {
        std::cerr << "vellumcraft-filter: " << e.what() << "\n\n" << USAGE;
        return 2;
    } catch (const std::bad_alloc&) {
        std::cerr << "vellumcraft-filter: out of memory\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "vellumcraft-filter: " << e.what() << '\n';
        return 1;
    }
}
