#include "core/RasterKernel/CrossingKernel.h"

#include "core/IniConfig/GlobalSwitches.h"

#include <algorithm>

namespace {

void Cross(int32_t* pCells, int64_t nX, int64_t nStep, size_t nCount) {
    for (size_t n = 0; n < nCount; ++n, nX += nStep) pCells[n] = static_cast<int32_t>(nX >> CROSSING_BITS);
}

TCrossingSums Sum(const int32_t* pCells, size_t nCount) {
    const auto [itMin, itMax] = std::minmax_element(pCells, pCells + nCount);
    TCrossingSums sums{*itMin, *itMax, 0};
    const int32_t nLeft = *itMin & -CROSSING_CELLS;
    for (size_t n = 0; n < nCount; ++n)
        for (int32_t k = 0; k < CROSSING_PIXELS; ++k) {
            const int32_t nSet = nLeft + (k + 1) * CROSSING_CELLS - pCells[n];
            sums.uSums += static_cast<uint64_t>(std::clamp(nSet, 0, CROSSING_CELLS)) << (16 * k);
        }
    return sums;
}

void SumBlocks(TCrossingSums* pSums, const int32_t* pCells, ptrdiff_t nStep, size_t nBlocks) {
    for (size_t n = 0; n < nBlocks; ++n) pSums[n] = Sum(pCells + static_cast<ptrdiff_t>(n) * nStep, 16);
}

} // namespace

const TCrossingKernels& PlainCrossingKernels() {
    static constexpr TCrossingKernels kernels{Cross, Sum, SumBlocks};
    return kernels;
}

const TCrossingKernels& CrossingKernels() {
    return g_Switches.m_bEnableSSE2 ? VectorCrossingKernels() : PlainCrossingKernels();
}
