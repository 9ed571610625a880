// Whole sessions: a host's record goes in, the application runs without a display, the picture comes back.
#include "core/AppModule/AppModule.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/MainFrame/MainFrame.h"
#include "host/PluginEntry.h"
#include "session/SessionDialogs.h"
#include "tests/host/TestHost.h"
#include "tests/support/TestPlatform.h"

#include <new>

using namespace hostabi;

namespace {

CTestPlatform* g_pPlatform = nullptr;
int g_nPlatforms = 0;

void TestMain(int16_t nSelector, void* pRecord, intptr_t*, int16_t* pnResult) {
    RunSelector(nSelector, pRecord, pnResult, [](const std::function<void(const TPlatform&)>& fn) {
        ++g_nPlatforms;
        g_pPlatform->Run(fn);
    });
}

class CSession : public testing::Test {
protected:
    CSession() {
        g_pPlatform = &m_platform;
        g_nPlatforms = 0;
    }
    ~CSession() override { ExpectNothingLeft(); }

    void ExpectNothingLeft() {
        EXPECT_EQ(g_pMainFrame, nullptr);
        EXPECT_TRUE(g_lstCanvasFrame.empty());
        EXPECT_TRUE(g_wpActiveFrame.expired());
        EXPECT_FALSE(g_AppModule.HasPlatform());
        EXPECT_EQ(g_AppModule.GetMainWindow(), nullptr);
    }
    void ExpectRoundTrip(const CRect& rc, bool bTransparency) {
        CTestHost host(MakePicture(rc, bTransparency));
        EXPECT_EQ(host.Run(TestMain), noErr);
        EXPECT_TRUE(host.GetPicture() == MakePicture(rc, bTransparency)) << rc.Width() << 'x' << rc.Height();
        std::vector<int> vExpected;
        for (int i = 0; i < host.CountTiles(); ++i)
            vExpected.insert(vExpected.end(), bTransparency ? std::initializer_list<int>{1, 2, 3, 16}
                                                            : std::initializer_list<int>{1, 2, 3});
        EXPECT_EQ(host.m_vReads, vExpected);
        EXPECT_EQ(host.m_vWrites, vExpected);
        EXPECT_EQ(host.m_nAcquired, 1);
        EXPECT_EQ(host.m_vCalls, (std::vector<int>{1, 2, 3, 5}));
        EXPECT_EQ(g_AppModule.GetMessageLoop(), nullptr);
        EXPECT_EQ(m_platform.m_nCodecs, 0);
        EXPECT_TRUE(m_platform.m_vShown.empty());
        ExpectNothingLeft();
    }

    CTestPlatform m_platform;
};

/// Throws out of the message loop, as only a fault of a filter or idle handler can.
struct CThrowingHandler : IIdleHandler {
    bool OnIdle(int) override {
        g_AppModule.GetMessageLoop()->RemoveIdleHandler(this);
        throw std::bad_alloc();
    }
};

TEST_F(CSession, SelectorsThatNeedNoSession) {
    for (const int nSelector : {-1, 6, -32768, 32767}) {
        int16_t nResult = 77;
        TestMain(static_cast<int16_t>(nSelector), nullptr, nullptr, &nResult);
        EXPECT_EQ(nResult, -30100) << nSelector;
    }
    for (const int nSelector : {1, 2, 4, 5}) {
        int16_t nResult = 77;
        TestMain(static_cast<int16_t>(nSelector), nullptr, nullptr, &nResult);
        EXPECT_EQ(nResult, 77) << nSelector;
    }
    EXPECT_EQ(g_nPlatforms, 0);
    TestMain(6, nullptr, nullptr, nullptr);
}

TEST_F(CSession, AboutShowsItsDialogAlone) {
    int16_t nResult = 77;
    AboutRecord record{};
    TestMain(0, &record, nullptr, &nResult);
    EXPECT_EQ(nResult, 77);
    EXPECT_EQ(m_platform.m_vShown, std::vector<std::wstring>{L"CAboutDialog"});
    EXPECT_EQ(m_platform.m_nCodecs, 0);
    EXPECT_EQ(g_AppModule.GetMessageLoop(), nullptr);
}

TEST_F(CSession, UntouchedPicturesComeBackFromWhereTheyWere) {
    for (const CSize sz : {CSize{1, 1}, {95, 97}, {96, 96}, {97, 95}, {300, 210}})
        for (const CPoint pt : {CPoint{0, 0}, {13, 1001}, {-50, -7}})
            for (const bool bTransparency : {false, true}) ExpectRoundTrip(CRect(pt, sz), bTransparency);
}

TEST_F(CSession, LargestPositionsThatSixteenBitsHold) {
    ExpectRoundTrip({32767 - 3, 32767 - 2, 32767, 32767}, false);
    CTestHost host(MakePicture({0, 0, 8, 8}, false));
    host.m_record.filterRect = {8, 8, 8, 8};
    EXPECT_EQ(host.Run(TestMain), paramErr);
    EXPECT_EQ(host.m_vReads.size(), 0u);
    EXPECT_EQ(m_platform.m_nCodecs, 0);
}

TEST_F(CSession, WhatTheUserPaintsGoesBack) {
    m_platform.AddStep([](CPlayer&) {
        auto& canvas = *g_lstCanvasFrame.front()->GetCanvas();
        EXPECT_TRUE(canvas.GetHistory().CanUndo());
        const auto spLayer = boost::dynamic_pointer_cast<CRasterLayerBuffer>(canvas.GetActiveLayer());
        const auto spTile = spLayer->GetRaster()->GetBlock({96, 0}, true)->Clone();
        spTile->Fill(MakeColor(1, 2, 3), 255);
        spLayer->GetRaster()->SetBlock({96, 0}, spTile);
    });
    // The user's finish: closing the canvas, not the frame.
    m_platform.AddStep([](CPlayer& player) {
        player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::No});
        player.GetStage().platform.queue.Post(
            {g_lstCanvasFrame.front()->GetWindow(), EMessage::Close, 0, 0, {}});
    });
    THostPicture expected = MakePicture({5, 5, 105, 15}, false);
    CTestHost host(expected);
    EXPECT_EQ(host.Run(TestMain), noErr);
    for (size_t y = 0; y < 10; ++y)
        for (size_t x = 96; x < 100; ++x) {
            expected.vRed[y * 100 + x] = 1;
            expected.vGreen[y * 100 + x] = 2;
            expected.vBlue[y * 100 + x] = 3;
        }
    EXPECT_TRUE(host.GetPicture() == expected);
}

