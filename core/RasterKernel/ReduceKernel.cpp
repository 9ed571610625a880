#include "core/RasterKernel/ReduceKernel.h"

#include "core/Base/Failure.h"
#include "core/RasterKernel/RescalePlane.h"

namespace {

/// Below this number of source pixels threads cost more than they save.
[[maybe_unused]] constexpr int64_t PARALLEL_PIXELS = 64 * 64;

template <class T>
void Reduce(T* pDest, CSize destSize, const T* pSource, const uint8_t* pAlpha, CSize srcSize) {
    SELF_CHECK(defect_logic, srcSize.cx >= destSize.cx && srcSize.cy >= destSize.cy);
    const ERescaleKind kind = AverageKind(srcSize, destSize);
    const TRescaleAxes axes = MakeRescaleAxes(kind, srcSize, destSize);
    TPlaneRescale<T> plane{pDest, destSize.cx, {{0, 0}, destSize}, pSource, pAlpha, {{0, 0}, srcSize}};
    if (kind == ERescaleKind::Mean) return MeanPlane(plane, axes);
        // Every row is written by only one thread, from samples that are not written.
#pragma omp parallel for firstprivate(plane) if (srcSize.cx * int64_t{srcSize.cy} >= PARALLEL_PIXELS)
    for (int32_t y = 0; y < destSize.cy; ++y) {
        plane.pTo = pDest + y * ptrdiff_t{destSize.cx};
        plane.rcTo = {0, y, destSize.cx, y + 1};
        WeighPlane(plane, axes);
    }
}

} // namespace

void ReducePlane(uint8_t* pDest, CSize szDest, const uint8_t* pSource, const uint8_t* pAlpha,
                 CSize szSource) {
    Reduce(pDest, szDest, pSource, pAlpha, szSource);
}

void ReducePlane(uint16_t* pDest, CSize szDest, const uint16_t* pSource, const uint8_t* pAlpha,
                 CSize szSource) {
    Reduce(pDest, szDest, pSource, pAlpha, szSource);
}
