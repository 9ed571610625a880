#include "tests/ui/UiTest.h"

#include "core/AppModule/PrivateMessages.h"
#include "core/AppModule/WindowPlacement.h"
#include "core/Commands/Commands.h"
#include "core/Panels/ColorControls.h"
#include "core/PathToolBase/PathTool.h"
#include "core/RasterBrush/FreehandTools.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/Session.h"
#include "tests/support/TempFolder.h"
#include "ui/base/QtText.h"

#include <QSessionManager>
#include <QStatusBar>

#include <csignal>

namespace {

class DocumentWindows : public testing::Test {
protected:
    struct TSession : CUiSession {
        explicit TSession(CMemoryFiles& files) : m_scope(m_platform.GetPlatform()) {
            m_files.m_mapFiles.swap(files.m_mapFiles);
            CreateMainFrame();
        }
        CSessionScope m_scope;
    };

    DocumentWindows() {
        for (const wchar_t* psz : {L"/1.vlm", L"/2.vlm", L"/3.vlm", L"/4.vlm", L"/絵\n [*] &5.vlm"})
            SaveDocument(*CreateCanvas({60, 40}), psz, m_disk);
        m_pSession = std::make_unique<TSession>(m_disk);
        Settle();
    }
    void Restart() {
        CMemoryFiles files;
        files.m_mapFiles = Files();
        m_pSession.reset();
        m_pSession = std::make_unique<TSession>(files);
        Settle();
    }
    void Settle() { m_pSession->Settle(); }
    void ResizeMain(int nWidth, int nHeight) {
        QTest::qSleep(250); // until it is fitted to its screen, which is small here
        Settle();           // the wait itself may end before timers that are due, on a busy machine
        Main().resize(nWidth, nHeight);
        Settle();
    }
    void Drop(const QStringList& lstPaths) {
        QMimeData data;
        QList<QUrl> lstUrls{QUrl("http://example.org/x.png")};
        for (const QString& str : lstPaths) lstUrls << QUrl::fromLocalFile(str);
        data.setUrls(lstUrls);
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop({9, 9}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        for (QDropEvent* pEvent : {static_cast<QDropEvent*>(&enter), &drop}) {
            QCoreApplication::sendEvent(&Main(), pEvent);
            EXPECT_TRUE(pEvent->isAccepted());
        }
        Settle();
    }
    QStringList Recent() {
        QStringList lst;
        m_lstRecent.clear();
        emit Main().menuBar()->actions().at(0)->menu()->aboutToShow();
        for (QMenu* pMenu : Main().menuBar()->actions().at(0)->menu()->findChildren<QMenu*>())
            for (QAction* pAction : pMenu->actions())
                if (pAction->isVisible() && pMenu->title().startsWith("最近"))
                    m_lstRecent << pAction, lst << pAction->text();
        return lst;
    }
    std::map<std::wstring, std::string>& Files() { return m_pSession->m_files.m_mapFiles; }
    QMainWindow& Main() { return *dynamic_cast<QMainWindow*>(g_pMainFrame->GetWindow()); }
    static CCanvasFrame& Active() { return *g_wpActiveFrame.lock(); }

    CTestSettings m_folder;
    CMemoryFiles m_disk;
    std::unique_ptr<TSession> m_pSession;
    CBoxCloser m_closer;
    QList<QAction*> m_lstRecent;
};

} // namespace

TEST_F(DocumentWindows, DroppedFilesOpenAndFailuresAreTold) {
    const QString strFolder = ToQt(m_folder.GetPath().generic_wstring());
    Drop({"/1.vlm", strFolder, "/none.vlm", "/絵\n [*] &5.vlm"});
    ASSERT_EQ(g_lstCanvasFrame.size(), 2u);
    EXPECT_EQ(Active().GetCanvas()->GetPath(), L"/絵\n [*] &5.vlm");
    const QString strMissing = "'\n\n" + QString::fromWCharArray(AdviceFor(EFileFailure::Missing));
    EXPECT_EQ(m_closer.m_lstTexts,
              (QStringList{"画像ファイルを開けませんでした。\nFile: '" + strFolder + strMissing,
                           "ファイルを開けませんでした。\nFile: '/none.vlm" + strMissing}));
}

TEST_F(DocumentWindows, TheRecentListFollowsAndSurvives) {
    EXPECT_EQ(Recent(), QStringList{"(なし)"});
    for (const char* psz : {"/1.vlm", "/2.vlm", "/3.vlm", "/1.vlm", "/4.vlm"}) Drop({psz});
    EXPECT_EQ(Recent(), (QStringList{"&1 /4.vlm", "&2 /1.vlm", "&3 /3.vlm", "&4 /2.vlm"}));
    Files().erase(L"/3.vlm");
    m_lstRecent[2]->trigger();
    Settle();
    ASSERT_EQ(m_closer.m_lstTexts.size(), 1);
    EXPECT_TRUE(m_closer.m_lstTexts[0].startsWith("ファイルを開けませんでした。\nFile: '/3.vlm'"));
    Restart();
    EXPECT_EQ(Recent(), (QStringList{"&1 /4.vlm", "&2 /1.vlm", "&3 /2.vlm"}));
    m_lstRecent[2]->trigger();
    Settle();
    EXPECT_EQ(Active().GetCanvas()->GetPath(), L"/2.vlm");
    EXPECT_EQ(Recent().at(0), "&1 /2.vlm");
}

TEST_F(DocumentWindows, TheEndOfTheDesktopOrOfTheProcessKeepsWhatIsUnsaved) {
    static int s_nKept = -1; // the disk's state when the previous signal handler was called
    static std::filesystem::path s_path;
    s_path = m_folder.File("Vellumcraft/Recovery");
    static const auto s_fnCount = [] {
        std::error_code error;
        return static_cast<int>(
            std::ranges::count_if(std::filesystem::directory_iterator(s_path, error),
                                  [](const auto& entry) { return entry.path().extension() == ".vlm"; }));
    };
    m_disk.m_mapFiles = Files();
    m_pSession.reset();
    const auto before = std::signal(SIGTERM, [](int) { s_nKept = s_fnCount(); });
    m_pSession = std::make_unique<TSession>(m_disk);
    Settle();
    const auto change = [&](const char* pszFile) {
        Drop({pszFile});
        const auto spCanvas = Active().GetCanvas();
        spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    };
    change("/1.vlm");
    alignas(void*) static std::byte aManager[64]; // never called
    emit qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(aManager));
    EXPECT_EQ(s_fnCount(), 1);
    // In the middle of its work the application has no whole document: the signal waits.
    change("/2.vlm");
    IProgressWindow& progress = m_pSession->m_platform.GetPlatform().progress;
    progress.Begin({});
    raise(SIGTERM);
    progress.Show({});
    EXPECT_EQ(s_nKept, -1);
    progress.End();
    QTest::qWait(20);
    EXPECT_EQ(std::exchange(s_nKept, -1), 2);
    // With a dialog open, whose own loop gets the event.
    QTimer::singleShot(0, [] { raise(SIGTERM); });
    m_pSession->m_platform.GetPlatform().boxes.Show(Active().GetWindow(), L"?", L"", EBoxKind::Plain);
    QTest::qWait(20);
    EXPECT_EQ(s_nKept, 2);
    m_pSession.reset();
    raise(SIGTERM);
    EXPECT_EQ(s_nKept, 2) << "given back with the session";
    std::signal(SIGTERM, before);
}

