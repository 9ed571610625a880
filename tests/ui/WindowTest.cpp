#include "UiTest.h"

#include "ui/QtMdiArrange.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>

namespace {

QMdiSubWindow& WidgetOf(ICanvasWindow* pWindow) { return *dynamic_cast<QMdiSubWindow*>(pWindow); }
QAbstractScrollArea& ViewOf(ICanvasWindow* pWindow) {
    return *qobject_cast<QAbstractScrollArea*>(WidgetOf(pWindow).widget());
}

/// A bitmap whose every pixel tells its place.
std::vector<uint8_t> MakePixels(CSize sz) {
    std::vector<uint8_t> vPixels;
    for (int y = 0; y < sz.cy; ++y)
        for (int x = 0; x < sz.cx; ++x)
            vPixels.insert(vPixels.end(), {static_cast<uint8_t>(x), static_cast<uint8_t>(y), 0x5A});
    return vPixels;
}

} // namespace

TEST_F(CUiTest, ClosingGoesThroughMessages) {
    CTestClient& canvas = MakeClient("canvas");
    const QPointer<QWidget> pWidget = &WidgetOf(MakeCanvas(canvas, L"絵"));
    canvas.m_fnHandle = [](const TMessage& msg) { return msg.id == EMessage::Close; };
    pWidget->close();
    EXPECT_TRUE(pWidget->isVisible());
    Turn();
    EXPECT_TRUE(pWidget && pWidget->isVisible());

    canvas.m_fnHandle = {};
    m_vLog.clear();
    pWidget->close();
    pWidget->close(); // the second one waits for a window that is gone by then
    Turn();
    EXPECT_EQ(m_vLog, (std::vector<std::string>{"canvas: close 0", "canvas: activate 0", "canvas: destroy 0",
                                                "canvas: final"}));
    EXPECT_TRUE(pWidget.isNull());
}

TEST_F(CUiTest, TheOneUsedBeforeFollowsAClosedChild) {
    CTestClient& a = MakeClient("a");
    CTestClient& b = MakeClient("b");
    CTestClient& c = MakeClient("c");
    ICanvasWindow* pA = MakeCanvas(a, L"A");
    MakeCanvas(b, L"B");
    ICanvasWindow* pC = MakeCanvas(c, L"C");
    pA->Activate();
    pC->Activate();
    m_vLog.clear();
    pC->Destroy();
    Turn();
    EXPECT_EQ(m_vLog,
              (std::vector<std::string>{"c: activate 0", "a: activate 1", "c: destroy 0", "c: final"}));
}

TEST_F(CUiTest, MainWindowTakesItsChildrenWithIt) {
    CTestClient& a = MakeClient("a");
    CTestClient& b = MakeClient("b");
    const QPointer<QWidget> pA = &WidgetOf(MakeCanvas(a, L"A"));
    MakeCanvas(b, L"B")->SetTimer(1, 0);
    const QPointer<QWidget> pMain = &GetWidget();
    m_vLog.clear();
    pMain->close();
    Turn();
    EXPECT_EQ(m_vLog,
              (std::vector<std::string>{"main: close 0", "b: activate 0", "main: destroy 0", "a: destroy 0",
                                        "a: final", "b: destroy 0", "b: final", "main: final"}));
    EXPECT_TRUE(pMain.isNull());
    EXPECT_TRUE(pA.isNull());
    // One session, one main window after the other.
    m_pMain = m_platform.GetWindows().CreateMainWindow(m_main, {L"Vellumcraft", {}, {}});
    ASSERT_TRUE(m_pMain);
    EXPECT_FALSE(m_platform.GetWindows().CreateMainWindow(m_main, {L"Vellumcraft", {}, {}}));
}

TEST(QtPlatform, WindowsOfABrokenSessionGoWithoutAWord) {
    std::vector<std::string> vLog;
    auto pSession = std::make_unique<CUiSession>();
    {
        CTestClient main("main", vLog), canvas("canvas", vLog);
        IMainWindow* pMain =
            pSession->m_platform.GetWindows().CreateMainWindow(main, {L"Vellumcraft", {}, {}});
        pMain->Show();
        ICanvasWindow* pCanvas =
            pSession->m_platform.GetWindows().CreateCanvasWindow(*pMain, canvas, {L"絵", {}});
        pCanvas->Show();
        pCanvas->SetTimer(1, 20);
        pSession->Turn();
    }
    vLog.clear();
    // The session's end takes the windows; a word to their clients, gone by now, would be a word to the dead.
    pSession.reset();
    EXPECT_TRUE(vLog.empty());
}

