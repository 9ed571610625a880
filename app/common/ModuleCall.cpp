#include "app/common/ModuleCall.h"

#include "app/common/ModuleFile.h"
#include "app/common/Recording.h"
#include "app/common/ScriptSettings.h"
#include "system/environment/Variables.h"
#include "system/files/FilePath.h"

#include <memory>
#include <stdexcept>

namespace {

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
    if (!call.pathRecord.empty())
        SetVariable(RECORD_VARIABLE, Utf8Of(std::filesystem::absolute(call.pathRecord)));
    const int16_t nResult = host.Run(LoadModule(call.pathModule.empty() ? FindModule() : call.pathModule));
    if (pSettings && !pSettings->GetFailure().empty()) throw std::runtime_error(pSettings->GetFailure());
    if (nResult != hostabi::noErr)
        throw std::runtime_error("the filter refused with " + std::to_string(nResult) +
                                 DescribeResult(nResult));
}
