#include "core/AppModule/ErrorBox.h"
#include "session/seam/VirtualClock.h"
#include "tests/support/TestPlatform.h"

namespace {

struct CNotingWindow : IProgressWindow {
    bool Begin(const TLongWork&) override { return true; }
    bool Show(const TProgressState& state) override {
        strSeen += std::to_string(state.nPermille) + " ";
        return nGoesOn-- > 0;
    }
    void End() override { strSeen += "end"; }
    std::string strSeen;
    int nGoesOn = INT32_MAX;
};

} // namespace

TEST(LongWork, ShowsItselfAfterASecondThenTwentyTimesASecondAndEndsWhenItIsCancelled) {
    CTestPlatform outside;
    CVirtualClock clock;
    CNotingWindow window;
    outside.m_pClock = &clock;
    outside.m_pProgress = &window;
    clock.Advance(UINT32_MAX - 500); // it wraps meanwhile
    outside.Run([&](const TPlatform& platform) {
        CLongWork work(platform, {});
        work.Begin(L"a", 4);
        for (const uint32_t uMs : {999, 1, 49, 1}) clock.Advance(uMs), work.Advance();
        clock.Advance(50), work.Advance(3); // more steps than were announced
        clock.Advance(50), work.Begin(L"b", 10);
        window.nGoesOn = 0;
        clock.Advance(50);
        EXPECT_THROW(work.Begin(L"c", 0), cancelled_error);
        EXPECT_FALSE(Guarded([&] { work.Advance(); })) << "cancelled for good";
    });
    EXPECT_EQ(window.strSeen, "500 1000 1000 0 -1 end");
    EXPECT_TRUE(outside.m_vShown.empty()) << "the user knows it";
}
