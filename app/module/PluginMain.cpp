// The one export of the module.
#include "app/module/ModulePlatform.h"
#include "host/PluginEntry.h"

extern "C" __attribute__((visibility("default"))) void PluginMain(int16_t nSelector, void* pRecord, intptr_t*,
                                                                  int16_t* pnResult) {
    RunSelector(nSelector, pRecord, pnResult, RunWithPlatform);
}
