#include "system/environment/Modules.h"

#include <array>
#include <cstdint>
#include <cwchar>
#include <vector>

#include <windows.h>

namespace {

constexpr size_t LONGEST_PATH = 32768; ///< characters with the final zero

std::wstring PathOfModule(HMODULE hModule) {
    std::wstring strPath(LONGEST_PATH, L'\0');
    strPath.resize(GetModuleFileNameW(hModule, strPath.data(), static_cast<DWORD>(strPath.size())));
    return strPath;
}

// The file version as text, in the language that the resource names first; empty when it has none.
std::wstring FindVersion(const std::vector<uint8_t>& vResource) {
    std::array<uint16_t, 2>* pLanguage = nullptr;
    void* pFound = nullptr;
    UINT uLength = 0;
    if (!VerQueryValueW(vResource.data(), L"\\VarFileInfo\\Translation", &pFound, &uLength) ||
        uLength < sizeof *pLanguage)
        return {};
    pLanguage = static_cast<std::array<uint16_t, 2>*>(pFound);
    wchar_t szName[64];
    std::swprintf(szName, std::size(szName), L"\\StringFileInfo\\%04x%04x\\FileVersion", (*pLanguage)[0],
                  (*pLanguage)[1]);
    if (!VerQueryValueW(vResource.data(), szName, &pFound, &uLength) || uLength == 0) return {};
    return static_cast<const wchar_t*>(pFound);
}

TModuleInfo Describe(HMODULE hModule) {
    TModuleInfo info;
    info.strPath = PathOfModule(hModule);
    DWORD uIgnored = 0;
    std::vector<uint8_t> vResource(GetFileVersionInfoSizeW(info.strPath.c_str(), &uIgnored));
    info.bResource =
        !vResource.empty() &&
        GetFileVersionInfoW(info.strPath.c_str(), 0, static_cast<DWORD>(vResource.size()), vResource.data());
    if (info.bResource) info.strVersion = FindVersion(vResource);
    return info;
}

} // namespace

TModuleInfo CModules::GetProgram() { return Describe(nullptr); }

TModuleInfo CModules::GetLibrary(const std::wstring& strName) {
    HMODULE hModule = nullptr;
    if (strName.empty() ||
        !GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, strName.c_str(), &hModule))
        return {};
    return Describe(hModule);
}

std::filesystem::path CModules::FindOwnFile() {
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&CModules::FindOwnFile), &hModule);
    return PathOfModule(hModule);
}
