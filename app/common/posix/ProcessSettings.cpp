#include "app/common/ProcessSettings.h"

#include <clocale>
#include <cstring>
#include <string>

#include <langinfo.h>

// Takes the user's locale if it uses UTF-8, else one that does. The host's files may depend on the number
// format.
CProcessSettings::CProcessSettings() {
    const char* pszNumeric = std::setlocale(LC_NUMERIC, nullptr);
    const std::string strNumeric = pszNumeric ? pszNumeric : "C";
    if (!std::setlocale(LC_ALL, "") || std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        std::setlocale(LC_ALL, "C.UTF-8");
    std::setlocale(LC_NUMERIC, strNumeric.c_str());
}

CProcessSettings::~CProcessSettings() = default;
