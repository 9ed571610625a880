#include "app/common/Module.h"

#include "core/IniConfig/GlobalSwitches.h"
#include "core/RasterKernel/KernelChoice.h"

CModule::CModule() {
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
