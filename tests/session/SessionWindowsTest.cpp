#include "session/SessionWindows.h"

#include "core/Platform/System.h"
#include "session/VirtualClock.h"

#include <gtest/gtest.h>

namespace {

/// Writes down what its window tells it: "name message".
class CClient : public IWindowClient {
public:
    CClient(std::string strName, std::vector<std::string>& vLog)
        : m_strName(std::move(strName)), m_vLog(vLog) {}

    bool OnMessage(const TMessage& msg) override {
        switch (msg.id) {
        case EMessage::MdiActivate:
            Note(msg.wParam ? "on" : "off");
            return true;
        case EMessage::Destroy:
            Note("destroy");
            return false;
        case EMessage::Size:
            Note("size " + std::to_string(msg.wParam) + "x" + std::to_string(msg.lParam));
            return true;
        case EMessage::Timer:
            Note("timer " + std::to_string(msg.wParam));
            return true;
        default:
            return false;
        }
    }
    void OnPaint(IPaintTarget& target, const CRect& rc) override {
        Note("paint " + std::to_string(rc.left) + "," + std::to_string(rc.top) + "," +
             std::to_string(rc.right) + "," + std::to_string(rc.bottom));
        const std::vector<uint8_t> vBlue(static_cast<size_t>(rc.right) * 4 * static_cast<size_t>(rc.bottom),
                                         200);
        target.Blit(vBlue.data(), rc.right * 4, {rc.right, rc.bottom}, rc);
    }
    void OnFinalMessage() override { Note("final"); }

private:
    void Note(const std::string& str) { m_vLog.push_back(m_strName + " " + str); }

    std::string m_strName;
    std::vector<std::string>& m_vLog;
};

class SessionWindows : public testing::Test {
protected:
    SessionWindows() { m_pMain = m_windows.CreateMainWindow(m_main, {L"main", {}, {}}); }

    CSessionCanvasWindow& Open(CClient& client) {
        ICanvasWindow* pWindow = m_windows.CreateCanvasWindow(*m_pMain, client, {});
        pWindow->Show();
        return dynamic_cast<CSessionCanvasWindow&>(*pWindow);
    }
    std::vector<std::string> Take() { return std::exchange(m_vLog, {}); }
    void Deliver() {
        TMessage msg;
        while (m_queue.Peek() && m_queue.Get(msg) == 1) m_queue.Dispatch(msg);
    }

    using TLog = std::vector<std::string>;

    TLog m_vLog;
    CClient m_main{"main", m_vLog}, m_a{"a", m_vLog}, m_b{"b", m_vLog}, m_c{"c", m_vLog};
    CMessageQueue m_queue;
    CVirtualClock m_clock;
    CSessionWindows m_windows{m_queue, m_clock};
    IMainWindow* m_pMain;
};

TEST_F(SessionWindows, TheOneUsedBeforeFollowsAClosedOne) {
    CSessionCanvasWindow& a = Open(m_a);
    Open(m_b);
    CSessionCanvasWindow& c = Open(m_c);
    EXPECT_EQ(Take(), (TLog{"a on", "a off", "b on", "b off", "c on"}));
    a.Activate();
    a.Activate();
    EXPECT_EQ(Take(), (TLog{"c off", "a on"}));
    SendMessage({&a, EMessage::Close});
    EXPECT_EQ(Take(), (TLog{"a off", "c on", "a destroy", "a final"}));
    EXPECT_EQ(m_windows.GetActive(), &c);
}

TEST_F(SessionWindows, TheMainWindowTakesItsChildrenWithIt) {
    Open(m_a);
    Open(m_b);
    Take();
    EXPECT_EQ(m_windows.CreateMainWindow(m_c, {}), nullptr);
    m_queue.Post({m_pMain, EMessage::InitMenuPopup});
    SendMessage({m_pMain, EMessage::Close});
    EXPECT_EQ(Take(),
              (TLog{"b off", "main destroy", "a destroy", "a final", "b destroy", "b final", "main final"}));
    EXPECT_FALSE(m_queue.Peek());
    EXPECT_EQ(m_windows.CreateCanvasWindow(*m_pMain, m_a, {}), nullptr);
    m_windows.FreeDead();
    EXPECT_NE(m_windows.CreateMainWindow(m_main, {}), nullptr);
}

TEST_F(SessionWindows, PaintsWhatWasInvalidatedOnce) {
    CSessionCanvasWindow& a = Open(m_a);
    EXPECT_EQ(a.GetClientSize(), (CSize{1000, 700}));
    m_windows.Paint();
    a.Invalidate({10, 10, 20, 20});
    a.Invalidate({15, 5, 40, 12});
    a.Invalidate({-50, 690, -1, 700});
    m_windows.Paint();
    m_windows.Paint();
    EXPECT_EQ(Take(), (TLog{"a on", "a paint 0,0,1000,700", "a paint 10,5,40,20"}));
    a.SetRect({5, 5, 35, 25});
    a.SetRect({7, 7, 37, 27});
    EXPECT_EQ(a.GetGlass().GetPixel({29, 19})[0], 0);
    m_windows.Paint();
    EXPECT_EQ(Take(), (TLog{"a size 30x20", "a paint 0,0,30,20"}));
    EXPECT_EQ(a.GetGlass().GetPixel({29, 19})[2], 200);
}

TEST_F(SessionWindows, TimersFollowTheClockWithOneMessageAtATime) {
    CSessionCanvasWindow& a = Open(m_a);
    m_clock.Advance(UINT32_MAX - 50); // the clock wraps on the way
    a.SetTimer(1, 100);
    a.SetTimer(2, 250);
    Take();
    const auto pass = [&](uint32_t u) {
        m_clock.Advance(u);
        m_windows.PostTimers();
        Deliver();
        return Take();
    };
    EXPECT_EQ(m_windows.UntilTimer(), 100u);
    EXPECT_EQ(pass(99), TLog{});
    EXPECT_EQ(pass(1), TLog{"a timer 1"});
    EXPECT_EQ(pass(450), (TLog{"a timer 1", "a timer 2"})); // four and two periods
    EXPECT_EQ(m_windows.UntilTimer(), 50u);
    a.KillTimer(1);
    EXPECT_EQ(pass(199), TLog{});
    EXPECT_EQ(pass(1), TLog{"a timer 2"});
    m_clock.Advance(250);
    m_windows.PostTimers();
    a.Destroy();
    Take();
    Deliver();
    EXPECT_EQ(Take(), TLog{});
    EXPECT_EQ(m_windows.UntilTimer(), std::nullopt);
}

TEST_F(SessionWindows, ArrangesChildrenWithoutGapsOrOverlap) {
    std::vector<CSessionCanvasWindow*> vWindows{&Open(m_a), &Open(m_b), &Open(m_c)};
    for (const EArrange arrange : {EArrange::TileHorizontal, EArrange::TileVertical}) {
        m_pMain->ArrangeChildren(arrange);
        int64_t nArea = 0;
        for (const auto* pOne : vWindows) {
            nArea += int64_t{pOne->GetRect().Width()} * pOne->GetRect().Height();
            for (const auto* pOther : vWindows)
                EXPECT_TRUE(pOne == pOther || pOne->GetRect().Intersect(pOther->GetRect()).IsEmpty());
        }
        EXPECT_EQ(nArea, 1280 * 800);
    }
    // Stacked in one column, or side by side in one row.
    EXPECT_EQ(vWindows[1]->GetRect().Height(), 800);
    m_pMain->ArrangeChildren(EArrange::TileHorizontal);
    EXPECT_EQ(vWindows[1]->GetRect().Width(), 1280);
}

} // namespace
