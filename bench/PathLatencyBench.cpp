// Latency of the path tool, from an event of the mouse to its pixels in the real window: while an anchor in
// the middle of a stroke is dragged, alone on its layer and among thousands of others, and while the pointer
// moves over these. The stroke follows the drag filled, with its outline and handles over it.
#include "bench/BenchWindow.h"
#include "core/PathToolBase/PathTool.h"

#include <cmath>
#include <random>

namespace {

constexpr int EVENTS = 400;
constexpr int OTHERS = 5000;

// A stroke that winds from `pt` to the right and back in rows, in path units, with width marks at even
// distances.
boost::shared_ptr<COpenPathObject> MakeStroke(CPoint pt, int nAnchors, int nMarks, int32_t nStep,
                                              bool bWave) {
    constexpr int ROW = 40; // anchors
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    for (int n = 0; n < nAnchors; ++n) {
        const bool bBack = n / ROW % 2 != 0;
        const int nColumn = bBack ? ROW - 1 - n % ROW : n % ROW;
        const auto spPoint = stream.AppendControlPoint(
            {pt.x + nColumn * nStep, pt.y + n / ROW * 200 + (n % 2 ? std::min(nStep, 100) : 0)});
        const int32_t nHandle = bBack ? -nStep / 3 : nStep / 3;
        spPoint->SetBack(CDualValue<CPoint>({-nHandle, 0}));
        spPoint->SetFore(CDualValue<CPoint>({nHandle, 0}));
    }
    stream.SetWidth(24);
    const auto nLast = static_cast<uint32_t>(nAnchors - 1) * BEZIER_T_RESOLUTION;
    for (int n = 0; n < nMarks; ++n)
        stream.AddWidthPoint(nLast / static_cast<uint32_t>(nMarks + 1) * static_cast<uint32_t>(n + 1))
            ->SetMultiple(SIDE_LEFT,
                          CDualValue<uint32_t>(0x8000u + 0x4000u * (static_cast<uint32_t>(n) % 5)));
    stream.SetWave(bWave, {32, 4});
    spPath->Update();
    return spPath;
}

// The page of the window, with a vector layer of these paths, and the path tool active.
void Prepare(CBenchWindow& window, const std::vector<boost::shared_ptr<CPathObject>>& vPaths) {
    const auto& spCanvas = window.GetFrame().GetCanvas();
    CLayerBuffer& root = spCanvas->GetRoot();
    while (root.GetChildren().size() > 1) root.RemoveLayer(root.GetChildren().back(), false);
    const auto spLayer = CreateVectorLayer(spCanvas);
    spLayer->SetLayerColor(0);
    for (const auto& spPath : vPaths) spLayer->InsertPath(spPath);
    root.AddLayer(spLayer, -1, false);
    root.SetActiveChild(spLayer);
    window.SetZoom(48);
    g_pMainFrame->SwitchTool(TOOL_PATH);
    window.GetFrame().InvalidateAll();
    window.Finish();
}

std::vector<boost::shared_ptr<CPathObject>> MakeOthers(int nCount) {
    std::mt19937 random(2);
    std::vector<boost::shared_ptr<CPathObject>> vPaths;
    for (int n = 0; n < nCount; ++n) {
        const CPoint pt{static_cast<int32_t>(random() % 30000), static_cast<int32_t>(random() % 32000)};
        vPaths.push_back(MakeStroke(pt, 6, 3, 160 + static_cast<int32_t>(random() % 300), false));
    }
    return vPaths;
}

void Drag(benchmark::State& state, CBenchWindow& window) {
    const auto nAnchors = static_cast<int>(state.range(0));
    auto vPaths = MakeOthers(static_cast<int>(state.range(3)));
    // All anchors lie in the window: rows are 1,100 pixels wide, 25 of them 625 pixels high.
    window.SetZoom(48);
    const auto spPath = MakeStroke(window.GetFrame().ToCanvas({100, 100}), nAnchors,
                                   static_cast<int>(state.range(1)), 220, state.range(2) != 0);
    vPaths.push_back(spPath);
    Prepare(window, vPaths);
    const auto spDragged = spPath->GetStream().GetControlPoint(static_cast<size_t>(nAnchors / 2));
    const CPoint pt = spDragged->GetAnchor()[STATE_COMMITTED];
    const QPointF ptStart = window.ToWindow(pt.x / 8.0, pt.y / 8.0);
    CTimes times, press;
    for (auto _ : state) {
        window.Mouse(press, QEvent::MouseButtonPress, ptStart, true);
        for (int n = 1; n <= EVENTS; ++n)
            window.Mouse(times, QEvent::MouseMove,
                         ptStart + QPointF(60 * std::sin(n * 0.11), 60 * std::sin(n * 0.07) + 4), true);
        if (spDragged->IsSettled()) state.SkipWithError("nothing is dragged");
        window.Mouse(press, QEvent::MouseButtonRelease, ptStart, false);
        window.Finish();
    }
    times.Report(state);
}

void Hover(benchmark::State& state, CBenchWindow& window) {
    Prepare(window, MakeOthers(OTHERS));
    CTimes times;
    for (auto _ : state)
        for (int n = 0; n < 4 * EVENTS; ++n)
            window.Mouse(times, QEvent::MouseMove,
                         {960 + 700 * std::sin(n * 0.02), 520 + 380 * std::sin(n * 0.034)}, false);
    times.Report(state);
}

} // namespace

int main(int argc, char** argv) {
    return RunInWindow(argc, argv, [](CBenchWindow& window) {
        benchmark::RegisterBenchmark("drag/anchors,marks,wave,others", Drag, std::ref(window))
            ->Args({50, 20, 0, 0})
            ->Args({200, 0, 1, 0})
            ->Args({1000, 0, 1, 0})
            ->Args({50, 20, 0, OTHERS})
            ->Args({200, 0, 1, OTHERS})
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("hover over 5000 paths", Hover, std::ref(window))
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
    });
}
