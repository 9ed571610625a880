// Changes of the canvas's size: time, and the memory that they take beside what stood.
#include "bench/PeakMemory.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/ImageDialogs/FrameView.h"
#include "core/ImageOperation/RescaleCanvas.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"

#include <benchmark/benchmark.h>

#include <random>

namespace {

boost::shared_ptr<CCanvasBuffer> MakeLayers(CSize sz, int nLayers) {
    const auto spCanvas = CreateCanvas(sz);
    std::mt19937 random(1);
    for (int n = 0; n < nLayers; ++n) {
        const auto spLayer = CreateRasterLayer(spCanvas);
        spLayer->GetRaster()->ForEachBlock([&](CPoint pt) {
            const auto spTile = spLayer->GetRaster()->GetBlock(pt, true);
            uint8_t* p = spTile->GetPixelPtr({0, 0});
            for (size_t i = 0; i < spTile->GetBytes(); i += 4)
                *reinterpret_cast<uint32_t*>(p + i) = static_cast<uint32_t>(random());
            spTile->ClearOutside(CRect({-pt.x, -pt.y}, sz));
        });
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    }
    return spCanvas;
}

/// The most memory beside what stood, in megabytes, and the goal: the new planes and one layer.
void RescaleMemory(benchmark::State& state, CSize szTo) {
    constexpr CSize SIZE{4000, 3000};
    constexpr int LAYERS = 10;
    const auto spCanvas = MakeLayers(SIZE, LAYERS);
    const double dLayer = static_cast<double>(spCanvas->GetRoot().GetBytes(nullptr)) / LAYERS;
    for (auto _ : state) {
        const CPeakMemory memory;
        RescaleCanvas(spCanvas, szTo, ERescaleMode::Bicubic);
        state.counters["MB"] = static_cast<double>(memory.Get()) / 1e6;
        const auto dNew = static_cast<double>(spCanvas->GetRoot().GetBytes(nullptr));
        state.counters["goal"] = (dNew + dLayer) / 1e6;
        spCanvas->GetHistory().Undo();
        spCanvas->GetHistory().Clear();
    }
}

/// The largest canvas, moved by a part of a tile.
void ShiftLargest(benchmark::State& state) {
    const auto spCanvas = MakeLayers({MAX_CANVAS_SIDE - 50, MAX_CANVAS_SIDE - 50}, 1);
    for (auto _ : state) {
        ResizeCanvas(spCanvas, {MAX_CANVAS_SIDE, MAX_CANVAS_SIDE}, ShiftChange({25, 25}), L"");
        spCanvas->GetHistory().Undo();
        spCanvas->GetHistory().Clear();
    }
}

BENCHMARK_CAPTURE(RescaleMemory, 55 percent, CSize{2200, 1650})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RescaleMemory, 150 percent, CSize{6000, 4500})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RescaleMemory, 1 percent, CSize{40, 30})->Unit(benchmark::kMillisecond);
/// The picture of the dialog of margins, of which nothing was composed before.
void SmallPictureOfLargest(benchmark::State& state) {
    const auto spCanvas = MakeLayers({MAX_CANVAS_SIDE, MAX_CANVAS_SIDE}, static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(MakeSmallPicture(*spCanvas, NoProgress()));
}

BENCHMARK(SmallPictureOfLargest)->Arg(1)->Arg(3)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ShiftLargest)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
