#include "core/AppModule/ErrorBox.h"
#include "session/seam/VirtualClock.h"
#include "tests/support/TestPlatform.h"
#include "tests/support/TestProgress.h"

namespace {

/// The platform of a session with a clock that the test moves.
class LongWork : public testing::Test {
protected:
    void Do(const std::function<void(CLongWork&)>& fn, bool bCancel = true) {
        m_outside.m_pClock = &m_clock;
        m_outside.m_pProgress = &m_window;
        m_outside.Run([&](const TPlatform& platform) {
            CLongWork work(platform, {nullptr, L"", bCancel});
            fn(work);
        });
    }

    CTestPlatform m_outside;
    CVirtualClock m_clock;
    CNotingWindow m_window;
};

} // namespace

TEST_F(LongWork, ShowsItselfAfterASecondAndThenTwentyTimesASecond) {
    m_clock.Advance(UINT32_MAX - 500); // it wraps meanwhile
    Do([&](CLongWork& work) {
        work.Begin(L"a", 4);
        for (const uint32_t uMs : {999, 1, 49, 1}) {
            m_clock.Advance(uMs);
            work.Advance();
        }
        m_clock.Advance(50);
        work.Advance(3); // more steps than were announced
        m_clock.Advance(50);
        work.Begin(L"b", 10);
        m_clock.Advance(50);
        work.Begin(L"c", 0);
    });
    EXPECT_EQ(m_window.strSeen, "{ 500 1000 1000 0 -1 }");
    m_window.strSeen.clear();
    Do([](CLongWork& work) { work.Begin(L"short", 1), work.Advance(); }, false);
    EXPECT_EQ(m_window.strSeen, "{! }");
}

TEST_F(LongWork, WhatTheUserCancelsEndsAndIsNotReported) {
    m_window.nGoesOn = 1;
    Do([&](CLongWork& work) {
        work.Begin(L"a", 0);
        m_clock.Advance(1000);
        work.Advance();
        m_clock.Advance(50);
        EXPECT_THROW(work.Advance(), cancelled_error);
        EXPECT_FALSE(Guarded([&] { work.Begin(L"b", 0); })) << "cancelled for good";
    });
    EXPECT_EQ(m_window.strSeen, "{ -1 -1 }");
    EXPECT_TRUE(m_outside.m_vShown.empty());
}
