// Planes of one size as planes of another; all forms of the kernels give the same bytes.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterKernel/RescaleAxis.h"

#include <cstddef>
#include <cstdint>

enum class ERescaleMode { Nearest, Bilinear, Bicubic };

/// A rectangle of planes to resample, as CRescaleMap::Render takes it.
struct TRescaleJob {
    const TRescaleAxes& axes;
    uint8_t* const* apTo;
    ptrdiff_t nToStride;
    CRect rcTo;
    const uint8_t* const* apFrom;
    CRect rcFrom;
    size_t nChannels;
};

using TRescaleKernel = void (*)(const TRescaleJob& job);

/// The definition.
TRescaleKernel PlainRescaleKernel(ERescaleKind kind);
/// The vector forms, compiled for several instruction sets and selected at run time.
TRescaleKernel VectorNearestKernel();
TRescaleKernel VectorMeanKernel();
TRescaleKernel VectorWeighKernel(); ///< of all other kinds
/// The form in use.
TRescaleKernel RescaleKernelOf(ERescaleKind kind);

/// How planes of one size become planes of another: made once, then usable by any thread for any rectangle.
/// With bilinear and bicubic, sizes that shrink in both axes are averaged: exactly where they are whole
/// multiples, by covered area otherwise.
class CRescaleMap {
public:
    /// All sides are positive.
    CRescaleMap(CSize szFrom, CSize szTo, ERescaleMode mode);

    CSize GetFrom() const { return {m_axes.across.nFrom, m_axes.down.nFrom}; }
    CSize GetTo() const { return {m_axes.across.nTo, m_axes.down.nTo}; }
    /// The source pixels that a rectangle of the destination needs; it is inside and not empty.
    CRect GetSource(const CRect& rcTo) const;
    /// Resamples a rectangle. `apTo` has nChannels planes, whose pixel (rcTo.left + x, rcTo.top + y) is at
    /// y * nToStride + x; the planes of `apFrom` hold rcFrom, which contains GetSource(rcTo), in rows of
    /// rcFrom.Width(). Channels are 1 (coverage alone), 2 (grey and alpha) or 4 (R, G, B and alpha). Colours
    /// of alpha 0 do not count, and are 0 where nothing counts. The bytes do not depend on how the
    /// destination is cut.
    void Render(uint8_t* const* apTo, ptrdiff_t nToStride, const CRect& rcTo, const uint8_t* const* apFrom,
                const CRect& rcFrom, size_t nChannels) const;

private:
    ERescaleKind m_kind;
    TRescaleAxes m_axes;
};
