#include "tests/faults/windows/WindowSession.h"

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "session/seam/SessionSnapshots.h"
#include "session/seam/VirtualClock.h"
#include "tests/faults/DocumentCheck.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/NoPlaces.h"
#include "tests/ui/UiTest.h"

namespace {

QAction* FindAction(const QList<QAction*>& lstActions, const QString& strText) {
    for (QAction* pAction : lstActions) {
        if (pAction->text().startsWith(strText)) return pAction;
        if (!pAction->menu()) continue;
        if (QAction* pFound = FindAction(pAction->menu()->actions(), strText)) return pFound;
    }
    return nullptr;
}

// Answers every window that opens over the application.
class CAnswerer {
public:
    CAnswerer() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const CUnfailingMemory unfailing;
            Answer();
        });
        m_timer.start(1);
    }
    std::vector<std::wstring> m_vErrors;

private:
    void Answer() {
        if (QWidget* pMenu = QApplication::activePopupWidget()) pMenu->close();
        QWidget* pModal = QApplication::activeModalWidget();
        if (auto* pBox = qobject_cast<QMessageBox*>(pModal)) {
            if (pBox->icon() == QMessageBox::Critical) m_vErrors.push_back(pBox->text().toStdWString());
            QAbstractButton* pNo = pBox->button(QMessageBox::No);
            (pNo ? pNo : pBox->button(QMessageBox::Ok))->click();
        } else if (auto* pFile = qobject_cast<QFileDialog*>(pModal)) {
            pFile->findChild<QLineEdit*>("fileNameEdit")->setText("saved.vlm");
            QMetaObject::invokeMethod(pFile, "accept");
        } else if (auto* pDialog = qobject_cast<QDialog*>(pModal)) {
            for (const auto& [strName, strValue] : {std::pair{"width", "130"}, {"height", "100"}})
                if (auto* pNumber = pDialog->findChild<QAbstractSpinBox*>(strName))
                    pNumber->findChild<QLineEdit*>()->setText(strValue);
            pDialog->findChild<QDialogButtonBox*>()->buttons().front()->click();
        }
    }

    QTimer m_timer;
};

class CWindowSession {
public:
    explicit CWindowSession(uint64_t uAllocation) : m_uAllocation(uAllocation) {
        SaveDocument(*MakePage({60, 40}), L"/page.vlm", m_files);
    }