TEST_F(CUiTest, TimersDoNotPileUp) {
    CTestClient& canvas = MakeClient("canvas");
    ICanvasWindow* pCanvas = MakeCanvas(canvas, L"絵");
    pCanvas->SetTimer(15, 1);
    pCanvas->SetTimer(16, 1);
    QTest::qWait(40); // a modal dialog: events run, messages wait
    size_t nCounts[2] = {};
    while (m_queue.Peek() && nCounts[0] + nCounts[1] < 10) {
        TMessage msg;
        m_queue.Get(msg);
        if (msg.id == EMessage::Timer) ++nCounts[msg.wParam - 15];
        if (nCounts[0] > 1 || nCounts[1] > 1) break;
        if (nCounts[0] == 1 && nCounts[1] == 1) break;
    }
    EXPECT_EQ(nCounts[0], 1u);
    EXPECT_EQ(nCounts[1], 1u);
    // Once taken they come again, until they are stopped.
    QTest::qWait(5);
    Turn([&](const TMessage&) {
        pCanvas->KillTimer(15);
        pCanvas->KillTimer(16);
        return false;
    });
    EXPECT_GE(canvas.Got(EMessage::Timer).size(), 1u);
    const size_t nTimers = canvas.Got(EMessage::Timer).size();
    QTest::qWait(10);
    Turn();
    EXPECT_EQ(canvas.Got(EMessage::Timer).size(), nTimers);
}

TEST_F(CUiTest, PaintReachesTheGlassPixelForPixel) {
    CTestClient& canvas = MakeClient("canvas");
    ICanvasWindow* pCanvas = nullptr;
    canvas.m_fnPaint = [&](IPaintTarget& target, const CRect& rc) {
        const CSize sz = pCanvas->GetClientSize();
        target.Blit(MakePixels(sz).data(), sz.cx * 3, sz, rc);
    };
    pCanvas = m_platform.GetWindows().CreateCanvasWindow(*m_pMain, canvas, {L"絵", {}});
    const CSize szBefore = pCanvas->GetClientSize();
    pCanvas->Show();
    EXPECT_EQ(pCanvas->GetClientSize(), szBefore);
    pCanvas->SetRect({10, 10, 310, 260});
    EXPECT_EQ(pCanvas->GetRect(), CRect(10, 10, 310, 260));
    Turn();
    const CSize sz = pCanvas->GetClientSize();
    ASSERT_FALSE(canvas.Got(EMessage::Size).empty());
    EXPECT_EQ(canvas.Got(EMessage::Size).back().wParam, sz.cx);
    EXPECT_EQ(canvas.Got(EMessage::Size).back().lParam, sz.cy);

    const QImage image = ViewOf(pCanvas).viewport()->grab().toImage();
    ASSERT_EQ(image.size(), QSize(sz.cx, sz.cy));
    for (int y = 0; y < sz.cy; ++y)
        for (int x = 0; x < sz.cx; ++x)
            ASSERT_EQ(image.pixel(x, y), qRgb(0x5A, y & 255, x & 255)) << x << ", " << y;

    canvas.m_vPainted.clear();
    pCanvas->Invalidate({20, 30, 26, 40});
    Turn();
    EXPECT_EQ(canvas.m_vPainted, std::vector<CRect>{CRect(20, 30, 26, 40)});

    ASSERT_TRUE(m_platform.SaveScreenshot(L"/shot.png"));
    const std::string& strPng = m_files.m_mapFiles[L"/shot.png"];
    const QImage shot =
        QImage::fromData(reinterpret_cast<const uchar*>(strPng.data()), static_cast<int>(strPng.size()));
    const QPoint pt =
        ViewOf(pCanvas).viewport()->mapTo(&GetWidget(), QPoint()) * GetWidget().devicePixelRatio();
    EXPECT_EQ(shot.pixel(pt + QPoint(7, 9)), qRgb(0x5A, 9, 7));
}

