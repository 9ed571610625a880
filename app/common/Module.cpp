#include "app/common/Module.h"

#include "core/IniConfig/GlobalSwitches.h"
#include "core/RasterKernel/KernelChoice.h"

#include <clocale>
#include <cstring>
#include <string>

#include <langinfo.h>

namespace {

/// Sets the user's own locale if it uses UTF-8, else one that does. The number format stays as the process
/// has it: the host's files may depend on that.
void SetLocale() {
    const char* pszNumeric = std::setlocale(LC_NUMERIC, nullptr);
    const std::string strNumeric = pszNumeric ? pszNumeric : "C";
    if (!std::setlocale(LC_ALL, "") || std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        std::setlocale(LC_ALL, "C.UTF-8");
    std::setlocale(LC_NUMERIC, strNumeric.c_str());
}

} // namespace

CModule::CModule() {
    SetLocale();
    g_Switches.Load(m_config);
    UseVectorKernels(g_Switches.m_bEnableSSE2 != 0);
}

CModule::~CModule() {
    try {
        g_Switches.Save(m_config);
    } catch (const std::exception&) {
        // The process is exiting: errors cannot be reported any more.
    }
}
