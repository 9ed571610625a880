#include "tests/ui/UiTest.h"

#include "ui/windows/QtMdiArrange.h"

namespace {

QMdiSubWindow& WidgetOf(ICanvasWindow* pWindow) { return *dynamic_cast<QMdiSubWindow*>(pWindow); }

} // namespace

TEST_F(CUiTest, ClosingGoesThroughMessages) {
    const QPointer<QWidget> pWidget = &WidgetOf(Open(m_a));
    m_vLog.clear();
    m_a.m_fnHandle = [](const TMessage& msg) { return msg.id == EMessage::Close; };
    pWidget->close();
    EXPECT_EQ(m_vLog, TLog());
    Turn();
    EXPECT_EQ(m_vLog, TLog{"a close"});
    ASSERT_TRUE(pWidget && pWidget->isVisible());

    m_a.m_fnHandle = {};
    pWidget->close();
    pWidget->close(); // the second one is for a window that is destroyed by then
    Turn();
    EXPECT_EQ(m_vLog, (TLog{"a close", "a close", "a off", "a destroy", "a final"}));
    EXPECT_TRUE(pWidget.isNull());
}

TEST_F(CUiTest, MainWindowTakesItsChildrenWithIt) {
    const QPointer<QWidget> pA = &WidgetOf(Open(m_a)), pMain = &GetWidget();
    Open(m_b)->SetTimer(1, 0);
    m_vLog.clear();
    pMain->close();
    Turn();
    EXPECT_EQ(m_vLog, (TLog{"main close", "b off", "main destroy", "a destroy", "a final", "b destroy",
                            "b final", "main final"}));
    EXPECT_TRUE(pMain.isNull() && pA.isNull());
    m_pMain = CreateMain(m_main);
    ASSERT_TRUE(m_pMain);
    EXPECT_FALSE(CreateMain(m_main));
}

TEST_F(CUiTest, AWindowMayBeDestroyedInsideAnyOfItsMessages) {
    for (const EMessage id : {EMessage::MdiActivate, EMessage::Size, EMessage::Close, EMessage::Destroy}) {
        IMainWindow* pMain = m_pMain;
        ICanvasWindow* pCanvas = Open(m_a);
        const QPointer<QWidget> pGlass = &WidgetOf(pCanvas);
        Open(m_b);
        int nCalls = 0;
        m_a.m_fnHandle = [&](const TMessage& msg) {
            if (msg.id != id) return false;
            ++nCalls;
            pCanvas->Destroy();
            if (id == EMessage::Destroy) pMain->Destroy(); // which owns it
            return false;
        };
        m_vLog.clear();
        pCanvas->Activate();
        pCanvas->SetRect({0, 0, 200, 150});
        WidgetOf(pCanvas).close();
        Turn();
        const auto says = [&](const char* psz) { return std::count(m_vLog.begin(), m_vLog.end(), psz); };
        EXPECT_EQ(says("a destroy"), 1);
        EXPECT_EQ(says("a final"), 1);
        EXPECT_GE(nCalls, 1) << static_cast<int>(id);
        EXPECT_TRUE(pGlass.isNull());
        m_a.m_fnHandle = {};
    }
    EXPECT_THAT(m_vLog, testing::IsSupersetOf({"main final", "b final"}));
    m_pMain = CreateMain(m_main);
}

TEST(QtPlatform, WindowsOfABrokenSessionGoWithoutAWord) {
    TLog vLog;
    auto pSession = std::make_unique<CUiSession>();
    {
        CTestClient main("main", vLog), canvas("canvas", vLog);
        IMainWindow* pMain = pSession->CreateMain(main);
        pMain->Show();
        ICanvasWindow* pCanvas = pSession->m_windows.CreateCanvasWindow(*pMain, canvas, {});
        pCanvas->Show();
        pCanvas->SetTimer(1, 20);
        pSession->Turn();
    }
    vLog.clear();
    // The session's end deletes the windows, which must not call their clients, destroyed by now.
    pSession.reset();
    EXPECT_EQ(vLog, TLog());
}

