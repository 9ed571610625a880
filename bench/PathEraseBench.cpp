// The vector eraser over a layer of thousands of strokes: what a hovering pointer finds and shows, and a cut.
// One thread.
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/PathErase/EraseHistory.h"
#include "core/PathErase/ErasePreview.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <ctime>
#include <random>

namespace {

constexpr int32_t SIDE = 4000; ///< of the canvas in pixels
constexpr int EVENTS = 512;

// Of this program, so that others' load does not count.
double CpuMilliseconds() { return std::clock() * (1000.0 / CLOCKS_PER_SEC); }

// A drawing of short curved strokes of varying width, most of them beside and across each other.
boost::shared_ptr<CVectorLayerBuffer> MakeLayer(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                                                int nStrokes) {
    std::mt19937 random(4);
    const auto below = [&](uint32_t u) { return static_cast<int32_t>(random() % u); };
    const auto spLayer = CreateVectorLayer(spCanvas);
    for (int n = 0; n < nStrokes; ++n) {
        const auto spPath = boost::make_shared<COpenPathObject>();
        COpenPathStream& stream = spPath->GetStream();
        CPoint pt{below(SIDE * 8), below(SIDE * 8)};
        CPoint way{below(1200) - 600, below(1200) - 600};
        for (int i = 0; i < 5; ++i) {
            const auto spPoint = stream.AppendControlPoint(pt);
            const CPoint handle{way.x / 3, way.y / 3};
            spPoint->SetFore(CDualValue<CPoint>(handle));
            spPoint->SetBack(CDualValue<CPoint>({-handle.x, -handle.y}));
            pt = pt + way;
            way = way + CPoint{below(400) - 200, below(400) - 200};
        }
        stream.SetWidth(16);
        for (uint32_t i = 0; i < 3; ++i)
            stream.AddWidthPoint(0x8000 + i * 0x14000)
                ->SetMultiple(SIDE_LEFT,
                              CDualValue<uint32_t>(0x8000u + static_cast<uint32_t>(below(0x10000))));
        spPath->Update();
        spLayer->InsertPath(spPath);
    }
    return spLayer;
}

// The pointer moves over the middle of the drawing; each event finds what would go and makes its lines.
void Hover(benchmark::State& state) {
    const auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Create({SIDE, SIDE});
    const auto spLayer = MakeLayer(spCanvas, static_cast<int>(state.range(0)));
    const auto mode = static_cast<EEraseMode>(state.range(1));
    std::vector<double> vTimes;
    size_t nFound = 0;
    for (auto _ : state) {
        CStrokeLines lines; // as after a change of the drawing
        for (int n = 0; n < EVENTS; ++n) {
            const TVector at{SIDE * 4 + 9000 * std::cos(n * 0.021), SIDE * 4 + 9000 * std::sin(n * 0.034)};
            const double dStart = CpuMilliseconds();
            const auto vErased = PlanErase(*spLayer, lines, {{at, at}, 40}, mode);
            const auto vLines = GetErasedLines(vErased);
            const auto vBoxes = BoxesOfLines(vLines, TOverlayMapper([](CPoint pt) {
                                                 return CPoint{pt.x / 8, pt.y / 8};
                                             }));
            benchmark::DoNotOptimize(vBoxes.size());
            vTimes.push_back(CpuMilliseconds() - dStart);
            nFound += vErased.size();
        }
    }
    std::ranges::sort(vTimes);
    state.counters["p50"] = vTimes[vTimes.size() / 2];
    state.counters["p99"] = vTimes[vTimes.size() * 99 / 100];
    state.counters["max"] = vTimes.back();
    state.counters["found"] = static_cast<double>(nFound) / static_cast<double>(vTimes.size());
}

// An event of a drag that takes what it touches.
void Erase(benchmark::State& state) {
    const auto spCanvas = boost::make_shared<CCanvasBuffer>();
    spCanvas->Create({SIDE, SIDE});
    const auto spLayer = MakeLayer(spCanvas, static_cast<int>(state.range(0)));
    const auto mode = static_cast<EEraseMode>(state.range(1));
    std::vector<double> vTimes;
    for (auto _ : state) {
        CStrokeLines lines;
        CErasePathsHistory erased(L"", spLayer);
        TVector from{SIDE * 4.0 + 9000, SIDE * 4.0};
        for (int n = 1; n < EVENTS; ++n) {
            const TVector at{SIDE * 4 + 9000 * std::cos(n * 0.021), SIDE * 4 + 9000 * std::sin(n * 0.034)};
            const double dStart = CpuMilliseconds();
            for (const TErasedPath& path : PlanErase(*spLayer, lines, {{from, at}, 40}, mode))
                erased.Erase(path.spPath, MakeRest(path));
            vTimes.push_back(CpuMilliseconds() - dStart);
            from = at;
        }
        erased.Undo();
    }
    std::ranges::sort(vTimes);
    state.counters["p50"] = vTimes[vTimes.size() / 2];
    state.counters["p99"] = vTimes[vTimes.size() * 99 / 100];
}

} // namespace

BENCHMARK(Hover)
    ->Name("hover/strokes,mode")
    ->ArgsProduct({{10, 10000}, {0, 1, 2}})
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Erase)
    ->Name("erase/strokes,mode")
    ->ArgsProduct({{10000}, {0, 1, 2}})
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
