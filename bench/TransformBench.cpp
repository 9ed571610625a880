// Transforms of raster layers: resampling beside pixman's, the preview of what a window shows, accepting.
#include "core/Base/Parallel.h"
#include "core/Base/StableMath.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/RasterTransform/TransformDrag.h"
#include "core/RasterTransform/TransformOverlay.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <pixman.h>

#include <random>

namespace {

constexpr int32_t LARGE = 4000;
constexpr int32_t SMALL = 2000;
const CRect WINDOW(0, 0, 1400, 950); ///< a canvas window on a screen of 1920 by 1080, panels shown

boost::shared_ptr<CCanvasBuffer> MakeNoise(int32_t nSide) {
    const auto spCanvas = CreateCanvas({nSide, nSide});
    const auto spLayer = CreateRasterLayer(spCanvas);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spCanvas->GetRoot().SetActiveChild(spLayer);
    std::mt19937 random(1);
    spLayer->GetRaster()->ForEachBlock([&](CPoint pt) {
        const auto spTile = spLayer->GetRaster()->GetBlock(pt, true);
        uint8_t* p = spTile->GetPixelPtr({0, 0});
        for (size_t i = 0; i < spTile->GetBytes(); ++i) p[i] = static_cast<uint8_t>(random());
        spTile->ClearOutside(CRect({-pt.x, -pt.y}, spLayer->GetSize()));
    });
    return spCanvas;
}

// The corners of a square, turned by seven degrees and scaled.
TQuad Turned(int32_t nSide, double dScale) {
    TQuad quad = QuadOf({0, 0, nSide, nSide});
    const TPosition ptMiddle = MiddleOf(quad);
    const auto [dSin, dCos] = StableSinCos(0.122);
    for (TPosition& pt : quad) {
        const TPosition at = (pt - ptMiddle) * dScale;
        pt = ptMiddle + TPosition{at.x * dCos - at.y * dSin, at.x * dSin + at.y * dCos};
    }
    return quad;
}

struct TOpen {
    boost::shared_ptr<CCanvasBuffer> spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> spLayer;
    boost::shared_ptr<CTransformOverlay> spOverlay;

    explicit TOpen(int32_t nSide) : spCanvas(MakeNoise(nSide)) {
        spLayer = boost::static_pointer_cast<CRasterLayerBuffer>(spCanvas->GetActiveLayer());
        const auto& spRaster = spLayer->GetRaster();
        spOverlay = boost::make_shared<CTransformOverlay>(
            TTransformSource{spRaster->ShallowCopy(), {}, spRaster->GetRect(), {}}, spRaster, nullptr);
        spLayer->SetOverlay(spOverlay);
    }
};

void Accept(benchmark::State& state, double dScale, size_t nThreads) {
    TOpen open(LARGE);
    open.spOverlay->SetQuad(Turned(LARGE, dScale));
    for (auto _ : state) benchmark::DoNotOptimize(open.spOverlay->MakeTiles(nThreads));
}

// An event of a drag: other corners, and the blocks of the window are composed.
void Preview(benchmark::State& state) {
    TOpen open(SMALL);
    open.spCanvas->ComposeAll();
    std::vector<CPoint> vBlocks;
    open.spLayer->GetRaster()->ForEachBlockIn(WINDOW, [&](CPoint pt) { vBlocks.push_back(pt); });
    int n = 0;
    for (auto _ : state) {
        TQuad quad = Turned(SMALL, 1);
        quad[2].x += ++n % 16;
        open.spOverlay->SetQuad(quad);
        open.spCanvas->FlushCanvasUpdates();
        ComposeBlocks(*open.spCanvas, vBlocks, AvailableThreads(), [](CPoint) {});
    }
}

// The same turn by pixman, one thread, premultiplied pixels.
void Pixman(benchmark::State& state, pixman_filter_t filter) {
    const size_t nPixels = size_t{LARGE} * LARGE;
    std::vector<uint32_t> vFrom(nPixels, 0x80402010), vTo(nPixels);
    const auto image = [](std::vector<uint32_t>& v) {
        return pixman_image_create_bits(PIXMAN_a8r8g8b8, LARGE, LARGE, v.data(), LARGE * 4);
    };
    pixman_image_t* pFrom = image(vFrom);
    pixman_image_t* pTo = image(vTo);
    const auto [dSin, dCos] = StableSinCos(0.122);
    const double dHalf = LARGE / 2.0;
    pixman_f_transform_t exact{{{dCos, dSin, dHalf - dHalf * (dCos + dSin)},
                                {-dSin, dCos, dHalf + dHalf * (dSin - dCos)},
                                {0, 0, 1}}};
    pixman_transform_t transform;
    pixman_transform_from_pixman_f_transform(&transform, &exact);
    pixman_image_set_transform(pFrom, &transform);
    pixman_image_set_filter(pFrom, filter, nullptr, 0);
    for (auto _ : state)
        pixman_image_composite32(PIXMAN_OP_SRC, pFrom, nullptr, pTo, 0, 0, 0, 0, 0, 0, LARGE, LARGE);
    pixman_image_unref(pFrom);
    pixman_image_unref(pTo);
}

} // namespace

BENCHMARK_CAPTURE(Accept, turned_one_thread, 1.0, 1)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(Accept, turned, 1.0, AvailableThreads())->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Accept, third, 1.0 / 3, AvailableThreads())->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Preview)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Pixman, bilinear, PIXMAN_FILTER_BILINEAR)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