    TPlayed Play() {
        CMessageQueue queue;
        CQtPlatform qt(queue, m_files, m_places, m_places, m_codecs, m_snapshots);
        const TPlatform& p = qt.GetPlatform();
        PlayOn({p.queue, p.windows, p.boxes, p.fileDialogs, p.dialogs, p.files, p.locations, p.modules,
                p.codecs, m_clock, p.keys, p.clipboard, p.snapshots, p.pen});
        m_check.CheckBoxes(m_answerer.m_vErrors, true);
        return m_check.m_played;
    }

private:
    void PlayOn(const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        g_Switches.m_nMaxHistory = 200;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [this] { PlayStep(); });
        timer.start(0);
        const CFailingMemory memory(m_uAllocation, {.bOwn = true});
        try {
            scope.Run();
        } catch (const std::exception& e) {
            const CUnfailingMemory unfailing;
            m_check.Complain("the session breaks off: " + ToUtf8(DescribeException(e)));
        }
        m_check.m_played.uCount = CFailingMemory::GetCount();
    }

    // Plays the user's next step. At the end closes the main window until it is destroyed.
    void PlayStep() {
        if (QApplication::activeModalWidget() || QApplication::activePopupWidget()) return;
        m_clock.Advance(2000); // the mouse is accepted a second after the pen
        try {
            if (m_nStep < m_vSteps.size())
                (this->*m_vSteps[m_nStep++])();
            else if (QMainWindow* pMain = Main())
                pMain->close();
        } catch (const std::exception& e) {
            const CUnfailingMemory unfailing;
            m_check.Complain("step " + std::to_string(m_nStep) +
                             ", an event's handler throws: " + ToUtf8(DescribeException(e)));
        }
    }

    static QMainWindow* Main() { return dynamic_cast<QMainWindow*>(g_AppModule.GetMainWindow()); }
    static QWidget* View() {
        const auto spFrame = g_wpActiveFrame.lock();
        return spFrame && spFrame->GetWindow() ? ViewOf(spFrame->GetWindow()).viewport() : nullptr;
    }
    static QPointF At(const QWidget& view, int n) { return view.rect().center() + QPointF(n * 3 - 30, n); }

    static void Pick(const QString& strText) {
        QAction* pAction = Main() ? FindAction(Main()->menuBar()->actions(), strText) : nullptr;
        if (pAction) pAction->trigger();
    }
    template <class Event, class... Arguments>
    static void Send(QWidget& widget, Arguments&&... arguments) {
        Event event(std::forward<Arguments>(arguments)...);
        QCoreApplication::sendEvent(&widget, &event);
    }
    static void Mouse(QWidget& widget, QEvent::Type type, QPointF pt) {
        const bool bMove = type == QEvent::MouseMove;
        Send<QMouseEvent>(widget, type, pt, widget.mapToGlobal(pt), bMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    }

    void New() { Pick("新規作成"); }
    void Begin() {
        const CUnfailingMemory unfailing;
        m_check.Begin();
    }
    void End() {
        const CUnfailingMemory unfailing;
        m_check.End({});
    }
    void OpenMenus() {
        for (const QAction* pAction : Main()->menuBar()->actions()) emit pAction->menu()->aboutToShow();
    }
    void DrawByPen() {
        QWidget* pView = View();
        if (!pView) return;
        SendPen(*pView, m_pen, {}, 0, 0, 0, QEvent::TabletEnterProximity);
        for (int n = 0; n < 24; ++n) SendPen(*pView, m_pen, At(*pView, n), n && n < 20 ? 0.8 : 0);
        SendPen(*pView, m_pen, {}, 0, 0, 0, QEvent::TabletLeaveProximity);
    }
    void DrawByMouse() {
        QWidget* pView = View();
        if (!pView) return;
        Mouse(*pView, QEvent::MouseButtonPress, At(*pView, 0));
        for (int n = 0; n < 12; ++n) Mouse(*pView, QEvent::MouseMove, At(*pView, -n));
        Mouse(*pView, QEvent::MouseButtonRelease, At(*pView, -12));
    }
    void Undo() {
        if (View()) QTest::keyClick(View(), Qt::Key_Z, Qt::ControlModifier);
    }
    void Redo() {
        if (View()) QTest::keyClick(View(), Qt::Key_Y, Qt::ControlModifier);
    }
    void NewLayer() { Pick("新規ラスタレイヤー"); }
    void UsePanels() {
        for (QSlider* pSlider : Main()->findChildren<QSlider*>())
            if (pSlider->isVisible()) pSlider->setValue(pSlider->value() + 1);
        for (QListWidget* pList : Main()->findChildren<QListWidget*>()) {
            pList->setCurrentRow(1);
            if (QListWidgetItem* pItem = pList->item(1)) pItem->setText("名前");
        }
        for (QDockWidget* pPanel : Main()->findChildren<QDockWidget*>())
            for (QWidget* pWidget : pPanel->findChildren<QWidget*>())
                Mouse(*pWidget, QEvent::MouseButtonPress, {9, 9}),
                    Mouse(*pWidget, QEvent::MouseButtonRelease, {9, 9});
        Pick("ツール");
    }
    void Wheel() {
        if (QWidget* pView = View())
            Send<QWheelEvent>(*pView, At(*pView, 0), At(*pView, 0), QPoint(), QPoint(0, 240), Qt::NoButton,
                              Qt::ControlModifier, Qt::NoScrollPhase, false);
    }
    void DragByHand() {
        QWidget* pView = View();
        if (!pView) return;
        QTest::keyPress(pView, Qt::Key_Space);
        DrawByMouse();
        QTest::keyRelease(pView, Qt::Key_Space);
    }
    void Resize() { Main()->resize(700, 500); }
    void Configure() { Pick("環境設定"); }
    void Arrange() {
        Pick("上下に並べて表示");
        if (auto* pArea = Main()->findChild<QMdiArea*>()) {
            for (QMdiSubWindow* pWindow : pArea->subWindowList()) pWindow->showMaximized();
            pArea->activateNextSubWindow();
        }
        Pick("重ねて表示");
    }
    void Drop() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile("/page.vlm")});
        Send<QDragEnterEvent>(*Main(), QPoint{9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        Send<QDropEvent>(*Main(), QPoint{9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    }
    void CloseOne() { Pick("閉じる"); }
    void SaveAs() { Pick("名前を付けて保存"); }

    const uint64_t m_uAllocation;
    CMemoryFiles m_files;
    CUnfailingCodecs m_codecs{m_files};
    CNoPlaces m_places;
    CSessionSnapshots m_snapshots;
    CVirtualClock m_clock;
    const QPointingDevice m_pen = MakePen();
    CDocumentCheck m_check{m_files, m_codecs};
    CAnswerer m_answerer;
    const std::vector<void (CWindowSession::*)()> m_vSteps{
        &CWindowSession::New,       &CWindowSession::Begin,       &CWindowSession::OpenMenus,
        &CWindowSession::DrawByPen, &CWindowSession::Undo,        &CWindowSession::Redo,
        &CWindowSession::NewLayer,  &CWindowSession::UsePanels,   &CWindowSession::DrawByPen,
        &CWindowSession::Wheel,     &CWindowSession::DragByHand,  &CWindowSession::DrawByMouse,
        &CWindowSession::Resize,    &CWindowSession::Configure,   &CWindowSession::New,
        &CWindowSession::OpenMenus, &CWindowSession::DrawByMouse, &CWindowSession::Arrange,
        &CWindowSession::Drop,      &CWindowSession::CloseOne,    &CWindowSession::DrawByPen,
        &CWindowSession::SaveAs,    &CWindowSession::CloseOne,    &CWindowSession::End};
    size_t m_nStep = 0;
};

} // namespace

TPlayed PlayInWindows(uint64_t uAllocation) { return CWindowSession(uAllocation).Play(); }
