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

void Nearest(const TRescaleJob& job) {
    if (job.rcTo.Width() < TABLE) return PlainRescaleKernel(ERescaleKind::Nearest)(job);
    CWindow<TABLE> window;
    const size_t nLast = job.nChannels - 1;
    ForEachStrip<TABLE>(job, [&](int32_t x) HWY_ATTR {
        window.Set(job.axes.across, x, job.rcFrom, false);
        ptrdiff_t nTo = x - job.rcTo.left;
        for (int32_t y = job.rcTo.top; y < job.rcTo.bottom; ++y, nTo += job.nToStride) {
            auto seen = hn::Zero(dByte);
            for (size_t n = job.nChannels; n-- > 0;)
                window.ForEachTap(dByte, SourceRow(job, n, job.axes.down.First(y)), 1,
                                  [&](size_t, hn::Vec<DByte> v) HWY_ATTR {
                                      if (n == nLast)
                                          seen = hn::VecFromMask(dByte, hn::Ne(v, hn::Zero(dByte)));
                                      else
                                          v = hn::And(v, seen);
                                      hn::StoreU(v, dByte, job.apTo[n] + nTo);
                                  });
        }
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
