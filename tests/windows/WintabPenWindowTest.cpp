#include "tests/windows/FakeDriver.h"
#include "ui/base/QtApplication.h"
#include "ui/input/win32/WintabPen.h"

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QMouseEvent>
#include <QTabletEvent>

#include <gtest/gtest.h>

#include <vector>

namespace {

/// A view that takes a pen's events.
class CPenView : public QWidget {
public:
    explicit CPenView(QWidget* pParent) : QWidget(pParent) { setTabletTracking(true); }
    std::vector<std::pair<QPointF, double>> m_vReports; ///< place in the view and pressure
    QPointF m_ptTilt;

protected:
    void tabletEvent(QTabletEvent* pEvent) override {
        m_vReports.emplace_back(pEvent->position(), pEvent->pressure());
        m_ptTilt = {pEvent->xTilt(), pEvent->yTilt()};
        pEvent->accept();
    }
};

class CTestWindow : public QWidget {
public:
    /// Makes another window of the system.
    void Recreate() {
        destroy();
        create();
    }
};

class WintabPen : public testing::Test {
protected:
    WintabPen() {
        m_window.setGeometry(100, 80, 400, 300);
        m_window.show();
        m_pen.SetWindow(&m_window);
        QCoreApplication::processEvents();
    }
    ~WintabPen() override { m_pen.SetWindow(nullptr); }

    /// Plays a packet at a pixel of the screen, plus units of the tablet to the right.
    void Play(CPoint ptPixel, int32_t nUnits, wintab::TPacket packet = {}) {
        packet.x = ptPixel.x * 23 + nUnits;
        packet.y = 27600 - ptPixel.y * 23;
        m_driver.Play(packet);
    }
    static void MoveMouse(QWidget& widget) {
        QMouseEvent event(QEvent::MouseMove, QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), Qt::NoButton,
                          {}, {});
        QCoreApplication::sendEvent(&widget, &event);
    }
    bool IsEnabled() { return m_driver.GetState().bEnabled; }

    const bool m_bApplication = EnsureApplication();
    CFakeDriver m_driver;
    std::vector<std::vector<TPenPacket>> m_vBatches;
    std::vector<bool> m_vProximity;
    CWintabPen m_pen{CWintabLibrary::Load(m_driver.GetPath()),
                     {{{0, 65535}, {0, 900}, 32},
                      [this](std::span<const TPenPacket> packets) {
                          m_vBatches.emplace_back(packets.begin(), packets.end());
                      },
                      [this](bool bEnter) { m_vProximity.push_back(bEnter); }}};
    CTestWindow m_window;
};

} // namespace

TEST_F(WintabPen, TheDriversMessagesBecomePacketsOnce) {
    EXPECT_EQ(m_driver.GetState().nContexts, 0);
    m_pen.SetMouseCoord(false);
    m_driver.TellProximity(true);
    m_driver.TellProximity(false, true);
    Play({50, 100}, 7, {.uCursor = 2, .uButtons = 0x20000, .uPressure = 2047, .nAltitude = 600});
    Play({51, 99}, 0);
    QCoreApplication::processEvents();
    ASSERT_EQ(m_vBatches.size(), 1u); // the second message finds nothing left
    ASSERT_EQ(m_vBatches[0].size(), 2u);
    const TPenPacket& packet = m_vBatches[0][0];
    EXPECT_EQ(packet.x, 1610); // 50 7/23 pixels and half a unit
    EXPECT_EQ(packet.y, 3200);
    EXPECT_TRUE(packet.uPressure == 65535 && packet.nAltitude == 600);
    EXPECT_TRUE(packet.uCursor == 2 && packet.uButtons == 0x20000);
    POINT ptCursor{};
    EXPECT_TRUE(GetCursorPos(&ptCursor) && ptCursor.x == 51 && ptCursor.y == 99)
        << ptCursor.x << ' ' << ptCursor.y;
    m_driver.TellProximity(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_vProximity, (std::vector{true, false}));
}

TEST_F(WintabPen, PositionsOfTheCursorKeepTheirDistances) {
    m_pen.SetMouseCoord(true);
    m_pen.SetMouseCoord(false); // a later canvas
    EXPECT_TRUE(m_driver.GetState().context.uOptions & wintab::CXO_SYSTEM);
    SetCursorPos(200, 300);
    Play({50, 100}, 0);
    Play({54, 102}, 0);
    QCoreApplication::processEvents();
    ASSERT_EQ(m_vBatches.size(), 1u);
    const TPenPacket &first = m_vBatches[0][0], &last = m_vBatches[0][1];
    EXPECT_TRUE(first.x == 196 * 32 + 16 && first.y == 298 * 32 + 16) << first.x << ' ' << first.y;
    EXPECT_TRUE(last.x == 200 * 32 + 16 && last.y == 300 * 32 + 16) << last.x << ' ' << last.y;
}

