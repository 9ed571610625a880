// A whole canvas: resolving to the screen compared with memcpy, composing, flattening, panning. What
// composes many blocks uses every core, as the application does, unless the benchmark tells how many threads.
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasFrame/CanvasScreen.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathObject/PathObjects.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterKernel/Kernels.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <optional>
#include <random>

namespace {

constexpr CSize CANVAS{4000, 3000};
constexpr CSize LARGEST{12000, 12000};
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

// A filled rectangle that leaves so many pixels of the canvas on every side.
boost::shared_ptr<CClosedPathObject> MakeFrame(int32_t n) {
    const auto spPath = boost::make_shared<CClosedPathObject>();
    const CRect rc(n, n, CANVAS.cx - n, CANVAS.cy - n);
    for (const CPoint pt :
         {CPoint{rc.left, rc.top}, {rc.right, rc.top}, {rc.right, rc.bottom}, {rc.left, rc.bottom}})
        spPath->AppendControlPoint({pt.x * 8, pt.y * 8});
    return spPath;
}

CCanvasView MakeView(CSize szCanvas = CANVAS) {
    CCanvasView view;
    view.SetCanvasSize(szCanvas);
    view.Apply({}, SCREEN_4K);
    view.Center();
    return view;
}

void FlattenAll(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(static_cast<int>(state.range(0)));
    spCanvas->Flatten(); // allocates the tiles
    for (auto _ : state) {
        state.PauseTiming();
        for (const TLayerPtr& spLayer : spCanvas->GetRoot().GetChildren())
            spLayer->GetPicture().MarkAllDirty();
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
        FirstRaster(*spCanvas).MarkDirty({960, 960, 961, 961});
        benchmark::DoNotOptimize(spCanvas->Flatten());
    }
}

// Draws everything that a 4K window shows; with `bStale` the canvas is composed first.
void Repaint(benchmark::State& state, bool bStale) {
    const auto spCanvas = MakeCanvas(static_cast<int>(state.range(0)), true);
    const CCanvasView view = MakeView();
    std::optional<CCanvasScreen> screen(std::in_place);
    screen->Refresh(*spCanvas, view);
    for (auto _ : state) {
        state.PauseTiming();
        for (const TLayerPtr& spLayer : spCanvas->GetRoot().GetChildren())
            if (bStale) spLayer->GetPicture().MarkAllDirty();
        screen.emplace();
        state.ResumeTiming();
        screen->Refresh(*spCanvas, view);
    }
}

// Composes all blocks of a 4K window on so many threads: 9 layers, and a path over them.
void ComposeView(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(9, true);
    const auto spVector = CreateVectorLayer(spCanvas);
    spVector->InsertPath(MakeFrame(100));
    spCanvas->GetRoot().AddLayer(spVector, -1, false);
    std::vector<CPoint> vBlocks;
    spCanvas->GetComposite().ForEachBlockIn(CRect({0, 0}, SCREEN_4K),
                                            [&](CPoint pt) { vBlocks.push_back(pt); });
    spCanvas->ComposeAll();
    for (auto _ : state) {
        state.PauseTiming();
        for (const TLayerPtr& spLayer : spCanvas->GetRoot().GetChildren())
            spLayer->GetPicture().MarkAllDirty();
        spVector->InvalidatePath(CRect(0, 0, CANVAS.cx * 8, CANVAS.cy * 8));
        spCanvas->FlushCanvasUpdates();
        state.ResumeTiming();
        ComposeBlocks(*spCanvas, vBlocks, static_cast<size_t>(state.range(0)), {});
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

// A pen's event that changes no pixel of the largest canvas.
void UnchangedEvent(benchmark::State& state) {
    std::mt19937 random(1);
    const auto spCanvas = CreateCanvas(LARGEST);
    for (int n = 0; n < state.range(0); ++n) {
        const auto spLayer = CreateRasterLayer(spCanvas);
        Paint(*spLayer->GetRaster(), {n * 96, 960}, random);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    }
    const CCanvasView view = MakeView(LARGEST);
    CCanvasScreen screen;
    screen.Refresh(*spCanvas, view);
    for (auto _ : state) {
        spCanvas->Update();
        benchmark::DoNotOptimize(screen.Refresh(*spCanvas, view));
    }
}

// 20 full layers, and above them one with one tile.
class CLayerStep {
public:
    CLayerStep() {
        std::mt19937 random(2);
        Paint(*spLayer->GetRaster(), {960, 960}, random);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        screen.Refresh(*spCanvas, view);
    }
    boost::shared_ptr<CCanvasBuffer> spCanvas = MakeCanvas(20, true);
    boost::shared_ptr<CRasterLayerBuffer> spLayer = CreateRasterLayer(spCanvas);
    CCanvasView view = MakeView();
    CCanvasScreen screen;
};

void OpacityStep(benchmark::State& state) {
    CLayerStep step;
    for (auto _ : state) {
        step.spLayer->SetOpacity(static_cast<uint8_t>(step.spLayer->GetOpacity() ^ 1));
        step.screen.Refresh(*step.spCanvas, step.view);
    }
}

void ShowAndHide(benchmark::State& state) {
    CLayerStep step;
    for (auto _ : state) {
        step.spLayer->SetVisible(!step.spLayer->IsVisible());
        step.screen.Refresh(*step.spCanvas, step.view);
    }
}

void AddEmptyLayer(benchmark::State& state) {
    CLayerStep step;
    for (auto _ : state) {
        const auto spLayer = CreateRasterLayer(step.spCanvas);
        step.spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        step.screen.Refresh(*step.spCanvas, step.view);
        state.PauseTiming();
        step.spCanvas->GetRoot().RemoveLayer(spLayer, false);
        step.screen.Refresh(*step.spCanvas, step.view);
        state.ResumeTiming();
    }
}

// A layer under layers that are clipped to it, each to the one below it, all full.
void NestedClips(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(1, true);
    TLayerPtr spParent = spCanvas->GetRoot().GetChildren().front();
    std::vector<TLayerPtr> vLayers{spParent};
    std::mt19937 random(3);
    for (int n = 0; n < state.range(0); ++n) {
        const auto spLayer = CreateRasterLayer(spCanvas);
        CRasterBuffer& raster = *spLayer->GetRaster();
        raster.ForEachBlock([&](CPoint pt) { Paint(raster, pt, random); });
        spParent->AddLayer(spLayer, -1, false);
        vLayers.push_back(spParent = spLayer);
    }
    spCanvas->ComposeAll();
    for (auto _ : state) {
        state.PauseTiming();
        for (const TLayerPtr& spLayer : vLayers) spLayer->GetPicture().MarkAllDirty();
        state.ResumeTiming();
        spCanvas->ComposeAll();
    }
}

// A path of a hidden vector layer that reaches over the whole canvas is changed.
void HiddenPath(benchmark::State& state) {
    const auto spCanvas = MakeCanvas(1);
    const auto spLayer = CreateVectorLayer(spCanvas);
    spLayer->SetVisible(false);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    const auto spPath = MakeFrame(10);
    spLayer->InsertPath(spPath);
    const CCanvasView view = MakeView();
    CCanvasScreen screen;
    screen.Refresh(*spCanvas, view);
    for (auto _ : state) {
        spLayer->InvalidatePath(spPath->RectIncludingPath());
        screen.Refresh(*spCanvas, view);
    }
}

// One tile of a stroke at twice the resolution onto pixels: the filter and the blending.
void DoublePlane(benchmark::State& state) {
    CDoubleAlphaBuffer plane;
    plane.Create({288, 288}, DEFAULT_BLOCKSIZE);
    std::mt19937 random(4);
    plane.ForEachBlock([&](CPoint pt) {
        const auto spTile = plane.GetBlock(pt, true);
        for (size_t i = 0; i < spTile->GetPlaneBytes(); ++i)
            spTile->GetPixelPtr({0, 0})[i] = static_cast<uint8_t>(random());
    });
    CColorRasterBlockBuffer dest;
    dest.Create(DEFAULT_BLOCKSIZE, {96, 96});
    for (auto _ : state) {
        plane.BlendBlockInto(dest, nullptr);
        benchmark::ClobberMemory();
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

// Copies whole tile planes with the same number of bytes read and written.
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
BENCHMARK(ComposeView)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Pan)->Unit(benchmark::kMillisecond);
BENCHMARK(UnchangedEvent)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(OpacityStep)->Unit(benchmark::kMillisecond);
BENCHMARK(ShowAndHide)->Unit(benchmark::kMillisecond);
BENCHMARK(AddEmptyLayer)->Unit(benchmark::kMillisecond);
BENCHMARK(NestedClips)->Arg(3)->Unit(benchmark::kMillisecond);
BENCHMARK(HiddenPath)->Unit(benchmark::kMillisecond);
BENCHMARK(DoublePlane)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
