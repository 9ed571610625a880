#include "system/environment/Variables.h"

#include <cstdlib>

std::string GetVariable(const std::string& strName) {
    const char* pszValue = std::getenv(strName.c_str());
    return pszValue ? pszValue : "";
}

void SetVariable(const std::string& strName, const std::string& strValue) {
    setenv(strName.c_str(), strValue.c_str(), 1);
}
