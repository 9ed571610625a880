#include "core/RasterKernel/SoftenKernel.h"

#include "core/RasterKernel/KernelChoice.h"

#include <algorithm>

namespace {

void Soften(const TSoftenBlock& block) {
    for (size_t y = 0; y < block.nRows; ++y) {
        uint8_t* pDest = block.pDest + y * block.nStride;
        const uint8_t* const* apRows = block.apRows + y;
        for (size_t x = 0; x < block.nCount; ++x) {
            const uint8_t* pRow = apRows[1] + x;
            const auto uNeighbours = static_cast<uint32_t>(pRow[-1] + pRow[1] + apRows[0][x] + apRows[2][x]);
            pDest[x] = std::max(pDest[x], SoftenedValue(pRow[0], uNeighbours));
        }
    }
}

} // namespace

const TSoftenKernels& PlainSoftenKernels() {
    static constexpr TSoftenKernels kernels{Soften};
    return kernels;
}

const TSoftenKernels& SoftenKernels() {
    return UsesVectorKernels() ? VectorSoftenKernels() : PlainSoftenKernels();
}