TEST_F(CSession, FurtherChannelsLiveInTheBluePlane) {
    const THostPicture before = MakePicture({0, 0, 97, 3}, true, 2);
    CTestHost host(before);
    EXPECT_EQ(host.Run(TestMain), noErr);
    EXPECT_EQ(host.m_vReads, (std::vector<int>{1, 2, 3, 0, 0, 16, 1, 2, 3, 0, 0, 16}));
    EXPECT_EQ(host.GetPicture().vBlue, before.vAlphas[1]);
    EXPECT_EQ(host.GetPicture().vAlphas[0], before.vAlphas[1]);
    EXPECT_EQ(host.GetPicture().vAlphas[1], before.vAlphas[1]);
    EXPECT_EQ(host.GetPicture().vTransparency, before.vTransparency);
    EXPECT_EQ(host.GetPicture().vRed, before.vRed);
}

TEST_F(CSession, ChannelsWithoutAPortAreSkipped) {
    CTestHost host(MakePicture({0, 0, 20, 20}, true));
    host.m_deqChannels[0].desc.maxVersion = 0; // its write port is no part of the record then
    host.m_deqChannels[1].desc.writePort = nullptr;
    host.m_deqChannels[2].desc.port = nullptr;
    EXPECT_EQ(host.Run(TestMain), noErr);
    EXPECT_EQ(host.m_vReads, (std::vector<int>{1, 2, 16}));
    EXPECT_EQ(host.m_vWrites, (std::vector<int>{3, 16}));
}

TEST_F(CSession, MissingSuiteInEveryForm) {
    const std::pair<const char*, std::function<void(CTestHost&)>> CASES[] = {
        {"refused", [](CTestHost& host) { host.m_nSuiteError = SP_SUITE_NOT_FOUND; }},
        {"null suite", [](CTestHost& host) { host.m_bNullSuite = true; }},
        {"null document", [](CTestHost& host) { host.m_record.documentInfo = nullptr; }},
        {"null basic suite", [](CTestHost& host) { host.m_record.sSPBasic = nullptr; }},
        {"null record", [](CTestHost& host) { host.m_bNullRecord = true; }},
        {"empty as well", [](CTestHost& host) { host.m_record.filterRect = {}, host.m_bNullSuite = true; }},
    };
    for (const auto& [pszName, spoil] : CASES) {
        CTestHost host(MakePicture({0, 0, 8, 8}, false));
        spoil(host);
        EXPECT_EQ(host.Run(TestMain), -30900) << pszName;
        EXPECT_EQ(host.m_vCalls, (std::vector<int>{1, 2, 3})) << pszName;
        EXPECT_TRUE(host.m_vReads.empty() && host.m_vWrites.empty()) << pszName;
        EXPECT_TRUE(m_platform.m_vShown.empty()) << pszName;
        EXPECT_NE(g_AppModule.GetMessageLoop(), nullptr) << pszName;
        ExpectNothingLeft();
        m_platform.m_nCodecs = 0;
    }
    ExpectRoundTrip({0, 0, 8, 8}, true);
}