TEST_F(DocumentWindows, TitlesAndTabsNameTheDocumentsAndMarkChangedOnes) {
    EXPECT_EQ(Main().windowTitle(), "Vellumcraft[*]");
    Drop({"/1.vlm", "/絵\n [*] &5.vlm"});
    const auto spCanvas = Active().GetCanvas();
    auto& tabs = *Main().centralWidget()->findChild<QTabBar*>();
    // The titles of the active child and of the main window.
    const auto titles = [&] {
        Settle();
        const auto& child = *dynamic_cast<QWidget*>(Active().GetWindow());
        EXPECT_FALSE(Main().isWindowModified()) << "the title has its own mark";
        return std::pair(child.isWindowModified(), Main().windowTitle());
    };
    const QString strName = QStringLiteral("絵\n [*][*] &5.vlm");
    spCanvas->GetRoot().AddLayer(CreateRasterLayer(spCanvas), -1);
    for (const bool bMaximized : {true, false, true}) {
        Active().GetWindow()->SetMaximized(bMaximized);
        EXPECT_EQ(titles(), std::pair(true, strName + "* @ 100% - Vellumcraft[*]"));
        EXPECT_EQ(tabs.isVisible(), bMaximized);
    }
    EXPECT_EQ(tabs.tabText(1), "絵\n [*] &&5.vlm*");
    tabs.setCurrentIndex(0);
    EXPECT_EQ(titles(), std::pair(false, QStringLiteral("1.vlm @ 100% - Vellumcraft[*]")));
    EXPECT_TRUE(Active().GetWindow()->IsMaximized()) << "as the last one was";
    QTest::mouseClick(&tabs, Qt::MiddleButton, {}, tabs.tabRect(0).center());
    Settle();
    Active().SetZoom(24);
    EXPECT_EQ(titles(), std::pair(true, strName + "* @ 50% - Vellumcraft[*]"));
    spCanvas->GetHistory().SetModified(false); // saved
    EXPECT_EQ(titles(), std::pair(false, strName + " @ 50% - Vellumcraft[*]"));
    EXPECT_EQ(tabs.count(), 1);
}

