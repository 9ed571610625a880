// From a tablet event to its pixels: events are delivered to the real window (on Qt's offscreen platform),
// the session's own loop handles them, and the time ends when the changed part stands in the window's backing
// image. Tells the median, the 99th of a hundred and the worst, for several brush sizes.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/RasterBrush/FreehandTools.h"
#include "system/FileStore.h"
#include "system/ImageCodecs.h"
#include "system/Locations.h"
#include "system/Modules.h"
#include "system/SnapshotStore.h"
#include "ui/QtPlatform.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QMainWindow>
#include <QPointingDevice>
#include <QTabletEvent>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>

namespace {

constexpr int EVENTS = 5000;
constexpr CSize CANVAS{4000, 4000};

class CBench {
public:
    CBench() : m_scope(m_platform.GetPlatform()) {
        CreateMainFrame();
        g_pMainFrame->GetWindow()->SetRect({0, 0, 1940, 1180});
        const auto spCanvas = CreateCanvas(CANVAS);
        const auto spLayer = CreateRasterLayer(spCanvas);
        spCanvas->GetRoot().AddLayer(spLayer, -1, false);
        spCanvas->GetRoot().SetActiveChild(spLayer);
        m_spFrame = CreateCanvasFrame(spCanvas);
        g_pMainFrame->OpenFrame(m_spFrame);
        dynamic_cast<QWidget*>(m_spFrame->GetWindow())->showMaximized();
        Turn();
        m_spFrame->SetZoom(48);
        Turn();
        m_pViewport =
            dynamic_cast<QWidget*>(m_spFrame->GetWindow())->findChild<QAbstractScrollArea*>()->viewport();
    }

    void Run(uint32_t uRadius) {
        auto& tool = dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock());
        tool.GetParam().BrushRadius = uRadius * 2;
        std::vector<double> vTimes;
        for (int n = 0; n < EVENTS; ++n) {
            // A drawing hand: loops over the window, pressure that comes and goes, a lift now and then.
            const double d = n * 0.02;
            const QPointF pt(960 + 700 * std::sin(d), 520 + 380 * std::sin(1.7 * d));
            const double dPressure = n % 500 > 490 ? 0 : 0.55 + 0.4 * std::sin(d * 3);
            const auto start = std::chrono::steady_clock::now();
            QTabletEvent event(QEvent::TabletMove, &m_pen, pt, m_pViewport->mapToGlobal(pt), dPressure, 0, 0,
                               0, 0, 0, Qt::NoModifier, Qt::NoButton, Qt::NoButton);
            QCoreApplication::sendEvent(m_pViewport, &event);
            Turn();
            const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
            vTimes.push_back(time.count());
        }
        while (g_AppModule.GetMessageLoop()->OnIdle(0)) Turn();
        std::ranges::sort(vTimes);
        std::printf("radius %3u: p50 %6.3f ms   p99 %6.3f ms   worst %6.3f ms\n", uRadius, vTimes[EVENTS / 2],
                    vTimes[EVENTS * 99 / 100], vTimes.back());
    }

private:
    void Turn() {
        for (TMessage msg; m_queue.Peek() && m_queue.Get(msg) == 1;) m_queue.Dispatch(msg);
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

} // namespace

int main() {
    QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    // A screen that the whole window lies on.
    std::ofstream(folder.filePath("screen.json").toStdString())
        << R"({"synchronousWindowSystemEvents": true, "windowFrameMargins": false,
               "screens": [{"name": "one", "x": 0, "y": 0, "width": 2000, "height": 1250, "logicalDpi": 96,
                            "logicalBaseDpi": 96, "dpr": 1}]})";
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + folder.filePath("screen.json").toUtf8());
    EnsureApplication();
    CBench bench;
    for (const uint32_t uRadius : {8u, 64u, 256u}) bench.Run(uRadius);
    return 0;
}
