// A whole canvas: resolving it to the screen beside memcpy, composing, flattening and panning. One thread.
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasFrame/CanvasScreen.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterKernel/Kernels.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

namespace {

constexpr CSize CANVAS{4000, 3000};
constexpr CSize SCREEN_4K{3840, 2160};

// Smooth opaque and soft pixels, as a painted picture has them.
void Paint(CRasterBuffer& raster, CPoint pt, std::mt19937& random) {
    const auto spTile = raster.CreateBlock(pt);
    uint8_t* p = spTile->GetPixelPtr({0, 0});
    for (size_t i = 0; i < spTile->GetPlaneBytes() * 4; ++i) p[i] = static_cast<uint8_t>(random());
    raster.SetBlock(pt, spTile);
}

// A canvas of `nLayers` raster layers, every second tile of each empty unless `bFull`.
boost::shared_ptr<CCanvasBuffer> MakeCanvas(int nLayers, bool bFull = false) {
    std::mt19937 random(1);
    const auto spCanvas = CreateCanvas(CANVAS);
    for (int n = 0; n < nLayers; ++n) {
        const auto spLayer = CreateRasterLayer(spCanvas);
        CRasterBuffer& raster = *spLayer->GetRaster();
        raster.ForEachBlock([&](CPoint pt) {
            if (bFull || (pt.x / 96 + pt.y / 96 + n) % 2) Paint(raster, pt, random);
        });
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    }
    return spCanvas;
}

CRasterBuffer& FirstRaster(CCanvasBuffer& canvas) {
    return *dynamic_cast<CRasterLayerBuffer&>(*canvas.GetRoot().GetChildren().front()).GetRaster();
}

size_t CountTiles(CCanvasBuffer& canvas) {
    size_t nTiles = 0;
    for (const TLayerPtr& spLayer : canvas.GetRoot().GetChildren()) {
        CRasterBuffer& raster = *dynamic_cast<CRasterLayerBuffer&>(*spLayer).GetRaster();
        raster.ForEachBlock([&](CPoint pt) { nTiles += raster.GetBlock(pt, false) != nullptr; });
    }
    return nTiles;
}

CCanvasView MakeView() {
    CCanvasView view;
    view.SetCanvasSize(CANVAS);
    view.Apply({}, SCREEN_4K);
    view.Center();
    return view;
}

void FlattenAll(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(static_cast<int>(state.range(0)));
    spCanvas->Flatten(); // the tiles' memory is there
    for (auto _ : state) {
        state.PauseTiming();
        for (const TLayerPtr& spLayer : spCanvas->GetRoot().GetChildren()) spLayer->MarkAllDirty();
        state.ResumeTiming();
        benchmark::DoNotOptimize(spCanvas->Flatten());
    }
    state.counters["time/tile"] =
        benchmark::Counter(static_cast<double>(CountTiles(*spCanvas)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void FlattenUnchanged(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(20);
    spCanvas->Flatten();
    for (auto _ : state) benchmark::DoNotOptimize(spCanvas->Flatten());
}

void FlattenOneBlock(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(20);
    spCanvas->Flatten();
    for (auto _ : state) {
        FirstRaster(*spCanvas).DirtyAt({960, 960}) = 1;
        benchmark::DoNotOptimize(spCanvas->Flatten());
    }
}

// Draws everything that a 4K window shows; with `bStale` the canvas is composed first.
void Repaint(benchmark::State& state, bool bStale) {
    const auto spCanvas = MakeCanvas(static_cast<int>(state.range(0)), true);
    const CCanvasView view = MakeView();
    CCanvasScreen screen;
    screen.Refresh(*spCanvas, view);
    for (auto _ : state) {
        state.PauseTiming();
        for (const TLayerPtr& spLayer : spCanvas->GetRoot().GetChildren())
            if (bStale) spLayer->MarkAllDirty();
        screen.Drop();
        state.ResumeTiming();
        screen.Refresh(*spCanvas, view);
    }
}

void Pan(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(3, true);
    spCanvas->ComposeAll();
    CCanvasView view = MakeView();
    const CPoint ptHome = view.GetScroll();
    CCanvasScreen screen;
    screen.Refresh(*spCanvas, view);
    int32_t nStep = 0;
    for (auto _ : state) {
        nStep = nStep ? 0 : 96;
        view.ScrollTo(ptHome + CPoint{nStep, nStep});
        screen.Refresh(*spCanvas, view);
    }
}

// Resolves every tile that a 4K window shows, row by row, as drawing at 100% does: 4 bytes read, 4 written.
void Resolve(benchmark::State& state, const TBlendKernels& kernels, bool bOpaque) {
    const auto spCanvas = MakeCanvas(1, true);
    CRasterBuffer& raster = FirstRaster(*spCanvas);
    if (bOpaque)
        raster.ForEachBlock([&](CPoint pt) {
            auto& tile = static_cast<CColorRasterBlockBuffer&>(*raster.GetBlock(pt, false));
            std::memset(tile.GetAlpha(), 255, tile.GetPlaneBytes());
        });
    CGDIBuffer target(SCREEN_4K);
    for (auto _ : state) {
        for (int32_t y = 0; y + 96 <= SCREEN_4K.cy; y += 96)
            for (int32_t x = 0; x < SCREEN_4K.cx; x += 96) {
                const auto spTile = raster.GetBlock({x, y}, false);
                const auto& tile = static_cast<const CColorRasterBlockBuffer&>(*spTile);
                for (int32_t n = 0; n < 96; ++n)
                    kernels.pResolveColor(target.GetPixelPtr({x, y + n}),
                                          tile.Pixels(static_cast<size_t>(n) * 96), 96);
            }
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * SCREEN_4K.cx *
                            (SCREEN_4K.cy / 96 * 96) * 8);
}

// As many bytes read and written by plain copies of whole tile planes' size.
void Copy(benchmark::State& state) {
    const size_t nBytes = static_cast<size_t>(SCREEN_4K.cx) * (SCREEN_4K.cy / 96 * 96) * 4;
    std::vector<uint8_t> vFrom(nBytes, 1);
    std::vector<uint8_t> vTo(nBytes, 2);
    for (auto _ : state) {
        std::memcpy(vTo.data(), vFrom.data(), nBytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * nBytes * 2));
}

} // namespace

BENCHMARK_CAPTURE(Resolve, plain, PlainKernels(), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Resolve, vector, VectorKernels(), false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Resolve, vector_opaque, VectorKernels(), true)->Unit(benchmark::kMillisecond);
BENCHMARK(Copy)->Unit(benchmark::kMillisecond);
BENCHMARK(FlattenAll)->Arg(1)->Arg(5)->Arg(20)->Unit(benchmark::kMillisecond);
BENCHMARK(FlattenUnchanged)->Unit(benchmark::kMillisecond);
BENCHMARK(FlattenOneBlock)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Repaint, composed, false)->Arg(3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Repaint, stale, true)->Arg(1)->Arg(3)->Arg(9)->Unit(benchmark::kMillisecond);
BENCHMARK(Pan)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
