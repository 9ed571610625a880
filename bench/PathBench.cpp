// Vector strokes: building an outline from scratch and while one anchor is dragged, rasterizing and
// repainting a layer of thousands of them. One thread.
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathObject/PathObjects.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

// A drawn line of `nAnchors` anchors about 40 pixels apart with a width point between every few of them.
boost::shared_ptr<COpenPathObject> MakeStroke(CPoint ptStart, int nAnchors, int nWidths, int32_t nStep,
                                              std::mt19937& random) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    stream.SetWidth(24);
    const double dPhase = random() % 628 / 100.0;
    for (int n = 0; n < nAnchors; ++n) {
        const auto spPoint = stream.AppendControlPoint(
            {ptStart.x + n * nStep,
             ptStart.y + static_cast<int32_t>(nStep * 2 * std::sin(n * 0.7 + dPhase))});
        const CPoint handle{nStep / 3, static_cast<int32_t>(nStep / 2 * std::cos(n * 0.7 + dPhase))};
        spPoint->SetFore(CDualValue<CPoint>(handle));
        spPoint->SetBack(CDualValue<CPoint>({-handle.x, -handle.y}));
    }
    for (int n = 0; n < nWidths; ++n) {
        const auto t = static_cast<uint32_t>((n + 0.5) * (nAnchors - 1) / nWidths * BEZIER_T_RESOLUTION);
        const auto spWidth = stream.AddWidthPoint(t);
        const CDualValue<uint32_t> multiple(FIXED_ONE / 2 + random() % FIXED_ONE);
        spWidth->SetMultiple(SIDE_LEFT, multiple);
        spWidth->SetMultiple(SIDE_RIGHT, multiple);
    }
    spPath->Update();
    return spPath;
}

// Moves all anchors each time.
void BuildAnew(benchmark::State& state) {
    std::mt19937 random(1);
    const auto spPath = MakeStroke({800, 8000}, 50, 20, 320, random);
    int32_t nStretch = 0;
    for (auto _ : state) {
        nStretch = (nStretch + 1) % 32;
        int32_t n = 0;
        for (const auto& spPoint : spPath->GetStream().GetControlPoints()) {
            CDualValue<CPoint> anchor = spPoint->GetAnchor();
            anchor[STATE_LIVE].x = anchor[STATE_COMMITTED].x + nStretch * (n++ % 3);
            spPoint->SetAnchor(anchor);
        }
        spPath->UpdateDrag();
    }
}

// One event of a drag of the anchor in the middle.
void BuildInDrag(benchmark::State& state) {
    std::mt19937 random(1);
    const auto nAnchors = static_cast<int>(state.range(0));
    const auto spPath = MakeStroke({800, 8000}, nAnchors, 20, 320, random);
    spPath->GetStream().SetWave(state.range(1) != 0, {32, 4});
    spPath->Update();
    const auto spPoint = *std::next(spPath->GetStream().GetControlPoints().begin(), nAnchors / 2);
    for (auto _ : state) {
        CDualValue<CPoint> anchor = spPoint->GetAnchor();
        ++anchor[STATE_LIVE].y;
        spPoint->SetAnchor(anchor);
        spPath->UpdateDrag();
    }
}

constexpr CSize CANVAS{4000, 4000};
constexpr int PATHS = 5000;

struct TPage {
    boost::shared_ptr<CCanvasBuffer> spCanvas = CreateCanvas(CANVAS);
    boost::shared_ptr<CVectorLayerBuffer> spLayer = CreateVectorLayer(spCanvas);

    TPage() {
        std::mt19937 random(2);
        for (int n = 0; n < PATHS; ++n) {
            const CPoint pt{static_cast<int32_t>(random() % 30000), static_cast<int32_t>(random() % 32000)};
            spLayer->InsertPath(MakeStroke(pt, 6, 3, 160 + static_cast<int32_t>(random() % 300), random));
        }
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        spCanvas->ComposeAll();
    }
};

void RasterizeLayer(benchmark::State& state) {
    TPage page;
    for (auto _ : state) {
        page.spLayer->InvalidatePath({0, 0, CANVAS.cx * 8, CANVAS.cy * 8});
        page.spCanvas->ComposeAll();
    }
}

void MovePath(benchmark::State& state) {
    TPage page;
    std::vector<boost::shared_ptr<CPathObject>> vPaths(page.spLayer->GetPaths().begin(),
                                                       page.spLayer->GetPaths().end());
    size_t n = 0;
    for (auto _ : state) {
        const int32_t nWay = n % 2 ? -80 : 80;
        vPaths[n++ * 37 % vPaths.size()]->Transform([&](CPoint pt) { return CPoint{pt.x + nWay, pt.y}; });
        page.spCanvas->ComposeAll();
    }
}

BENCHMARK(BuildAnew)->Unit(benchmark::kMicrosecond);
BENCHMARK(BuildInDrag)
    ->ArgNames({"anchors", "wave"})
    ->Args({50, 0})
    ->Args({200, 1})
    ->Args({1000, 1})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(RasterizeLayer)->Unit(benchmark::kMillisecond);
BENCHMARK(MovePath)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
