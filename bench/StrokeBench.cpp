// Strokes compared with libmypaint: dabs per second along the same path at the same positions, the first
// stamp of a size, and a whole recorded stroke. One thread.
#include "bench/RecordedStroke.h"
#include "core/Platform/System.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "core/RasterStroke/RasterPencilStroke.h"

#include <benchmark/benchmark.h>
#include <mypaint-fixed-tiled-surface.h>

#include <cmath>
#include <cstdlib>
#include <memory>

namespace {

constexpr int SIDE = 2000;
constexpr double STEP = 40; // pixels from event to event

// A clock that never advances, so that no time budget expires.
class CStillClock : public IClock {
public:
    uint32_t GetTickCount() override { return 0; }
};

CStillClock g_clock;

TBrushParam ParamOf(int64_t nRadius) {
    TBrushParam param;
    param.BrushRadius = static_cast<uint32_t>(nRadius) * 2;
    param.BlurLevel = Recorded::BLUR_LEVEL;
    param.PressRadius = false;
    return param;
}

// A point that moves over the canvas and bounces off its edges.
struct TRunner {
    double x = SIDE / 2.0, y = SIDE / 2.0, dx = 0.83, dy = 0.5578;

    void Go(double d) {
        x += dx * d;
        y += dy * d;
        if (x < 100 || x > SIDE - 100) dx = x < 100 ? std::abs(dx) : -std::abs(dx);
        if (y < 100 || y > SIDE - 100) dy = y < 100 ? std::abs(dy) : -std::abs(dy);
    }
    CPoint Eighths() const { return {static_cast<int32_t>(x * 8), static_cast<int32_t>(y * 8)}; }
};

template <class Stroke>
void Dabs(benchmark::State& state, TBrushParam param, double dSpacing) {
    CStrokeRandom random;
    Stroke stroke({.szCanvas = {SIDE, SIDE}, .param = param, .clock = g_clock, .random = random});
    TRunner runner;
    for (int n = 0; n < 100; ++n) stroke.AddCtlPoint(runner.Eighths(), 1024, 90), runner.Go(STEP);
    stroke.Update();
    for (auto _ : state) {
        runner.Go(STEP);
        stroke.AddCtlPoint(runner.Eighths(), 1024, 90);
        stroke.Update();
    }
    state.SetItemsProcessed(static_cast<int64_t>(static_cast<double>(state.iterations()) * STEP / dSpacing));
}

void OurDabs(benchmark::State& state) {
    Dabs<CRasterBrushStroke>(state, ParamOf(state.range(0)),
                             Recorded::SpacingAt(static_cast<uint32_t>(state.range(0))));
}

void PencilDabs(benchmark::State& state) {
    TBrushParam param = ParamOf(state.range(0));
    const auto uRadius = static_cast<uint32_t>(state.range(0)) << 13;
    Dabs<CRasterPencilStroke>(state, param, std::clamp(uRadius >> 12, 8u, 16u) / 8.0);
}

using TSurface = std::unique_ptr<MyPaintSurface, decltype(&mypaint_surface_unref)>;

TSurface MakeSurface(int nSide) {
    return {mypaint_fixed_tiled_surface_interface(mypaint_fixed_tiled_surface_new(nSide, nSide)),
            mypaint_surface_unref};
}

void MyPaintDabs(benchmark::State& state) {
    const TSurface spSurface = MakeSurface(SIDE);
    const double dSpacing = Recorded::SpacingAt(static_cast<uint32_t>(state.range(0)));
    const auto fRadius = static_cast<float>(state.range(0));
    TRunner runner;
    int64_t nDabs = 0;
    double dRest = 0;
    for (auto _ : state) {
        mypaint_surface_begin_atomic(spSurface.get());
        for (; dRest < STEP; dRest += dSpacing, ++nDabs) {
            runner.Go(dSpacing);
            mypaint_surface_draw_dab(spSurface.get(), static_cast<float>(runner.x),
                                     static_cast<float>(runner.y), fRadius, 0, 0, 0, 1, Recorded::HARDNESS, 1,
                                     1, 0, 0, 0);
        }
        dRest -= STEP;
        MyPaintRectangle rc;
        mypaint_surface_end_atomic(spSurface.get(), &rc);
    }
    state.SetItemsProcessed(nDabs);
}

void FirstStamp(benchmark::State& state) {
    const auto uRadius = static_cast<uint32_t>(state.range(0)) << 13;
    const TStampShape shape = MakeStampShape(uRadius, static_cast<uint32_t>(state.range(1)), 1);
    std::vector<uint16_t> vStamp(StampLength(shape.GetHalfSize()));
    const int nLostBits = state.range(0) < 64 ? 2 : 3;
    for (auto _ : state) CStampDisc(shape, nLostBits).Cut(vStamp.data(), 0, 0);
}

void OurStroke(benchmark::State& state) {
    TBrushParam param = ParamOf(Recorded::RADIUS);
    param.PressRadius = state.range(0) != 0;
    CStrokeRandom random;
    for (auto _ : state) {
        CRasterBrushStroke stroke({.szCanvas = {Recorded::CANVAS, Recorded::CANVAS},
                                   .param = param,
                                   .clock = g_clock,
                                   .random = random});
        for (int n = 0; n < Recorded::EVENTS; ++n) {
            const Recorded::TEvent event = Recorded::EventAt(n);
            stroke.AddCtlPoint({static_cast<int32_t>(event.x * 8), static_cast<int32_t>(event.y * 8)},
                               static_cast<uint32_t>(event.dPressure * 1024), 90);
            stroke.Update();
        }
        stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
        stroke.Update();
    }
}

} // namespace

BENCHMARK(OurDabs)->Name("dabs/ours/radius")->Arg(2)->Arg(8)->Arg(32)->Arg(128);
BENCHMARK(MyPaintDabs)->Name("dabs/libmypaint/radius")->Arg(2)->Arg(8)->Arg(32)->Arg(128);
BENCHMARK(PencilDabs)->Name("dabs/pencil/radius")->Arg(2)->Arg(8);
BENCHMARK(FirstStamp)
    ->Name("first stamp/radius,hardness")
    ->ArgsProduct({{32, 128, 256}, {0, 75, 100}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(OurStroke)
    ->Name("2000 events/ours/pressure on radius")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Recorded::MyPaintStroke)
    ->Name("2000 events/libmypaint/dense as ours")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    // libmypaint would distribute its tiles to threads.
    setenv("OMP_NUM_THREADS", "1", 1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
