#include "system/environment/Variables.h"

#include "core/Base/Text.h"

#include <windows.h>

std::string GetVariable(const std::string& strName) {
    const std::wstring strWide = FromUtf8(strName);
    std::wstring strValue(GetEnvironmentVariableW(strWide.c_str(), nullptr, 0), L'\0');
    // The first call counts the final zero, the second does not.
    strValue.resize(
        GetEnvironmentVariableW(strWide.c_str(), strValue.data(), static_cast<DWORD>(strValue.size())));
    return ToUtf8(strValue);
}

void SetVariable(const std::string& strName, const std::string& strValue) {
    SetEnvironmentVariableW(FromUtf8(strName).c_str(), FromUtf8(strValue).c_str());
}
