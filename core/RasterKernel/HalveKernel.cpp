#include "core/RasterKernel/HalveKernel.h"

#include "core/RasterKernel/KernelChoice.h"

namespace {

void Halve(uint8_t* pDest, const THalveRows& rows, size_t nCount) {
    for (size_t x = 0; x < nCount; ++x) {
        uint32_t uSum = 0;
        for (size_t n = 0; n < 3; ++n) {
            const uint16_t* p = rows.apRows[n] + 2 * x;
            const uint32_t uNext = x + 1 < nCount ? p[2] : rows.auNext[n];
            uSum += (p[0] + 2u * p[1] + uNext) * (n == 1 ? 2 : 1);
        }
        pDest[x] = static_cast<uint8_t>(uSum >> 12); // a sixteenth, and of that the upper byte
    }
}

} // namespace

const THalveKernels& PlainHalveKernels() {
    static constexpr THalveKernels kernels{Halve};
    return kernels;
}

const THalveKernels& HalveKernels() {
    return UsesVectorKernels() ? VectorHalveKernels() : PlainHalveKernels();
}
