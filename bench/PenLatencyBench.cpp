// Latency of the pen on a vector layer, from an event to its pixels in the real window, among ten strokes and
// among ten thousand: of the events of each stroke, the one that makes it a path included.
#include "bench/BenchWindow.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathObject/PathObjects.h"
#include "core/PathPen/PathPen.h"

#include <cmath>
#include <random>

namespace {

constexpr int STROKES = 60;
constexpr int EVENTS = 50; ///< of a stroke
constexpr int LIFTED = 10; ///< behind it

// A short stroke as the pen leaves them: few anchors and marks.
boost::shared_ptr<CPathObject> MakeOther(std::mt19937& random) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    CPoint pt{static_cast<int32_t>(random() % 30000), static_cast<int32_t>(random() % 30000)};
    for (int n = 0; n < 5; ++n) {
        const auto spPoint = stream.AppendControlPoint(pt);
        spPoint->SetBack(CDualValue<CPoint>({-60, 20}));
        spPoint->SetFore(CDualValue<CPoint>({60, -20}));
        pt = pt + CPoint{100 + static_cast<int32_t>(random() % 200), static_cast<int32_t>(random() % 200)};
    }
    stream.SetWidth(16);
    for (const uint32_t t : {0x8000u, 0x18000u, 0x28000u, 0x38000u})
        stream.AddWidthPoint(t)->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(0x8000u + random() % 0x10000u));
    spPath->Update();
    return spPath;
}

void Draw(benchmark::State& state, CBenchWindow& window) {
    const auto& spCanvas = window.GetFrame().GetCanvas();
    CLayerBuffer& root = spCanvas->GetRoot();
    while (root.GetChildren().size() > 1) root.RemoveLayer(root.GetChildren().back(), false);
    const auto spLayer = CreateVectorLayer(spCanvas);
    spLayer->SetLayerColor(0);
    std::mt19937 random(4);
    for (auto n = state.range(0); n > 0; --n) spLayer->InsertPath(MakeOther(random));
    root.AddLayer(spLayer, -1, false);
    root.SetActiveChild(spLayer);
    window.SetZoom(48);
    g_pMainFrame->SwitchTool(CPathPen::TOOL_ID);
    window.GetTool().GetParam().BrushRadius = 8;
    window.GetFrame().InvalidateAll();
    window.Finish();
    CTimes times;
    for (auto _ : state)
        for (int nStroke = 0; nStroke < STROKES; ++nStroke) {
            const QPointF ptStart(200 + nStroke % 10 * 120, 150 + nStroke / 10 * 140);
            for (int n = 0; n < EVENTS + LIFTED; ++n) {
                const double dPressure = n == 0 || n >= EVENTS ? 0 : 0.2 + 0.6 * std::sin(n * 0.06);
                window.Pen(times, ptStart + QPointF(n * 4, 50 * std::sin(n * 0.15)), dPressure);
            }
        }
    if (spLayer->GetPaths().size() != static_cast<size_t>(state.range(0)) + STROKES)
        state.SkipWithError("strokes are missing");
    times.Report(state);
    spCanvas->GetHistory().SetModified(false);
}

} // namespace

int main(int argc, char** argv) {
    return RunInWindow(argc, argv, [](CBenchWindow& window) {
        benchmark::RegisterBenchmark("draw", Draw, std::ref(window))
            ->Arg(10)
            ->Arg(10000)
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    });
}
