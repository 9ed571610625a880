#include "app/module/KeepLoaded.h"

#include <windows.h>

void KeepLoaded() {
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(&KeepLoaded), &hModule);
}
