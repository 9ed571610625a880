// Selections of large canvases: the cost of selecting and of finding the outline. One thread. Masks of one
// square have separate tiles, as a tool fills them, and no shared full ones.
#include "bench/PeakMemory.h"
#include "core/RasterMove/SelectShape.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr CSize LARGEST{12000, 12000};
constexpr CSize CANVAS{4000, 4000};

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
    CSelectBuffer select(CANVAS);
    std::mt19937 random(1);
    select.GetMask().ForEachBlock([&](CPoint pt) {
        const auto spTile = select.GetMask().GetWritableBlock(pt);
        uint8_t* p = spTile->GetPixelPtr({0, 0});
        for (size_t i = 0; i < spTile->GetPlaneBytes(); ++i) p[i] = static_cast<uint8_t>(random() >> 24);
    });
    Outline(state, select);
}

// A lasso as a hand draws it: around nearly all of the canvas with a trembling line, or to and fro over
// it so that the outline crosses itself again and again.
std::vector<CPoint> LassoPoints(bool bHatch) {
    constexpr int POINTS = 5000, SWEEPS = 20;
    constexpr double TURN = 2 * 3.14159265358979;
    std::mt19937 random(1);
    std::vector<CPoint> vPoints;
    for (int n = 0; n < POINTS; ++n) {
        const double d = n * TURN / POINTS;
        const double dRadius = 1750 + 150 * std::sin(7 * d) + 40 * std::sin(61 * d);
        const double x = bHatch ? 200 + n * 3600.0 / POINTS : 2000 + dRadius * std::cos(d);
        const double y = bHatch ? 2000 + 1800 * std::cos(SWEEPS * d) : 2000 + dRadius * std::sin(d);
        vPoints.push_back({static_cast<int32_t>(x) + static_cast<int32_t>(random() % 3),
                           static_cast<int32_t>(y) + static_cast<int32_t>(random() % 3)});
    }
    return vPoints;
}

// From the points of a lasso to the selection with its outline, in place of another one.
void Lasso(benchmark::State& state) {
    const std::vector<CPoint> vPoints = LassoPoints(state.range(0) != 0);
    TSelectPtr spSelect;
    const auto select = [&] {
        const bool bAntialias = state.range(1) != 0;
        spSelect = CombineSelect({}, MakeShapeSelect(ESelectShape::Polygon, vPoints, bAntialias, CANVAS),
                                 EShapeMode::Replace);
    };
    for (auto _ : state) select();
    state.counters["MB"] = Megabytes([&] { spSelect.reset(), select(); });
    state.counters["tiles"] = static_cast<double>(spSelect->GetBytes(nullptr)) / (96 * 96);
}

} // namespace

BENCHMARK(Lasso)->ArgNames({"hatch", "soft"})->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(SelectAll)->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfAll)->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfSquare)->Arg(500)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(OutlineOfNoise)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
