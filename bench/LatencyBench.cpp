// Latency from a tablet event to its pixels: events are sent to the real window (on Qt's offscreen
// platform), the session's own loop handles them, and the time ends when the changed part is in the
// window's backing image. Reports the median, the 99th percentile and the maximum in milliseconds: for
// several brush sizes, for the recorded stroke, and for documents of few and many layers with the layer panel
// hidden and shown by turns, with the idle work between event and image. Beside them the same of processor
// time, which other work on the machine disturbs less.
#include "bench/BenchWindow.h"

#include <cmath>

namespace {

constexpr int EVENTS = 5000;
constexpr int LIFTS = 30; // more than the longest stroke end needs

// Simulates a drawing hand: loops over the window, varying pressure, an occasional lift.
void DrawLoops(CBenchWindow& window, CTimes& times, uint32_t uRadius) {
    window.SetZoom(48);
    window.GetTool().GetParam() = {.BrushRadius = uRadius * 2};
    for (int n = 0; n < EVENTS; ++n) {
        const double d = n * 0.02;
        window.Pen(times, {960 + 700 * std::sin(d), 520 + 380 * std::sin(1.7 * d)},
                   n % 500 > 490 ? 0 : 0.55 + 0.4 * std::sin(d * 3));
    }
    window.Finish();
}

void Latency(benchmark::State& state, CBenchWindow& window) {
    CTimes times;
    for (auto _ : state) DrawLoops(window, times, static_cast<uint32_t>(state.range(0)));
    times.Report(state);
}

// The same in a document of some layers, by turns with the layer panel hidden and shown, so that what else
// the machine does disturbs both alike.
void LatencyBesidePanel(benchmark::State& state, CBenchWindow& window) {
    window.SetLayers(static_cast<size_t>(state.range(0)));
    window.m_bIdle = true;
    CTimes hidden, shown;
    for (auto _ : state)
        for (const bool bShow : {false, true}) {
            window.ShowLayerPanel(bShow);
            DrawLoops(window, bShow ? shown : hidden, 8);
        }
    hidden.Report(state, "hidden ");
    shown.Report(state, "shown ");
    window.m_bIdle = false;
    window.SetLayers(1);
}

// The panels list a document of many layers when it is opened.
void OpenLayers(benchmark::State& state, CBenchWindow& window) {
    CTimes times;
    for (auto _ : state) window.OpenOther(times, static_cast<size_t>(state.range(0)));
    times.Report(state);
}

void StrokeInWindow(benchmark::State& state, CBenchWindow& window) {
    window.SetZoom(static_cast<uint16_t>(state.range(0)));
    window.GetTool().GetParam() = {.BrushRadius = Recorded::RADIUS * 2,
                                   .BlurLevel = Recorded::BLUR_LEVEL,
                                   .PressRadius = state.range(1) != 0};
    CTimes times;
    for (auto _ : state) {
        for (int n = 0; n < Recorded::EVENTS + LIFTS; ++n) {
            const Recorded::TEvent event = Recorded::EventAt(n);
            window.Pen(times, window.ToWindow(event.x, event.y), n < Recorded::EVENTS ? event.dPressure : 0);
        }
        window.Finish();
    }
    times.Report(state);
}

} // namespace

int main(int argc, char** argv) {
    // libmypaint would distribute its tiles to threads.
    setenv("OMP_NUM_THREADS", "1", 1);
    return RunInWindow(argc, argv, [](CBenchWindow& window) {
        benchmark::RegisterBenchmark("latency, 5000 events/radius", Latency, std::ref(window))
            ->Arg(8)
            ->Arg(64)
            ->Arg(256)
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("latency, 5000 events beside the panel/layers", LatencyBesidePanel,
                                     std::ref(window))
            ->Arg(5)
            ->Arg(500)
            ->Iterations(10)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("open/layers", OpenLayers, std::ref(window))
            ->Arg(5)
            ->Arg(500)
            ->Iterations(20)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("2000 events/ours in a window/zoom in 48ths,pressure on radius",
                                     StrokeInWindow, std::ref(window))
            ->ArgsProduct({{12, 48}, {0, 1}})
            ->Unit(benchmark::kMillisecond);
    });
}
