// The one export of the module.
#include "app/common/Module.h"
#include "app/common/RunWithPlatform.h"
#include "app/module/HostWindows.h"
#include "app/module/KeepLoaded.h"
#include "host/PluginEntry.h"

namespace {

// Created by the first call that needs it: while a library is being loaded the system allows little.
CModule& GetModule() {
    KeepLoaded();
    static CModule module;
    return module;
}

} // namespace

extern "C" __attribute__((visibility("default"))) void PluginMain(int16_t nSelector, void* pRecord, intptr_t*,
                                                                  int16_t* pnResult) {
    RunSelector(nSelector, pRecord, pnResult, [](const auto& fn) {
        const CHostWindowsOff off;
        RunWithPlatform(GetModule(), fn);
    });
}
