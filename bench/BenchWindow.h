// A real window on Qt's offscreen platform whose events are timed until their pixels are in the window's
// backing image.
#pragma once

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

#include <benchmark/benchmark.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QTabletEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

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
    /// The same with an event of the mouse at a window position.
    void Mouse(CTimes& times, QEvent::Type type, QPointF pt, bool bDown) {
        times.Begin();
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, pt, m_pViewport->mapToGlobal(pt), button,
                          bDown ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_pViewport, &event);
        Turn();
        times.Keep();
    }
    CCanvasFrame& GetFrame() { return *m_spFrame; }
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

/// Runs a program's benchmarks, which `fnRegister` registers, over a window of 1940 by 1180 pixels.
template <class Register>
int RunInWindow(int argc, char** argv, Register fnRegister) {
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
    fnRegister(window);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
