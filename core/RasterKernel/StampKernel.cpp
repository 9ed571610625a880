#include "core/RasterKernel/StampKernel.h"

#include "core/Base/StableMath.h"
#include "core/RasterKernel/KernelChoice.h"

#include <algorithm>
#include <cmath>

namespace {

void Accumulate(const TStampRows& rows, uint8_t uAlpha) {
    const uint32_t uLimit = uAlpha * 257u;
    for (size_t y = 0; y < rows.nRows; ++y) {
        uint16_t* pDest = rows.pDest + y * rows.nDestStride;
        const uint16_t* pSrc = rows.pSrc + y * rows.nSrcStride;
        for (size_t x = 0; x < rows.nWidth; ++x) {
            const uint32_t uDest = pDest[x];
            const uint32_t uSrc = pSrc[x];
            if (uDest >= uLimit) continue;
            const uint32_t uSum = uAlpha * uSrc / 255 + uDest - uDest * uSrc / 65535;
            pDest[x] = static_cast<uint16_t>(std::min(uLimit, uSum));
        }
    }
}

void Falloff(uint16_t* pCells, size_t nFirst, size_t nCount, size_t nRow, const TFalloff& falloff) {
    const double y = static_cast<double>(2 * nRow + 1);
    for (size_t n = 0; n < nCount; ++n) {
        const double x = static_cast<double>(2 * (nFirst + n) + 1);
        const double d = std::sqrt(x * x + y * y) - falloff.dInner;
        const double v = StableExp(falloff.dFactor * (d * d));
        pCells[n] = static_cast<uint16_t>(v * CELL_FULL + 0.5);
    }
}

void FalloffRow(uint16_t* pCells, size_t nFirst, size_t nEnd, size_t nRow, const TFalloff& falloff,
                const TFalloffStretch*, size_t) {
    if (nFirst < nEnd) Falloff(pCells, nFirst, nEnd - nFirst, nRow, falloff);
}

void AddCells(uint32_t* pSums, const uint16_t* pCells, size_t nCount) {
    for (size_t n = 0; n < nCount; ++n) pSums[n] += pCells[n];
}

void UpperBytes(uint8_t* pBytes, const uint16_t* pValues, size_t nCount) {
    for (size_t n = 0; n < nCount; ++n) pBytes[n] = static_cast<uint8_t>(pValues[n] >> 8);
}

} // namespace

const TStampKernels& PlainStampKernels() {
    static constexpr TStampKernels kernels{Accumulate, Falloff, FalloffRow, AddCells, UpperBytes};
    return kernels;
}

const TStampKernels& StampKernels() {
    return UsesVectorKernels() ? VectorStampKernels() : PlainStampKernels();
}
