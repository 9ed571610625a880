#include "tests/wayland/WaylandTest.h"

#include "TestPaths.h"

TEST_F(CWaylandTest, ThePenActsAsTheMouseOnPanels) {
    Tap(*FindButton(*m_pViewport->window(), u"消しゴム"));
    Sync();
    EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_ERASER);
}

TEST_F(CWaylandTest, ThePenOutlivesADialogThatItCloses) {
    QMessageBox box(m_pViewport->window());
    box.setWindowTitle(QStringLiteral("Box"));
    box.addButton(QMessageBox::Ok);
    box.open();
    Sync();
    const QWidget& button = *box.button(QMessageBox::Ok);
    const QPointF pt = OnSurface(button, QPointF(button.rect().center()));
    const auto play = [&](const std::string& strTitle, double dPressure) {
        const CCompositor::CLock lock = g_pCompositor->Lock();
        CTestTablet& tablet = g_pCompositor->GetTablet();
        if (dPressure != 0) tablet.Enter(CTestTablet::PEN, *g_pCompositor->FindWindow(strTitle), {pt});
        tablet.Move(CTestTablet::PEN, {pt, dPressure});
    };
    play("Box", 0.5);
    play("Box", 0);
    Sync();
    EXPECT_FALSE(box.isVisible());
    play("Box", 0); // the compositor has not seen the window go
    Leave(CTestTablet::PEN);
    Tap(*FindButton(*m_pViewport->window(), u"消しゴム"));
    Sync();
    EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_ERASER);
}

TEST_F(CWaylandTest, AFloatingPanelDocksByItsButton) {
    auto* pPanel = m_pViewport->window()->findChild<QDockWidget*>();
    for (const bool bFloats : {true, false}) {
        const QAbstractButton* pButton = FindButton(*pPanel, u"切り離す");
        ASSERT_TRUE(pButton);
        Tap(*pButton);
        Sync();
        EXPECT_EQ(pPanel->isFloating(), bFloats);
    }
}

TEST_F(CWaylandTest, APanelsMenuOpensAtThePen) {
    const auto* pPanel = m_pViewport->window()->findChild<QDockWidget*>(QStringLiteral("Layer"));
    ASSERT_TRUE(pPanel);
    const QWidget& list = *pPanel->findChild<QAbstractItemView*>()->viewport();
    const QPoint pt = list.rect().center();
    Play([&](CTestTablet& tablet, const TSurface& surface) {
        tablet.Enter(CTestTablet::PEN, surface, {OnSurface(list, pt)});
        for (const bool bDown : {true, false})
            tablet.Button(CTestTablet::PEN, CTestTablet::BTN_STYLUS2, bDown);
    });
    Sync();
    const QWidget* pMenu = QApplication::activePopupWidget();
    ASSERT_TRUE(pMenu);
    EXPECT_EQ(pMenu->pos(), list.mapToGlobal(pt));
}

TEST_F(CWaylandTest, PlacesThatTheDesktopDoesNotTellAreKept) {
    IMainWindow& main = *g_pMainFrame->GetWindow();
    EXPECT_EQ(main.GetRect(), CRect({159, 99}, {1600, 1000})) << "in the middle of the screen at first";
    main.SetRect(CRect({120, 90}, {1100, 800}));
    auto* pPanel = m_pViewport->window()->findChild<QDockWidget*>();
    auto& panel = dynamic_cast<IPanelWindow&>(*pPanel);
    TPanelPlace place = panel.GetPlace();
    place.dock = EPanelDock::Float;
    place.rc = CRect({640, 200}, {300, 420});
    panel.SetPlace(place);
    Sync();
    QTest::qWait(300); // the places are noted when the desktop has put its frame around a window
    Sync();
    EXPECT_EQ(main.GetRect(), CRect({120, 90}, {1100, 800}));
    EXPECT_EQ(panel.GetPlace().rc, place.rc);
}

TEST_F(CWaylandTest, ASecondStartBringsTheFirstToTheFrontByTheDesktopsToken) {
    const CTempFolder folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QString::fromStdString(folder.GetPath().native()));
    QProcess first;
    first.setProcessEnvironment(environment);
    first.start(VELLUM_DESKTOP, {});
    ASSERT_TRUE(QTest::qWaitFor([] { return g_pCompositor->CountClients() == 2; }, 10000));
    environment.insert(QStringLiteral("XDG_ACTIVATION_TOKEN"), QStringLiteral("of the file manager"));
    QProcess second;
    second.setProcessEnvironment(environment);
    second.start(VELLUM_DESKTOP, {});
    ASSERT_TRUE(second.waitForFinished(10000));
    EXPECT_TRUE(QTest::qWaitFor(
        [] { return std::ranges::count(g_pCompositor->GetActivations(), "of the file manager") == 1; },
        5000));
    first.kill();
    first.waitForFinished();
}