TEST_F(CSession, RectanglesThatTheHostOverwrites) {
    CTestHost host(MakePicture({3, 4, 203, 104}, true, 1));
    CTestHost hostPlain(MakePicture({3, 4, 203, 104}, true, 1));
    host.m_bSpoilRects = true;
    EXPECT_EQ(host.Run(TestMain), noErr);
    EXPECT_EQ(hostPlain.Run(TestMain), noErr);
    EXPECT_TRUE(host.GetPicture() == hostPlain.GetPicture());
}

TEST_F(CSession, ARefusedTileKeepsItsOldPixelsAlone) {
    CTestHost host(MakePicture({0, 0, 200, 100}, false, 1));
    host.m_refuseWrite = [](const VRect& rc) { return rc.left == 96 && rc.top == 0; };
    const THostPicture before = host.GetPicture();
    EXPECT_EQ(host.Run(TestMain), noErr);
    for (size_t y = 0; y < 100; ++y)
        for (size_t x = 0; x < 200; ++x) {
            const bool bRefused = x >= 96 && x < 192 && y < 96;
            const size_t i = y * 200 + x;
            ASSERT_EQ(host.GetPicture().vBlue[i], bRefused ? before.vBlue[i] : before.vAlphas[0][i])
                << x << ' ' << y;
        }
}

TEST_F(CSession, AnExceptionEndsTheSessionWithoutWriting) {
    CThrowingHandler handler;
    const auto fail = [&](const wchar_t* pszText) {
        CTestHost host(MakePicture({0, 0, 8, 8}, true));
        EXPECT_EQ(host.Run(TestMain), noErr);
        EXPECT_FALSE(host.m_vReads.empty());
        EXPECT_TRUE(host.m_vWrites.empty());
        EXPECT_EQ(host.m_vCalls.back(), filterSelectorFinish);
        ASSERT_EQ(m_platform.m_vShown.size(), 1u);
        EXPECT_NE(m_platform.m_vShown[0].find(pszText), std::wstring::npos) << pszText;
        m_platform = {};
        ExpectRoundTrip({0, 0, 8, 8}, true);
    };
    m_platform.m_bRefuseMain = true;
    fail(L"internal_error");
    m_platform.m_bRefuseCanvas = true;
    fail(L"internal_error");
    // Both windows are open, and messages to them wait.
    m_platform.AddStep([&](CPlayer& player) {
        g_AppModule.GetMessageLoop()->AddIdleHandler(&handler);
        player.GetStage().platform.queue.Post(
            {g_lstCanvasFrame.front()->GetWindow(), EMessage::Timer, 1, 0, {}});
    });
    fail(L"bad_alloc");
}

TEST_F(CSession, OneSessionAtATime) {
    CTestHost hostInner(MakePicture({0, 0, 8, 8}, false));
    int16_t nInner = 0;
    m_platform.AddStep([&](CPlayer&) { nInner = hostInner.Run(TestMain); });
    ExpectRoundTrip({0, 0, 40, 40}, true);
    EXPECT_EQ(nInner, userCanceledErr);
    EXPECT_TRUE(hostInner.m_vReads.empty());
}

TEST_F(CSession, TenInARow) {
    for (int i = 0; i < 10; ++i) ExpectRoundTrip({i, 0, i + 100, 50}, i % 2 == 0);
}

TEST_F(CSession, WithoutAWindowSystemTheHostIsTold) {
    CTestHost host(MakePicture({0, 0, 8, 8}, false));
    const auto run = [&](PluginMainProc pMain) { return host.Run(pMain); };
    EXPECT_EQ(run([](int16_t nSelector, void* pRecord, intptr_t*, int16_t* pnResult) {
                  RunSelector(nSelector, pRecord, pnResult,
                              [](const auto&) { throw std::runtime_error("none"); });
              }),
              errPlugInHostInsufficient);
    EXPECT_EQ(run([](int16_t nSelector, void* pRecord, intptr_t*, int16_t* pnResult) {
                  RunSelector(nSelector, pRecord, pnResult, [](const auto&) { throw std::bad_alloc(); });
              }),
              memFullErr);
    EXPECT_TRUE(host.m_vReads.empty());
}

} // namespace
