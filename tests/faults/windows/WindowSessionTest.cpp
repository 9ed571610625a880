#include "session/seam/SessionSnapshots.h"
#include "tests/faults/DocumentCheck.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/Session.h"
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
            if (pFile->acceptMode() == QFileDialog::AcceptOpen) return pFile->reject(); // there is no file
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
                p.codecs, m_clock, p.keys, p.clipboard, p.snapshots, p.pen, p.progress, p.manual, p.recent});
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
                m_vSteps[m_nStep++]();
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

    // The user's hand over the active view, if there is one.
    static void OnView(const std::function<void(QWidget&)>& fn) {
        if (QWidget* pView = View()) fn(*pView);
    }
    static void Type(Qt::Key key) {
        OnView([&](QWidget& view) { QTest::keyClick(&view, key, Qt::ControlModifier); });
    }
    static void Undo() { Type(Qt::Key_Z); }
    static void Redo() { Type(Qt::Key_Y); }
    static void New() { Pick("新規作成"); }
    static void NewLayer() { Pick("新規ラスタレイヤー"); }
    static void Configure() { Pick("環境設定"); }
    static void CloseOne() { Pick("閉じる"); }
    static void SaveAs() { Pick("名前を付けて保存"); }
    static void Resize() { Main()->resize(700, 500); }
    static void OpenMenus() {
        for (const QAction* pAction : Main()->menuBar()->actions()) emit pAction->menu()->aboutToShow();
    }
    static void DrawByPen() {
        OnView([](QWidget& view) {
            static const QPointingDevice s_pen = MakePen();
            SendPen(view, s_pen, {}, 0, 0, 0, QEvent::TabletEnterProximity);
            for (int n = 0; n < 24; ++n) SendPen(view, s_pen, At(view, n), n && n < 20 ? 0.8 : 0);
            SendPen(view, s_pen, {}, 0, 0, 0, QEvent::TabletLeaveProximity);
        });
    }
    static void DrawByMouse() {
        OnView([](QWidget& view) {
            Mouse(view, QEvent::MouseButtonPress, At(view, 0));
            for (int n = 0; n < 12; ++n) Mouse(view, QEvent::MouseMove, At(view, -n));
            Mouse(view, QEvent::MouseButtonRelease, At(view, -12));
        });
    }
    static void UsePanels() {
        for (QSlider* pSlider : Main()->findChildren<QSlider*>())
            if (pSlider->isVisible()) pSlider->setValue(pSlider->value() + 1);
        for (QListWidget* pList : Main()->findChildren<QListWidget*>()) {
            pList->setCurrentRow(1);
            if (QListWidgetItem* pItem = pList->item(1)) pItem->setText("名前");
        }
        for (QDockWidget* pPanel : Main()->findChildren<QDockWidget*>()) {
            if (pPanel->isHidden()) continue;
            for (QWidget* pWidget : pPanel->findChildren<QWidget*>())
                for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                    Mouse(*pWidget, type, {9, 9});
        }
        Pick("ツール");
    }
    static void Wheel() {
        OnView([](QWidget& view) {
            Send<QWheelEvent>(view, At(view, 0), At(view, 0), QPoint(), QPoint(0, 240), Qt::NoButton,
                              Qt::ControlModifier, Qt::NoScrollPhase, false);
        });
    }
    static void DragByHand() {
        OnView([](QWidget& view) { QTest::keyPress(&view, Qt::Key_Space); });
        DrawByMouse();
        OnView([](QWidget& view) { QTest::keyRelease(&view, Qt::Key_Space); });
    }
    static void Arrange() {
        Pick("上下に並べて表示");
        if (auto* pArea = Main()->findChild<QMdiArea*>()) {
            for (QMdiSubWindow* pWindow : pArea->subWindowList()) pWindow->showMaximized();
            pArea->activateNextSubWindow();
        }
        Pick("重ねて表示");
    }
    static void Drop() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile("/page.vlm")});
        Send<QDragEnterEvent>(*Main(), QPoint{9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        Send<QDropEvent>(*Main(), QPoint{9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    }
    template <class Function>
    static void Unfailing(const Function& fn) {
        const CUnfailingMemory unfailing;
        fn();
    }

    const uint64_t m_uAllocation;
    CMemoryFiles m_files;
    CUnfailingCodecs m_codecs{m_files};
    CNoPlaces m_places;
    CSessionSnapshots m_snapshots;
    CVirtualClock m_clock;
    CDocumentCheck m_check{m_files, m_codecs};
    CAnswerer m_answerer;
    using TUserStep = std::function<void()>;
    const TUserStep m_fnBegin = [this] { Unfailing([&] { m_check.Begin(); }); };
    const TUserStep m_fnEnd = [this] { Unfailing([&] { m_check.End({}); }); };
    const std::vector<TUserStep> m_vSteps{New,      m_fnBegin, OpenMenus, DrawByPen, Undo,        Redo,
                                          NewLayer, UsePanels, DrawByPen, Wheel,     DragByHand,  DrawByMouse,
                                          Resize,   Configure, New,       OpenMenus, DrawByMouse, Arrange,
                                          Drop,     CloseOne,  DrawByPen, SaveAs,    CloseOne,    m_fnEnd};
    size_t m_nStep = 0;
};

} // namespace

TEST(WindowFaults, ASessionSurvivesEveryFailedAllocation) {
    ExpectSurvival(30, [](uint64_t uAllocation) { return CWindowSession(uAllocation).Play(); });
}