TEST_F(DocumentWindows, FramesStandInACascadeOrAreMaximisedAsTheLastOneWas) {
    Drop({"/1.vlm"});
    EXPECT_TRUE(Active().GetWindow()->IsMaximized());
    Active().GetWindow()->SetMaximized(false);
    Active().GetWindow()->SetRect({30, 40, 180, 190});
    Drop({"/2.vlm"});
    const CRect rcFirst(30, 40, 180, 190);
    const auto rect = [] { return Active().GetWindow()->GetRect(); };
    EXPECT_FALSE(Active().GetWindow()->IsMaximized());
    EXPECT_FALSE(rect().TopLeft() == rcFirst.TopLeft());
    for (int n = 0; n < 2; ++n) {
        Active().GetWindow()->SetRect(rcFirst);
        SendMessage({Active().GetWindow(), EMessage::Close});
        Settle();
    }
    Restart();
    Drop({"/1.vlm"});
    EXPECT_FALSE(Active().GetWindow()->IsMaximized());
    EXPECT_EQ(rect(), rcFirst);
    Drop({"/2.vlm"});
    EXPECT_EQ(rect(), CRect(rcFirst.TopLeft() + CPoint{24, 24}, rcFirst.Size()));
    Active().GetWindow()->SetMaximized(true);
    SendMessage({Active().GetWindow(), EMessage::Close});
    Settle();
    Drop({"/3.vlm"});
    EXPECT_TRUE(Active().GetWindow()->IsMaximized());
    EXPECT_EQ(PlaceInCascade({500, 90, 700, 290}, {{500, 90, 1, 1}, {400, 90, 1, 1}}, {720, 400}),
              CRect(0, 0, 200, 200))
        << "begins again at the area's end";
    EXPECT_EQ(PlaceInCascade({-50, 300, 850, 500}, {}, {720, 400}), CRect(0, 200, 720, 400));
}

TEST_F(DocumentWindows, ANewDocumentAndItsWindowFitEachOther) {
    ResizeMain(900, 700);
    Drop({"/1.vlm"});
    Active().GetWindow()->SetMaximized(false);
    for (const CSize sz : {CSize{200, 120}, CSize{6000, 400}}) {
        g_pMainFrame->OpenFrame(CreateCanvasFrame(CreateCanvas(sz)));
        Active().FitWindow();
        Settle();
        const CSize szClient = Active().GetWindow()->GetClientSize();
        const CRect rcShown = Active().GetView().ToWindow(CRect({0, 0}, sz));
        EXPECT_EQ(rcShown.Intersect(CRect({0, 0}, szClient)), rcShown) << "shown whole";
        const QRect rcArea(QPoint(), Main().findChild<QMdiArea*>()->viewport()->size());
        EXPECT_TRUE(rcArea.contains(dynamic_cast<QWidget*>(Active().GetWindow())->geometry()));
        if (sz.cx > 200) continue;
        EXPECT_EQ(szClient, (CSize{380, 300})); // with the margins
    }
}

