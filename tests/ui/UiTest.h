// A session's message loop on real windows without a display, and clients that store their messages.
#pragma once

#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/Platform/Dialogs.h"
#include "core/Platform/Platform.h"
#include "core/Platform/System.h"
#include "system/environment/Locations.h"
#include "system/environment/Modules.h"
#include "system/files/SnapshotStore.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/TestClient.h"
#include "ui/platform/QtPlatform.h"

#include <QtTest>
#include <QtWidgets>
#include <gmock/gmock.h>

/// The platform and the loop, without a window yet.
class CUiSession {
public:
    /// Handles messages until none is left.
    void Turn() {
        for (int i = 0; i < 3; ++i)
            for (TMessage msg; m_queue.Peek() && m_queue.Get(msg) == 1;) m_queue.Dispatch(msg);
    }
    /// Runs like the session's loop until nothing is left to do.
    static void Settle(IMessageQueue& queue) {
        CMessageLoop& loop = *g_AppModule.GetMessageLoop();
        for (int n = 0; n < 3; ++n) do {
                for (TMessage msg; queue.Peek() && queue.Get(msg) == 1;)
                    if (!loop.PreTranslateMessage(msg)) queue.Dispatch(msg);
            } while (loop.OnIdle(0));
    }
    void Settle() { Settle(m_queue); }
    IMainWindow* CreateMain(CTestClient& client, const TMainWindowSetup& setup = {}) {
        return m_windows.CreateMainWindow(client, setup);
    }

    CMessageQueue m_queue;
    CMemoryFiles m_files;
    CLocations m_locations;
    CModules m_modules;
    CImageCodecs m_codecs{m_files};
    CSnapshotStore m_snapshots{m_locations};
    CQtPlatform m_platform{m_queue, m_files, m_locations, m_modules, m_codecs, m_snapshots};
    IWindowFactory& m_windows = m_platform.GetWindows();
};

inline QAbstractScrollArea& ViewOf(ICanvasWindow* pWindow) {
    return *dynamic_cast<QMdiSubWindow&>(*pWindow).findChild<QAbstractScrollArea*>();
}

using EPenEnd = QPointingDevice::PointerType;
inline QPointingDevice MakePen(EPenEnd end = EPenEnd::Pen) {
    return {"pen", 1, QInputDevice::DeviceType::Stylus, end, QInputDevice::Capability::Pressure, 1, 3};
}

/// Sends a pen event over a view, or above the tablet.
inline void SendPen(QWidget& view, const QPointingDevice& pen, QPointF pt, qreal dPressure, int nTiltX = 0,
                    int nTiltY = 0, QEvent::Type type = QEvent::TabletMove) {
    QTabletEvent event(type, &pen, pt, view.mapToGlobal(pt), dPressure, nTiltX, nTiltY, 0, 3, 0, {}, {}, {});
    QCoreApplication::sendEvent(type == QEvent::TabletMove ? static_cast<QObject*>(&view) : qApp, &event);
}

/// Closes every message box as soon as it opens.
class CBoxCloser {
public:
    CBoxCloser() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (pBox) m_lstTexts << pBox->text(), pBox->close();
        });
        m_timer.start(2);
    }
    QStringList m_lstTexts;

private:
    QTimer m_timer;
};

/// A session with a visible main window.
class CUiTest : public testing::Test, public CUiSession {
protected:
    CUiTest() {
        m_pMain = CreateMain(m_main, {L"Vellumcraft", {FILE_MENU}, {57600, 0, 57643}});
        m_pMain->Show();
        Turn();
    }
    ~CUiTest() override {
        m_pMain->Destroy();
        Turn();
    }

    ICanvasWindow* Open(CTestClient& client, const std::wstring& strTitle = L"絵") {
        ICanvasWindow* pWindow =
            m_windows.CreateCanvasWindow(*m_pMain, client, {strTitle, {FILE_MENU, EDIT_MENU, WINDOW_MENU}});
        pWindow->Show();
        Turn();
        return pWindow;
    }
    QMainWindow& GetWidget() { return *dynamic_cast<QMainWindow*>(m_pMain); }
    QMenu& GetMenu(int idx) { return *GetWidget().menuBar()->actions().at(idx)->menu(); }

    inline static const TMenuItem FILE_MENU{
        0, L"ファイル(&F)", {{57600, L"新規作成(&N)", {}}, {57616, L"最近使ったファイル", {}}}},
        EDIT_MENU{0, L"編集(&E)", {{57643, L"取り消し(&U)...\tF3, Ctrl+Z", {}}, {12810, L"上下反転", {}}}},
        WINDOW_MENU{0, L"ウィンドウ(&W)", {{57650, L"重ねて表示(&C)", {}}}};

    TLog m_vLog;
    CTestClient m_main{"main", m_vLog}, m_a{"a", m_vLog}, m_b{"b", m_vLog}, m_c{"c", m_vLog};
    IMainWindow* m_pMain = nullptr;
};
