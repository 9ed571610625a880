// Latency from a tablet event to its pixels: events are sent to the real window (on Qt's offscreen
// platform), the session's own loop handles them, and the time ends when the changed part is in the
// window's backing image. Reports the median, the 99th percentile and the maximum in milliseconds: for
// several brush sizes, for the recorded stroke, and for documents of few and many layers with the layer panel
// hidden and shown by turns, with the idle work between event and image. Beside them the same of processor
// time, which other work on the machine disturbs less.
#include "bench/RecordedStroke.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Commands/CommandIds.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/RasterBrush/FreehandTools.h"
#include "system/environment/Locations.h"
#include "system/environment/Modules.h"
#include "system/files/FileStore.h"
#include "system/files/SnapshotStore.h"
#include "system/pictures/ImageCodecs.h"
#include "ui/platform/QtPlatform.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMainWindow>
#include <QPointingDevice>
#include <QTabletEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int EVENTS = 5000;
constexpr int LIFTS = 30; // more than the longest stroke end needs

/// Times in milliseconds, on the clock and of all threads.
class CTimes {
public:
    void Begin() {
        m_start = std::chrono::steady_clock::now();
        m_cpu = std::clock();
    }
    /// Stores the time since Begin.
    void Keep() {
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - m_start;
        m_vTimes.push_back(time.count());
        m_vCpu.push_back(static_cast<double>(std::clock() - m_cpu) * 1e3 / CLOCKS_PER_SEC);
    }
    /// Reports the stored times under names with that prefix, and clears them.
    void Report(benchmark::State& state, const std::string& strPrefix = "") {
        std::ranges::sort(m_vTimes);
        std::ranges::sort(m_vCpu);
        state.counters[strPrefix + "p50"] = m_vTimes[m_vTimes.size() / 2];
        state.counters[strPrefix + "p99"] = m_vTimes[m_vTimes.size() * 99 / 100];
        state.counters[strPrefix + "worst"] = m_vTimes.back();
        state.counters[strPrefix + "cpu50"] = m_vCpu[m_vCpu.size() / 2];
        state.counters[strPrefix + "cpu99"] = m_vCpu[m_vCpu.size() * 99 / 100];
        m_vTimes.clear();
        m_vCpu.clear();
    }

private:
    std::chrono::steady_clock::time_point m_start; ///< of what is measured
    std::clock_t m_cpu = 0;
    std::vector<double> m_vTimes;
    std::vector<double> m_vCpu;
};

class CBenchWindow {
public:
    CBenchWindow() : m_scope(m_platform.GetPlatform()) {
        CreateMainFrame();
        g_pMainFrame->GetWindow()->SetRect({0, 0, 1940, 1180});
        const auto spCanvas = CreateCanvas({Recorded::CANVAS, Recorded::CANVAS});
        const auto spLayer = CreateRasterLayer(spCanvas);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        spCanvas->GetRoot().SetActiveChild(spLayer);
        m_spFrame = CreateCanvasFrame(spCanvas);
        g_pMainFrame->OpenFrame(m_spFrame);
        dynamic_cast<QWidget*>(m_spFrame->GetWindow())->showMaximized();
        Turn();
        m_pViewport =
            dynamic_cast<QWidget*>(m_spFrame->GetWindow())->findChild<QAbstractScrollArea*>()->viewport();
    }

    CRasterBrushBase& GetTool() { return dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock()); }
    void SetZoom(uint16_t uZoom) {
        m_spFrame->SetZoom(uZoom);
        Turn();
    }
    /// Converts a canvas position (pixels) to the window.
    QPointF ToWindow(double x, double y) const {
        const double dZoom = m_spFrame->GetZoom() / 48.0;
        const CPoint ptFirst = m_spFrame->GetView().ToWindow8({0, 0});
        return {ptFirst.x + x * dZoom, ptFirst.y + y * dZoom};
    }
    /// Sends a pen event, handles all its consequences and stores the time.
    void Pen(CTimes& times, QPointF pt, double dPressure) {
        times.Begin();
        QTabletEvent event(QEvent::TabletMove, &m_pen, pt, m_pViewport->mapToGlobal(pt), dPressure, 0, 0, 0,
                           0, 0, Qt::NoModifier, Qt::NoButton, Qt::NoButton);
        QCoreApplication::sendEvent(m_pViewport, &event);
        Turn();
        times.Keep();
    }
    /// Gives the document that many layers; the lowest one is drawn on.
    void SetLayers(size_t nLayers) {
        const auto& spCanvas = m_spFrame->GetCanvas();
        CLayerBuffer& root = spCanvas->GetRoot();
        while (root.GetChildren().size() > nLayers) root.RemoveLayer(root.GetChildren().back(), false);
        while (root.GetChildren().size() < nLayers) root.AddLayer(CreateRasterLayer(spCanvas), -1, false);
        root.SetActiveChild(root.GetChildren().front());
        Finish();
    }
    void ShowLayerPanel(bool bShow) {
        g_pMainFrame->GetPanels().Find(ID_PANEL_LAYER)->GetWindow()->ShowPanel(bShow);
        Finish();
    }
    /// Opens a document of that many layers in a second window, and waits until nothing is left to do.
    void OpenOther(CTimes& times, size_t nLayers) {
        const auto spCanvas = CreateCanvas({Recorded::CANVAS, Recorded::CANVAS});
        while (spCanvas->GetRoot().GetChildren().size() < nLayers)
            spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1, false);
        const auto spFrame = CreateCanvasFrame(spCanvas);
        times.Begin();
        g_pMainFrame->OpenFrame(spFrame);
        Finish();
        times.Keep();
        SendMessage({spFrame->GetWindow(), EMessage::Close});
        Finish();
    }
    /// Draws the remaining part of the strokes.
    void Finish() {
        while (g_AppModule.GetMessageLoop()->OnIdle(0)) Turn();
    }

    bool m_bIdle = false; ///< idle work comes between an event's messages and its image, as in a session

private:
    void Turn() {
        CMessageLoop& loop = *g_AppModule.GetMessageLoop();
        for (TMessage msg; m_queue.Peek() && m_queue.Get(msg) == 1;)
            if (!loop.PreTranslateMessage(msg)) m_queue.Dispatch(msg);
        if (m_bIdle) loop.OnIdle(0);
        QCoreApplication::processEvents();
    }

    CMessageQueue m_queue;
    CFileStore m_files;
    CLocations m_locations;
    CModules m_modules;
    CImageCodecs m_codecs{m_files};
    CSnapshotStore m_snapshots{m_locations};
    CQtPlatform m_platform{m_queue, m_files, m_locations, m_modules, m_codecs, m_snapshots};
    CSessionScope m_scope;
    QPointingDevice m_pen{"pen",
                          1,
                          QInputDevice::DeviceType::Stylus,
                          QPointingDevice::PointerType::Pen,
                          QInputDevice::Capability::Pressure,
                          1,
                          3};
    boost::shared_ptr<CCanvasFrame> m_spFrame;
    QWidget* m_pViewport = nullptr;
};

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
    QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    // A screen that the whole window fits on.
    std::ofstream(folder.filePath("screen.json").toStdString())
        << R"({"synchronousWindowSystemEvents": true, "windowFrameMargins": false,
               "screens": [{"name": "one", "x": 0, "y": 0, "width": 2000, "height": 1250, "logicalDpi": 96,
                            "logicalBaseDpi": 96, "dpr": 1}]})";
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + folder.filePath("screen.json").toUtf8());
    EnsureApplication();
    CBenchWindow window;
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
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
