#include "core/RasterKernel/RescaleKernel.h"

#include "core/Base/Failure.h"
#include "core/RasterKernel/KernelChoice.h"
#include "core/RasterKernel/RescalePlane.h"

namespace {

// Calls fnPlane(plane) for each channel; the last one's samples all count.
template <class Function>
void ForEachPlane(const TRescaleJob& job, const Function& fnPlane) {
    for (size_t n = 0; n < job.nChannels; ++n) {
        const uint8_t* pAlpha = n + 1 < job.nChannels ? job.apFrom[job.nChannels - 1] : nullptr;
        fnPlane(
            TPlaneRescale<uint8_t>{job.apTo[n], job.nToStride, job.rcTo, job.apFrom[n], pAlpha, job.rcFrom});
    }
}

void Nearest(const TRescaleJob& job) {
    ForEachPlane(job, [&](const TPlaneRescale<uint8_t>& plane) {
        for (int32_t y = 0; y < plane.rcTo.Height(); ++y) {
            const ptrdiff_t nRow =
                ptrdiff_t{job.axes.down.First(plane.rcTo.top + y) - plane.rcFrom.top} * plane.rcFrom.Width() -
                plane.rcFrom.left;
            uint8_t* pTo = plane.pTo + y * plane.nToStride;
            for (int32_t x = plane.rcTo.left; x < plane.rcTo.right; ++x) {
                const ptrdiff_t i = nRow + job.axes.across.First(x);
                *pTo++ = plane.pAlpha && !plane.pAlpha[i] ? uint8_t{0} : plane.pFrom[i];
            }
        }
    });
}

void Mean(const TRescaleJob& job) {
    ForEachPlane(job, [&](const auto& plane) { MeanPlane(plane, job.axes); });
}

void Weigh(const TRescaleJob& job) {
    ForEachPlane(job, [&](const auto& plane) { WeighPlane(plane, job.axes); });
}

bool Contains(const CRect& rcOuter, const CRect& rc) { return !rc.IsEmpty() && rcOuter.Intersect(rc) == rc; }

ERescaleKind KindOf(CSize szFrom, CSize szTo, ERescaleMode mode) {
    SELF_CHECK(invalid_argument, szFrom.cx > 0 && szFrom.cy > 0 && szTo.cx > 0 && szTo.cy > 0);
    if (mode == ERescaleMode::Nearest) return ERescaleKind::Nearest;
    const ERescaleKind average = AverageKind(szFrom, szTo);
    if (average == ERescaleKind::Mean || (szFrom.cx >= szTo.cx && szFrom.cy >= szTo.cy)) return average;
    return mode == ERescaleMode::Bilinear ? ERescaleKind::Bilinear : ERescaleKind::Bicubic;
}

} // namespace

TRescaleKernel PlainRescaleKernel(ERescaleKind kind) {
    return kind == ERescaleKind::Nearest ? Nearest : kind == ERescaleKind::Mean ? Mean : Weigh;
}

TRescaleKernel RescaleKernelOf(ERescaleKind kind) {
    if (!UsesVectorKernels()) return PlainRescaleKernel(kind);
    return kind == ERescaleKind::Nearest ? VectorNearestKernel()
           : kind == ERescaleKind::Mean  ? VectorMeanKernel()
                                         : VectorWeighKernel();
}

CRescaleMap::CRescaleMap(CSize szFrom, CSize szTo, ERescaleMode mode)
    : m_kind(KindOf(szFrom, szTo, mode)), m_axes(MakeRescaleAxes(m_kind, szFrom, szTo)) {}

CRect CRescaleMap::GetSource(const CRect& rcTo) const {
    SELF_CHECK(invalid_argument, Contains({{0, 0}, GetTo()}, rcTo));
    return {m_axes.across.First(rcTo.left), m_axes.down.First(rcTo.top),
            m_axes.across.Last(rcTo.right - 1) + 1, m_axes.down.Last(rcTo.bottom - 1) + 1};
}

void CRescaleMap::Render(uint8_t* const* apTo, ptrdiff_t nToStride, const CRect& rcTo,
                         const uint8_t* const* apFrom, const CRect& rcFrom, size_t nChannels) const {
    SELF_CHECK(invalid_argument, Contains(rcFrom, GetSource(rcTo)));
    SELF_CHECK(invalid_argument, nChannels == 1 || nChannels == 2 || nChannels == 4);
    RescaleKernelOf(m_kind)({m_axes, apTo, nToStride, rcTo, apFrom, rcFrom, nChannels});
}
