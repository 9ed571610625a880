// Fitting a path to drawn lines, beside drawing the same lines as pixels. One thread.
#include "core/PathFit/InkFit.h"
#include "core/Platform/System.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "tests/support/Hands.h"

#include <benchmark/benchmark.h>

namespace {

constexpr double TOLERANCE = 2.8; ///< path units
constexpr CSize SIZE{1000, 400};

// A clock that never advances, so that no time budget expires.
class CStillClock : public IClock {
public:
    uint32_t GetTickCount() override { return 0; }
};

THand HandOf(const std::string& strName) {
    for (THand& hand : AllHands())
        if (hand.strName == strName) return hand;
    return {};
}

void FitLine(benchmark::State& state, const std::string& strName) {
    const THand hand = HandOf(strName);
    const auto vLine = DrawnLine(hand.vPoints, hand.param);
    TFittedInk ink;
    for (auto _ : state) ink = FitInk(vLine, TOLERANCE);
    state.counters["anchors"] = static_cast<double>(ink.vAnchors.size());
    state.counters["marks"] = static_cast<double>(ink.vWidths.size());
    state.counters["samples"] = static_cast<double>(hand.vPoints.size());
}

void DrawLine(benchmark::State& state, const std::string& strName) {
    const THand hand = HandOf(strName);
    CStillClock clock;
    for (auto _ : state) {
        CStrokeRandom random;
        CRasterBrushStroke stroke({.szCanvas = SIZE, .param = hand.param, .clock = clock, .random = random});
        for (const TCtlPoint& pt : hand.vPoints) stroke.AddCtlPoint({pt.x, pt.y}, pt.pressure, pt.altitude);
        stroke.AddCtlPoint({}, FINAL_PRESSURE, UPRIGHT);
        while (!stroke.Update()) {
        }
    }
}

BENCHMARK_CAPTURE(FitLine, tremor, "tremor")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(DrawLine, tremor, "tremor")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FitLine, slow, "slow")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(DrawLine, slow, "slow")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FitLine, letters, "letters")->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
