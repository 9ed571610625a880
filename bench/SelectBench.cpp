// Selections of large canvases: the cost of selecting and of finding the outline. One thread. Masks of one
// square have separate tiles, as a tool fills them, and no shared full ones.
#include "bench/PeakMemory.h"
#include "core/RasterBuffer/SelectBuffer.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

namespace {

constexpr CSize LARGEST{12000, 12000};
constexpr CSize NOISE{4000, 4000};

void FillSquare(CAlphaBufferImpl<uint8_t>& mask, const CRect& rcSquare) {
    mask.ForEachBlockIn(rcSquare, [&](CPoint pt) {
        const auto spTile = mask.GetWritableBlock(pt);
        const CRect rc = CRect(pt, DEFAULT_BLOCKSIZE).Intersect(rcSquare);
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            std::memset(spTile->GetPixelPtr(CPoint{rc.left, y} - pt), 255, static_cast<size_t>(rc.Width()));
    });
}

// The peak of memory that `fn` allocates, in megabytes.
template <class Function>
double Megabytes(Function fn) {
    const CPeakMemory memory;
    fn();
    return static_cast<double>(memory.Get()) / 1e6;
}

void SelectAll(benchmark::State& state) {
    const auto select = [] {
        CSelectBuffer select(LARGEST);
        select.SelectAll();
        benchmark::DoNotOptimize(&select);
    };
    select(); // creates the shared full tile
    for (auto _ : state) select();
    state.counters["MB"] = Megabytes(select);
}

void Outline(benchmark::State& state, CSelectBuffer& select) {
    state.counters["MB"] = Megabytes([&] { select.UpdateOutline(); });
    state.counters["pieces"] = static_cast<double>(select.GetOutline().size());
    for (auto _ : state) select.UpdateOutline();
}

void OutlineOfAll(benchmark::State& state) {
    CSelectBuffer select(LARGEST);
    select.SelectAll();
    Outline(state, select);
}

void OutlineOfSquare(benchmark::State& state) {
    CSelectBuffer select(LARGEST);
    const auto nSide = static_cast<int32_t>(state.range(0));
    FillSquare(select.GetMask(), CRect({1000, 1000}, CSize{nSide, nSide}));
    Outline(state, select);
}

void OutlineOfNoise(benchmark::State& state) {
    CSelectBuffer select(NOISE);
    std::mt19937 random(1);
    select.GetMask().ForEachBlock([&](CPoint pt) {
        const auto spTile = select.GetMask().GetWritableBlock(pt);
        uint8_t* p = spTile->GetPixelPtr({0, 0});
        for (size_t i = 0; i < spTile->GetPlaneBytes(); ++i) p[i] = static_cast<uint8_t>(random() >> 24);
    });
    Outline(state, select);
}

} // namespace

BENCHMARK(SelectAll)->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfAll)->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfSquare)->Arg(500)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfNoise)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
