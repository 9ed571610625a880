// A filter module that leaves pictures as they are, and crashes over those that are 7 pixels wide.
#include "host/Abi/FilterRecord.h"

#include <csignal>

extern "C" __attribute__((visibility("default"))) void PluginMain(int16_t nSelector, void* pRecord, intptr_t*,
                                                                  int16_t* pnResult) {
    const auto* pFilterRecord = static_cast<const hostabi::FilterRecord*>(pRecord);
    if (nSelector == hostabi::filterSelectorStart && pFilterRecord->filterRect.right == 7) {
        std::signal(SIGSEGV, SIG_DFL); // no sanitizer is to tell of it
        std::raise(SIGSEGV);
    }
    *pnResult = 0;
}
