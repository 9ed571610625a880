// The definition of resampling, plane by plane.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterKernel/RescaleAxis.h"

#include <cstddef>
#include <cstdint>

/// Part of a plane that is resampled from part of another, which holds all samples that the axes read for it.
template <class T>
struct TPlaneRescale {
    T* pTo; ///< the pixel at rcTo's corner
    ptrdiff_t nToStride;
    CRect rcTo;
    const T* pFrom;        ///< the rows of rcFrom, without padding
    const uint8_t* pAlpha; ///< laid out as pFrom; samples at which it is 0 do not count. Null: all count
    CRect rcFrom;
};

/// The integer mean of the samples that count, truncated; 0 without any. The axes are those of a mean.
void MeanPlane(const TPlaneRescale<uint8_t>& plane, const TRescaleAxes& axes);
void MeanPlane(const TPlaneRescale<uint16_t>& plane, const TRescaleAxes& axes);

/// The mean of the samples that count, weighted by the product of both axes' weights, in single precision:
/// rows outside, columns inside. It is limited to what the samples can be, and truncated after a guard was
/// added, which keeps flat areas flat. 0 where the weights' sum is almost 0.
void WeighPlane(const TPlaneRescale<uint8_t>& plane, const TRescaleAxes& axes);
void WeighPlane(const TPlaneRescale<uint16_t>& plane, const TRescaleAxes& axes);

constexpr float RESCALE_GUARD = 1.0f / 1024;
constexpr float RESCALE_LEAST_WEIGHT = 1.1920929e-07f; ///< a smaller sum of weights is none
