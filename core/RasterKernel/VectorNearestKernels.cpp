// The vector form of the nearest sample, one source for every instruction set that Highway knows here.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "core/RasterKernel/VectorNearestKernels.cpp"
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "core/RasterKernel/RescaleWindow-inl.h"

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

TRescaleKernel GetNearestKernel() { return PlainRescaleKernel(ERescaleKind::Nearest); }

#else

template <class Row>
HWY_INLINE void NearestStrip(const TRescaleJob& job, const CWindow<TABLE>& window, int32_t x) {
    const auto sorted = [&](size_t n, int32_t y) HWY_ATTR {
        return Row(SourceRow(job, n, job.axes.down.First(y)) + window.GetOffset())
            .Get(dByte, window.GetShuffles(0), window.GetIndices(0));
    };
    const size_t nColors = job.nChannels - 1;
    ptrdiff_t nTo = x - job.rcTo.left;
    for (int32_t y = job.rcTo.top; y < job.rcTo.bottom; ++y, nTo += job.nToStride) {
        const auto alpha = sorted(nColors, y);
        const auto seen = hn::VecFromMask(dByte, hn::Ne(alpha, hn::Zero(dByte)));
        for (size_t n = 0; n < nColors; ++n)
            hn::StoreU(hn::And(sorted(n, y), seen), dByte, job.apTo[n] + nTo);
        hn::StoreU(alpha, dByte, job.apTo[nColors] + nTo);
    }
}

void Nearest(const TRescaleJob& job) {
    if (job.rcTo.Width() < TABLE) return PlainRescaleKernel(ERescaleKind::Nearest)(job);
    CWindow<TABLE> window;
    ForEachStrip<TABLE>(job, [&](int32_t x) HWY_ATTR {
        window.Set(job.axes.across, x, job.rcFrom, false);
        window.WithRow([&]<class Row>() HWY_ATTR { NearestStrip<Row>(job, window, x); });
    });
}

TRescaleKernel GetNearestKernel() { return Nearest; }

#endif

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
HWY_EXPORT(GetNearestKernel);

TRescaleKernel VectorNearestKernel() { return HWY_DYNAMIC_DISPATCH(GetNearestKernel)(); }
#endif
