// The one export of the module.
#include "app/common/Module.h"
#include "app/common/RunWithPlatform.h"
#include "host/PluginEntry.h"

namespace {

CModule g_Module;

} // namespace

extern "C" __attribute__((visibility("default"))) void PluginMain(int16_t nSelector, void* pRecord, intptr_t*,
                                                                  int16_t* pnResult) {
    RunSelector(nSelector, pRecord, pnResult, [](const auto& fn) { RunWithPlatform(g_Module, fn); });
}