TEST_F(WintabPen, TheContextComesAndGoesWithItsWindow) {
    m_pen.SetMouseCoord(false);
    EXPECT_EQ(m_driver.GetState().hWnd, reinterpret_cast<HWND>(m_window.winId()));
    const HWND hBefore = m_driver.GetState().hWnd;
    m_window.Recreate();
    EXPECT_NE(m_driver.GetState().hWnd, hBefore);
    EXPECT_EQ(m_driver.GetState().nContexts, 1);
    EXPECT_EQ(m_driver.GetState().hWnd, reinterpret_cast<HWND>(m_window.winId()));
    Play({50, 100}, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_vBatches.size(), 1u);
    Play({50, 100}, 0);
    m_pen.SetWindow(nullptr);
    EXPECT_EQ(m_driver.GetState().nContexts, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_vBatches.size(), 1u);
}

TEST_F(WintabPen, InFrontTheContextIsOnTopAndOpen) {
    m_pen.SetMouseCoord(false);
    const int nOverlaps = m_driver.GetState().nOverlaps;
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    EXPECT_FALSE(IsEnabled());
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_TRUE(IsEnabled());
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_GE(m_driver.GetState().nOverlaps, nOverlaps + 2);
    // The driver closes the context, and is there again later.
    const HWND hWnd = m_driver.GetState().hWnd;
    PostMessageW(hWnd, wintab::WT_CTXCLOSE, reinterpret_cast<WPARAM>(m_driver.GetState().hContext), 0);
    QCoreApplication::processEvents();
    EXPECT_FALSE(m_pen.GetDevice());
    m_driver.Reset({.pszName = L"Another"});
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_EQ(m_driver.GetState().nContexts, 1);
    EXPECT_EQ(m_pen.GetDevice()->strName, L"Another");
    // Another tablet in its place.
    m_driver.Reset({.pressure = {0, 8191}});
    ASSERT_TRUE(m_driver.GetState().hWnd == nullptr);
    PostMessageW(hWnd, wintab::WT_INFOCHANGE, 0, 0);
    QCoreApplication::processEvents();
    Play({50, 100}, 0, {.uPressure = 8191});
    QCoreApplication::processEvents();
    ASSERT_EQ(m_vBatches.size(), 1u);
    EXPECT_EQ(m_vBatches[0][0].uPressure, 65535u);
}

TEST_F(WintabPen, QtsEventsOfTheSamePenAreRefused) {
    m_pen.SetMouseCoord(false);
    EXPECT_FALSE(m_pen.TakesOver()); // the driver has reported nothing yet
    Play({50, 100}, 0);
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_pen.TakesOver() && m_pen.IsInCharge());
    m_pen.Enable(false);
    EXPECT_TRUE(m_pen.TakesOver());
    EXPECT_TRUE(IsEnabled());
    Play({50, 100}, 0);
    QCoreApplication::processEvents();
    // 16 events while the driver is silent: the hand has taken another pen.
    for (int n = 0; n < 16; ++n) EXPECT_TRUE(m_pen.TakesOver()) << n;
    EXPECT_FALSE(m_pen.TakesOver() || m_pen.IsInCharge());
    Play({50, 100}, 0);
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_pen.TakesOver());
}

TEST_F(WintabPen, AMenuGetsThePointerAndADialogsViewThePen) {
    m_pen.SetMouseCoord(false);
    QMenu menu;
    menu.addAction(QStringLiteral("entry"));
    menu.popup({300, 300});
    Play({50, 100}, 0);
    m_driver.TellProximity(true);
    QCoreApplication::processEvents();
    menu.close();
    EXPECT_TRUE(m_vBatches.empty() && m_vProximity.empty());
    EXPECT_FALSE(IsEnabled());

    QDialog dialog(&m_window);
    dialog.setModal(true);
    CPenView view(&dialog);
    view.setGeometry(20, 10, 100, 100);
    dialog.setGeometry(150, 120, 300, 200);
    dialog.show();
    QCoreApplication::processEvents();
    MoveMouse(dialog);
    EXPECT_FALSE(IsEnabled());
    MoveMouse(view);
    EXPECT_TRUE(IsEnabled());
    const QPoint ptView = view.mapToGlobal(QPoint());
    // Leaning by 45 degrees towards the right.
    Play({ptView.x() + 30, ptView.y() + 40}, 11, {.uPressure = 2047, .nAzimuth = 900, .nAltitude = 450});
    QCoreApplication::processEvents();
    ASSERT_EQ(view.m_vReports.size(), 1u);
    EXPECT_NEAR(view.m_vReports[0].first.x(), 30.5, 0.05);
    EXPECT_NEAR(view.m_vReports[0].first.y(), 40, 0.05);
    EXPECT_EQ(view.m_vReports[0].second, 1);
    EXPECT_NEAR(view.m_ptTilt.x(), 45, 0.1);
    EXPECT_NEAR(view.m_ptTilt.y(), 0, 0.1);
    EXPECT_TRUE(IsEnabled());
    Play({ptView.x() + 200, ptView.y() + 40}, 0); // beside the view
    QCoreApplication::processEvents();
    EXPECT_EQ(view.m_vReports.size(), 1u);
    EXPECT_FALSE(IsEnabled());
    EXPECT_TRUE(m_vBatches.empty());
}
