#include "core/RasterKernel/CrossingKernel.h"

#include "core/RasterKernel/KernelChoice.h"

#include <algorithm>

namespace {

void CrossLines(int32_t* pCells, const TCrossingLine* pLines, size_t nLines) {
    for (const TCrossingLine* pEnd = pLines + nLines; pLines != pEnd; ++pLines) {
        const int64_t nSlope = pLines->GetSlope();
        int64_t nX = pLines->GetFirst(nSlope);
        for (size_t n = 0; n < pLines->nCount; ++n, nX += pLines->GetStep(nSlope))
            *pCells++ = static_cast<int32_t>(nX >> CROSSING_BITS);
    }
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
    static constexpr TCrossingKernels kernels{CrossLines, Sum, SumBlocks};
    return kernels;
}

const TCrossingKernels& CrossingKernels() {
    return UsesVectorKernels() ? VectorCrossingKernels() : PlainCrossingKernels();
}