TEST_F(DocumentWindows, OnASmallScreenOnlyListsScroll) {
    ResizeMain(1280, 700); // of 1280x720 less a title bar
    Drop({"/1.vlm"});
    const auto check = [&](const QDockWidget& dock) {
        Settle();
        const auto& area = *dock.findChild<QScrollArea*>();
        EXPECT_EQ(area.verticalScrollBar()->maximum(), 0) << dock.windowTitle().toStdString();
        EXPECT_GE(area.viewport()->width(), area.widget()->minimumSizeHint().width());
        for (const auto* pList : area.findChildren<QListView*>())
            EXPECT_TRUE(!pList->isVisible() || pList->isWrapping() || pList->height() >= 60)
                << dock.windowTitle().toStdString();
    };
    int nDocks = 0;
    for (QDockWidget* pDock : Main().findChildren<QDockWidget*>()) {
        if (Main().dockWidgetArea(pDock) == Qt::NoDockWidgetArea) continue; // the start page
        ++nDocks;
        pDock->raise();
        check(*pDock);
        EXPECT_FALSE(pDock->visibleRegion().isEmpty());
        if (auto* pSliders = pDock->findChild<QToolButton*>(QString::number(COLOR_MODE));
            pSliders && pDock->objectName() == "Color") {
            pSliders->click();
            check(*pDock);
        }
    }
    EXPECT_EQ(nDocks, 7);
    EXPECT_GE(Main().findChild<QMdiArea*>()->width(), 740) << "room for the picture";
    ResizeMain(1900, 1050);
    EXPECT_LE(Main().findChild<QDockWidget*>("Color")->height(), 310) << "the layers take what is left";
}

TEST_F(DocumentWindows, AMainWindowComesBackOnItsScreenAndMaximised) {
    const QRect rcScreen = Main().screen()->availableGeometry();
    Main().showNormal();
    Main().setGeometry(rcScreen.right() - 400, 30, 700, 500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return rcScreen.contains(Main().frameGeometry()); }));
    const CRect rc = g_pMainFrame->GetWindow()->GetRect();
    EXPECT_EQ(rc.Size(), (CSize{700, 500}));
    QTest::qWait(300); // until the window has come to rest
    for (const bool bMaximized : {true, true, false}) {
        g_pMainFrame->GetWindow()->SetMaximized(bMaximized);
        if (!bMaximized) g_pMainFrame->GetWindow()->SetRect(rc); // as the desktop does
        QTest::qWait(250);
        EXPECT_EQ(g_pMainFrame->GetWindow()->GetRect(), rc);
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
        Restart();
        EXPECT_EQ(Main().isMaximized(), bMaximized);
    }
    EXPECT_EQ(g_pMainFrame->GetWindow()->GetRect(), rc);
}

TEST_F(DocumentWindows, HiddenPanelsComeBackAsTheyWere) {
    ResizeMain(1280, 700);
    Drop({"/1.vlm"});
    // Of each panel the side, the place on it, and whether it is in front of its tabs.
    const auto places = [&] {
        Settle();
        std::map<std::string, std::tuple<int, QRect, bool>> map;
        for (const int nId : g_pMainFrame->GetPanels().GetCommands()) {
            const TPanelPlace place = g_pMainFrame->GetPanels().Find(nId)->GetWindow()->GetPlace();
            map[FindCommandName(nId)] = {static_cast<int>(place.dock), ToQt(place.rc), place.bFront};
        }
        return map;
    };
    const auto toggle = [] { g_pMainFrame->GetPanels().ToggleAll(); };
    g_pMainFrame->GetPanels()
        .Find(ID_PANEL_COLOR)
        ->GetWindow()
        ->SetPlace({EPanelDock::Float, CRect(CPoint{90, 80}, {260, 330}), true});
    const auto before = places();
    EXPECT_TRUE(std::get<2>(before.at("panel-brush")) && std::get<2>(before.at("panel-layer")));
    for (int n = 0; n < 2; ++n) {
        toggle();
        Settle();
        EXPECT_EQ(Main().findChild<QMdiArea*>()->width(), 1280) << "the picture has all the room";
        toggle();
        EXPECT_EQ(places(), before);
    }
    toggle();
    SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
    Restart();
    ResizeMain(1280, 700);
    EXPECT_EQ(places(), before);
}