TEST_F(CUiTest, AFailedPaintIsToldAfterIt) {
    CTestClient& canvas = MakeClient("canvas");
    int nPaints = 0;
    canvas.m_fnPaint = [&](IPaintTarget&, const CRect&) {
        if (++nPaints <= 2)
            m_platform.GetPlatform().boxes.Show(m_pMain, L"壊れた", L"Error", EBoxKind::Error);
    };
    int nBoxes = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (QWidget* pBox = QApplication::activeModalWidget()) ++nBoxes, pBox->close();
    });
    timer.start(5);
    MakeCanvas(canvas, L"絵")->Invalidate();
    for (int n = 0; n < 20; ++n) QTest::qWait(5), Turn();
    EXPECT_GE(nPaints, 2);
    EXPECT_TRUE(nBoxes == 1 || nBoxes == 2)
        << nBoxes; // the second paint came behind the first box or after it
}

TEST_F(CUiTest, ScrollBarsTellOnlyWhatTheUserDoes) {
    CTestClient& canvas = MakeClient("canvas");
    ICanvasWindow* pCanvas = MakeCanvas(canvas, L"絵");
    const int nBottom = 2000 - pCanvas->GetClientSize().cy;
    pCanvas->SetScroll({3000, 2000}, {10, 10}, {100, 100}, {50, 9999});
    Turn();
    EXPECT_TRUE(canvas.Got(EMessage::Scroll).empty());
    QScrollBar* pVertical = ViewOf(pCanvas).verticalScrollBar();
    EXPECT_EQ(pVertical->value(), nBottom);
    pVertical->triggerAction(QAbstractSlider::SliderSingleStepSub);
    ViewOf(pCanvas).horizontalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    Turn();
    const std::vector<TMessage> vScroll = canvas.Got(EMessage::Scroll);
    ASSERT_EQ(vScroll.size(), 2u);
    EXPECT_EQ(vScroll[0].wParam, 1);
    EXPECT_EQ(vScroll[0].lParam, nBottom - 10);
    EXPECT_EQ(vScroll[1].wParam, 0);
    EXPECT_EQ(vScroll[1].lParam, 150);

    const auto turn = [&](int nDelta) {
        QWheelEvent event({5, 5}, {5, 5}, {}, {0, nDelta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(ViewOf(pCanvas).viewport(), &event);
    };
    for (const int nDelta : {50, 50, 50, -100, -140, 240}) turn(nDelta);
    Turn();
    std::vector<int64_t> vDeltas;
    for (const TMessage& msg : canvas.Got(EMessage::MouseWheel)) vDeltas.push_back(msg.wParam);
    EXPECT_EQ(vDeltas, (std::vector<int64_t>{120, -240, 240}));
}

TEST_F(CUiTest, AMaximisedChildKeepsItsPlaceForLater) {
    CTestClient& canvas = MakeClient("canvas");
    ICanvasWindow* pCanvas = MakeCanvas(canvas, L"絵");
    pCanvas->SetRect({20, 30, 420, 330});
    WidgetOf(pCanvas).showMaximized();
    Turn();
    EXPECT_EQ(pCanvas->GetRect(), CRect(20, 30, 420, 330));
    m_pMain->ArrangeChildren(EArrange::TileVertical);
    const QSize szArea = GetWidget().findChild<QMdiArea*>()->viewport()->size();
    EXPECT_EQ(pCanvas->GetRect(), CRect(0, 0, szArea.width(), szArea.height()));
}

TEST(QtMdiArrange, TilesFillTheArea) {
    EXPECT_EQ(TileRects({300, 90}, 2, true), (std::vector<QRect>{{0, 0, 300, 45}, {0, 45, 300, 45}}));
    EXPECT_EQ(TileRects({300, 90}, 2, false), (std::vector<QRect>{{0, 0, 150, 90}, {150, 0, 150, 90}}));
    for (const bool bStacked : {false, true}) {
        for (int nCount = 1; nCount < 12; ++nCount) {
            QRegion region;
            int nPixels = 0;
            for (const QRect& rc : TileRects({301, 203}, nCount, bStacked)) {
                region += rc;
                nPixels += rc.width() * rc.height();
            }
            EXPECT_EQ(region, QRegion(0, 0, 301, 203)) << nCount;
            EXPECT_EQ(nPixels, 301 * 203) << nCount;
        }
    }
    for (const QRect& rc : CascadeRects({400, 300}, 30, 24)) EXPECT_TRUE(QRect(0, 0, 400, 300).contains(rc));
}
