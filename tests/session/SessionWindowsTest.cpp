#include "session/seam/SessionWindows.h"

#include "session/seam/VirtualClock.h"
#include "tests/support/TestClient.h"

#include <gtest/gtest.h>

namespace {

class SessionWindows : public testing::Test {
protected:
    SessionWindows() { m_pMain = m_windows.CreateMainWindow(m_main, {}); }

    CSessionCanvasWindow& Open(CTestClient& client) {
        ICanvasWindow* pWindow = m_windows.CreateCanvasWindow(*m_pMain, client, {});
        pWindow->Show();
        return dynamic_cast<CSessionCanvasWindow&>(*pWindow);
    }
    TLog Take() { return std::exchange(m_vLog, {}); }

    TLog m_vLog;
    CTestClient m_main{"main", m_vLog}, m_a{"a", m_vLog}, m_b{"b", m_vLog}, m_c{"c", m_vLog};
    CMessageQueue m_queue;
    CVirtualClock m_clock;
    CSessionWindows m_windows{m_queue, m_clock};
    IMainWindow* m_pMain;
};

TEST_F(SessionWindows, WindowsGoOneAfterTheOther) {
    CSessionCanvasWindow& a = Open(m_a);
    Open(m_b);
    Open(m_c);
    EXPECT_EQ(Take(), (TLog{"a on", "a off", "b on", "b off", "c on"}));
    a.Activate();
    a.Activate();
    EXPECT_EQ(Take(), (TLog{"c off", "a on"}));
    // The window used before follows a closed one.
    SendMessage({&a, EMessage::Close});
    EXPECT_EQ(Take(), (TLog{"a close", "a off", "c on", "a destroy", "a final"}));

    EXPECT_EQ(m_windows.CreateMainWindow(m_a, {}), nullptr);
    m_queue.Post({m_pMain, EMessage::InitMenuPopup});
    SendMessage({m_pMain, EMessage::Close});
    EXPECT_EQ(Take(), (TLog{"main close", "c off", "main destroy", "b destroy", "b final", "c destroy",
                            "c final", "main final"}));
    EXPECT_FALSE(m_queue.Peek());
    EXPECT_EQ(m_windows.CreateCanvasWindow(*m_pMain, m_a, {}), nullptr);
    m_windows.FreeDead();
    EXPECT_NE(m_windows.CreateMainWindow(m_main, {}), nullptr);
}

TEST_F(SessionWindows, PaintsWhatWasInvalidatedOnce) {
    m_a.m_fnPaint = [](IPaintTarget& target, const CRect& rc) {
        const std::vector<uint8_t> vPixels(static_cast<size_t>(rc.right) * 4 * static_cast<size_t>(rc.bottom),
                                           200);
        target.Blit(vPixels.data(), rc.right * 4, {rc.right, rc.bottom}, rc);
    };
    CSessionCanvasWindow& a = Open(m_a);
    m_windows.Paint();
    for (const CRect& rc : {CRect(10, 10, 20, 20), CRect(15, 5, 40, 12), CRect(-50, 690, -1, 700)})
        a.Invalidate(rc);
    m_windows.Paint();
    m_windows.Paint();
    a.SetRect({5, 5, 35, 25});
    a.SetRect({7, 7, 37, 27});
    EXPECT_EQ(a.GetGlass().GetPixel({29, 19})[0], 0);
    m_windows.Paint();
    EXPECT_EQ(m_a.m_vPainted, (std::vector<CRect>{{0, 0, 1000, 700}, {10, 5, 40, 20}, {0, 0, 30, 20}}));
    EXPECT_EQ(m_a.Got(EMessage::Size), (TParams{{30, 20}}));
    EXPECT_EQ(a.GetGlass().GetPixel({29, 19})[2], 200);
}

TEST_F(SessionWindows, TimersFollowTheClockWithOneMessageAtATime) {
    CSessionCanvasWindow& a = Open(m_a);
    m_clock.Advance(UINT32_MAX - 50); // the clock wraps meanwhile
    a.SetTimer(1, 100);
    a.SetTimer(2, 250);
    std::string strTimers;
    m_a.m_fnHandle = [&](const TMessage& msg) { return strTimers += std::to_string(msg.wParam), true; };
    const auto pass = [&](uint32_t u) {
        m_clock.Advance(u);
        m_windows.PostTimers();
        for (TMessage msg; m_queue.Peek() && m_queue.Get(msg) == 1;) m_queue.Dispatch(msg);
        return std::exchange(strTimers, {});
    };
    EXPECT_EQ(m_windows.UntilTimer(), 100u);
    EXPECT_EQ(pass(99), "");
    EXPECT_EQ(pass(1), "1");
    EXPECT_EQ(pass(450), "12"); // four and two periods
    a.KillTimer(1);
    EXPECT_EQ(pass(199), "");
    EXPECT_EQ(pass(1), "2");
    m_clock.Advance(250);
    m_windows.PostTimers();
    a.Destroy();
    strTimers.clear();
    EXPECT_EQ(pass(0), "");
    EXPECT_EQ(m_windows.UntilTimer(), std::nullopt);
}

TEST_F(SessionWindows, ArrangesChildrenWithoutGapsOrOverlap) {
    const CSessionCanvasWindow* apWindows[] = {&Open(m_a), &Open(m_b), &Open(m_c)};
    for (const bool bStacked : {false, true}) {
        m_pMain->ArrangeChildren(bStacked ? EArrange::TileHorizontal : EArrange::TileVertical);
        int64_t nArea = 0;
        for (const auto* pOne : apWindows) {
            nArea += int64_t{pOne->GetRect().Width()} * pOne->GetRect().Height();
            for (const auto* pOther : apWindows)
                EXPECT_TRUE(pOne == pOther || pOne->GetRect().Intersect(pOther->GetRect()).IsEmpty());
        }
        EXPECT_EQ(nArea, 1280 * 800);
        // In one column, or side by side in one row.
        EXPECT_EQ(bStacked ? apWindows[1]->GetRect().Width() : apWindows[1]->GetRect().Height(),
                  bStacked ? 1280 : 800);
    }
}

} // namespace