TEST_F(DocumentWindows, AHintThatHasNoRoomEndsWithAnEllipsis) {
    ResizeMain(700, 700);
    QLabel& label = *Main().statusBar()->findChild<QLabel*>();
    QLabel whole(&Main());
    whole.setContentsMargins(label.contentsMargins());
    whole.resize(label.size());
    const auto image = [](QWidget& widget) { return widget.grab().toImage(); };
    for (const int nRepeated : {2, 100}) {
        g_pMainFrame->GetWindow()->SetStatusText(0, FromQt(QString("文字 ").repeated(nRepeated)));
        whole.setText(label.text());
        EXPECT_EQ(image(label) == image(whole), nRepeated == 2);
    }
}

TEST_F(DocumentWindows, APanelThatTheToolDoesNotUseGivesWay) {
    ResizeMain(1280, 700);
    Drop({"/1.vlm"});
    const auto window = [](int nId) { return g_pMainFrame->GetPanels().Find(nId)->GetWindow(); };
    const auto isFront = [&](int nId) { return Settle(), window(nId)->GetPlace().bFront; };
    const auto select = [&](int nTool) { return g_pMainFrame->SwitchTool(nTool); };
    for (const int nPanel : {ID_PANEL_TOOL_OPTION, ID_PANEL_BRUSH})
        EXPECT_TRUE(select(nPanel == ID_PANEL_BRUSH ? TOOL_BRUSH : TOOL_PATH) && isFront(nPanel)) << nPanel;
    select(TOOL_PATH);
    Settle();
    window(ID_PANEL_PRESS)->ShowPanel(true); // the user's choice stays
    g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
    EXPECT_TRUE(isFront(ID_PANEL_PRESS));
    EXPECT_TRUE(select(TOOL_BRUSH) && isFront(ID_PANEL_PRESS));
}

TEST_F(DocumentWindows, ASecondFingerTakesBackTheStrokeOfTheFirst) {
    Drop({"/1.vlm"});
    SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_LAYER_NEW_RASTER});
    const auto spCanvas = Active().GetCanvas();
    const auto nSteps = [&] { return Settle(), spCanvas->GetHistory().GetUndoList().size(); };
    const size_t nBefore = nSteps();
    const auto before = SaveToBytes(*spCanvas);
    QWidget& view = *ViewOf(dynamic_cast<ICanvasWindow*>(Active().GetWindow())).viewport();
    const std::unique_ptr<QPointingDevice> pScreen{QTest::createTouchDevice()};
    const auto touch = [&] { return QTest::touchEvent(view.window(), pScreen.get()); };
    const CPoint ptCanvas = Active().GetView().ToWindow(CPoint{30, 20});
    const QPoint pt(ptCanvas.x, ptCanvas.y), ptTo = pt + QPoint(12, 0), ptSecond = pt + QPoint(40, 9);
    for (const bool bSecond : {true, false}) {
        touch().press(1, pt, &view);
        for (int n = 1; n < 12; ++n) touch().move(1, pt + QPoint(n, 0), &view);
        Settle();
        EXPECT_TRUE(g_wpActiveTool.lock()->GetState() != STATE_IDLE);
        if (bSecond) touch().move(1, ptTo, &view).press(2, ptSecond, &view);
        if (bSecond) touch().move(1, ptTo, &view).release(2, ptSecond, &view);
        for (int n = 0; n < 5; ++n) touch().move(1, ptTo + QPoint(0, n), &view);
        touch().release(1, ptTo, &view);
        EXPECT_EQ(nSteps(), nBefore + (bSecond ? 0 : 1));
        EXPECT_EQ(SaveToBytes(*spCanvas) == before, bSecond);
    }
}
