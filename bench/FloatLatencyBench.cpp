// Latency of dragging floating pixels, from an event of the mouse to its pixels in the real window: 2000 by
// 2000 pixels that were cut out of a drawing of random colours, by a rectangle and by a lasso, at 100
// percent.
#include "bench/BenchWindow.h"
#include "core/RasterMove/RasterMove.h"
#include "core/RasterMove/SelectShape.h"

#include <cmath>
#include <random>

namespace {

constexpr int EVENTS = 400;
constexpr int32_t SIDE = 2000;

// A drawing over the whole page, opaque in some places and soft in others.
void FillPage(CRasterLayerBuffer& layer) {
    std::mt19937 random(4);
    CRasterBuffer& raster = *layer.GetRaster();
    raster.ForEachBlock([&](CPoint pt) {
        const auto spTile = raster.GetWritableBlock(pt);
        uint8_t* p = spTile->GetPixelPtr({0, 0});
        for (size_t i = 0; i < spTile->GetBytes(); ++i) p[i] = static_cast<uint8_t>(random() >> 8);
    });
}

TSelectPtr MakeSelect(bool bLasso, CSize szCanvas) {
    std::vector<CPoint> vPoints{{100, 100}, {100 + SIDE - 1, 100 + SIDE - 1}};
    if (bLasso) {
        vPoints.clear();
        for (int n = 0; n < 3000; ++n) {
            const double d = n * 2 * 3.14159265 / 3000;
            const double dRadius = SIDE / 2.0 - 60 + 60 * std::sin(d * 23);
            vPoints.push_back({static_cast<int32_t>(1100 + dRadius * std::cos(d)),
                               static_cast<int32_t>(1100 + dRadius * std::sin(d))});
        }
    }
    const TSelectPtr spSelect =
        MakeShapeSelect(bLasso ? ESelectShape::Polygon : ESelectShape::Rectangle, vPoints, true, szCanvas);
    spSelect->UpdateOutline();
    return spSelect;
}

void DragFloat(benchmark::State& state, CBenchWindow& window) {
    const auto& spCanvas = window.GetFrame().GetCanvas();
    window.SetLayers(1);
    FillPage(dynamic_cast<CRasterLayerBuffer&>(*spCanvas->GetActiveLayer()));
    spCanvas->SetSelect(MakeSelect(state.range(0) != 0, spCanvas->GetSize()));
    window.SetZoom(48);
    g_pMainFrame->SwitchTool(CRasterMove::TOOL_ID);
    window.GetFrame().InvalidateAll();
    window.Finish();
    const QPointF ptStart(600, 400);
    CTimes times, press;
    for (auto _ : state) {
        window.Mouse(press, QEvent::MouseButtonPress, ptStart, true);
        window.Mouse(press, QEvent::MouseMove, ptStart + QPointF(1, 0), true); // the lift
        for (int n = 0; n < EVENTS; ++n)
            window.Mouse(times, QEvent::MouseMove,
                         ptStart + QPointF(150 * std::sin(n * 0.05), 100 * std::sin(n * 0.083)), true);
        window.Mouse(press, QEvent::MouseButtonRelease, ptStart + QPointF(20, 10), false);
        window.Finish();
    }
    times.Report(state);
    press.Report(state, "first ");
    while (spCanvas->GetHistory().CanUndo()) spCanvas->GetHistory().Undo();
    spCanvas->SetSelect({});
}

} // namespace

int main(int argc, char** argv) {
    return RunInWindow(argc, argv, [](CBenchWindow& window) {
        benchmark::RegisterBenchmark("drag 2000x2000/lasso", DragFloat, std::ref(window))
            ->Arg(0)
            ->Arg(1)
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    });
}
