// A filter module that leaves pictures unchanged, and crashes on those that are 7 pixels wide.
#include "host/Abi/FilterRecord.h"

#include <csignal>

extern "C" __attribute__((visibility("default"))) void PluginMain(int16_t nSelector, void* pRecord, intptr_t*,
                                                                  int16_t* pnResult) {
    const auto* pFilterRecord = static_cast<const hostabi::FilterRecord*>(pRecord);
    if (nSelector == hostabi::filterSelectorStart && pFilterRecord->filterRect.right == 7) {
        std::signal(SIGSEGV, SIG_DFL); // without a sanitizer's report
        volatile uintptr_t uNowhere = 64;
        *reinterpret_cast<volatile int*>(uNowhere) = 0;
    }
    *pnResult = 0;
}