TEST_F(CUiTest, PaintReachesTheGlassPixelForPixel) {
    ICanvasWindow* pCanvas = m_windows.CreateCanvasWindow(*m_pMain, m_a, {});
    QWidget& glass = *ViewOf(pCanvas).viewport();
    QImage image;
    m_a.m_fnPaint = [&](IPaintTarget& target, const CRect& rc) {
        image = QImage(glass.size(), QImage::Format_RGB32);
        for (int n = 0; n < image.width() * image.height(); ++n)
            image.setPixel(n % image.width(), n / image.width(), qRgb(0x5A, n / image.width(), n % 251));
        target.Blit(image.constBits(), static_cast<int>(image.bytesPerLine()), pCanvas->GetClientSize(), rc);
    };
    pCanvas->Show();
    pCanvas->SetRect({10, 10, 310, 260});
    EXPECT_EQ(pCanvas->GetRect(), CRect(10, 10, 310, 260));
    Turn();
    const CSize sz = pCanvas->GetClientSize();
    EXPECT_THAT(m_a.Got(EMessage::Size), testing::Contains(testing::Pair(sz.cx, sz.cy)));
    EXPECT_EQ(glass.size(), QSize(sz.cx, sz.cy));
    EXPECT_EQ(glass.grab().toImage().convertToFormat(QImage::Format_RGB32), image);

    m_a.m_vPainted.clear();
    pCanvas->Invalidate({20, 30, 26, 40});
    Turn();
    EXPECT_EQ(m_a.m_vPainted, std::vector<CRect>{CRect(20, 30, 26, 40)});
    m_a.m_vPainted.clear();
    for (const CRect& rc : {CRect(1, 2, 5, 8), CRect(150, 120, 160, 125)}) pCanvas->Invalidate(rc);
    Turn();
    EXPECT_EQ(m_a.m_vPainted, (std::vector{CRect(1, 2, 5, 8), CRect(150, 120, 160, 125)}));

    ASSERT_TRUE(m_platform.SaveScreenshot(L"/shot.png"));
    const QImage shot = QImage::fromData(QByteArray::fromStdString(m_files.m_mapFiles[L"/shot.png"]));
    EXPECT_EQ(shot.pixel(glass.mapTo(&GetWidget(), QPoint(7, 9))), image.pixel(7, 9));
}

TEST_F(CUiTest, ScrollBarsTellOnlyWhatTheUserDoes) {
    ICanvasWindow* pCanvas = Open(m_a);
    QAbstractScrollArea& view = ViewOf(pCanvas);
    const int nBottom = 2000 - pCanvas->GetClientSize().cy;
    pCanvas->SetScroll({3000, 2000}, {10, 10}, {100, 100}, {50, 9999});
    EXPECT_EQ(view.verticalScrollBar()->value(), nBottom);
    view.verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
    view.horizontalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    Turn();
    view.horizontalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::Scroll), (TParams{{1, nBottom - 10}, {0, 150}, {0, 50}}));

    for (const int nDelta : {50, 50, 50, -100, -140, 240}) {
        QWheelEvent event({5, 5}, {5, 5}, {}, {0, nDelta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::MouseWheel), (TParams{{120, 0}, {-240, 0}, {240, 0}}));
}

TEST_F(CUiTest, APinchZoomsByLinesOfTheList) {
    QWidget& glass = *ViewOf(Open(m_a)).viewport();
    const auto pinch = [&](Qt::NativeGestureType type, qreal dValue) {
        QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, {30, 40}, {30, 40},
                                  {30, 40}, dValue, {});
        QCoreApplication::sendEvent(&glass, &event);
    };
    for (const double d : {0.1, 0.1, 0.1, -0.1, -0.15, 0.2}) pinch(Qt::ZoomNativeGesture, d);
    pinch(Qt::BeginNativeGesture, 0);
    pinch(Qt::ZoomNativeGesture, 0.2);
    Turn();
    EXPECT_EQ(m_a.Got(EMessage::Pinch), (TParams{{1, PackPoint(30, 40)}, {-1, PackPoint(30, 40)}}));
}

TEST(QtMdiArrange, TilesFillTheArea) {
    EXPECT_EQ(TileRects({300, 90}, 2, true)[1], QRect(0, 45, 300, 45));
    EXPECT_EQ(TileRects({300, 90}, 5, true)[1], QRect(0, 45, 150, 45)) << "the right column takes the third";
}
