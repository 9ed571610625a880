#include "core/RasterKernel/SoftenKernel.h"

#include "core/IniConfig/GlobalSwitches.h"

#include <algorithm>

namespace {

void Soften(uint8_t* pDest, const TSoftenRows& rows) {
    for (size_t x = 0; x < rows.nCount; ++x) {
        const uint8_t* pRow = rows.pRow + x;
        const auto uNeighbours = static_cast<uint32_t>(pRow[-1] + pRow[1] + rows.pAbove[x] + rows.pBelow[x]);
        pDest[x] = std::max(pDest[x], SoftenedValue(pRow[0], uNeighbours));
    }
}

} // namespace

const TSoftenKernels& PlainSoftenKernels() {
    static constexpr TSoftenKernels kernels{Soften};
    return kernels;
}

const TSoftenKernels& SoftenKernels() {
    return g_Switches.m_bEnableSSE2 ? VectorSoftenKernels() : PlainSoftenKernels();
}
