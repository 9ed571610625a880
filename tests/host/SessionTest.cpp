#include "core/Base/Color.h"
#include "core/RasterMove/RasterMove.h"
#include "host/PluginEntry.h"
#include "system/environment/Locations.h"
#include "system/files/SnapshotStore.h"
#include "tests/host/TestHost.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestPlatform.h"

using namespace hostabi;

namespace {

CTestPlatform* g_pPlatform = nullptr;

void TestMain(int16_t nSelector, void* pRecord, intptr_t*, int16_t* pnResult) {
    RunSelector(nSelector, pRecord, pnResult, [](const auto& fn) { g_pPlatform->Run(fn); });
}

class CSession : public testing::Test {
protected:
    CSession() { g_pPlatform = &m_platform; }
    ~CSession() override { ExpectNothingLeft(); }

    void ExpectNothingLeft() {
        EXPECT_TRUE(!g_pMainFrame && g_lstCanvasFrame.empty() && g_wpActiveFrame.expired());
        EXPECT_TRUE(!g_AppModule.HasPlatform() && !g_AppModule.GetMainWindow());
    }
    void ExpectRoundTrip(const CRect& rc, bool bTransparency) {
        CTestHost host(MakePicture(rc, bTransparency));
        EXPECT_EQ(host.Run(TestMain), 0);
        EXPECT_TRUE(host.GetPicture() == MakePicture(rc, bTransparency)) << rc.Width() << 'x' << rc.Height();
        EXPECT_EQ(host.m_vCalls, (std::vector<int>{1, 2, 3, 5}));
        EXPECT_TRUE(!g_AppModule.GetMessageLoop() && m_platform.m_nCodecs == 0 &&
                    m_platform.m_vShown.empty());
        ExpectNothingLeft();
    }

    CTestPlatform m_platform;
};

TEST_F(CSession, EachSelectorHasItsAnswer) {
    const auto answer = [](int nSelector, const TWithPlatform& withPlatform, void* pRecord = nullptr) {
        int16_t nResult = 77;
        RunSelector(static_cast<int16_t>(nSelector), pRecord, nullptr, withPlatform);
        RunSelector(static_cast<int16_t>(nSelector), pRecord, &nResult, withPlatform);
        return nResult;
    };
    const TWithPlatform unneeded = [](const auto&) { ADD_FAILURE(); };
    for (const int nSelector : {-32768, -1, 6, 32767}) EXPECT_EQ(answer(nSelector, unneeded), -30100);
    for (const int nSelector : {1, 2, 4, 5}) EXPECT_EQ(answer(nSelector, unneeded), 77);
    EXPECT_EQ(answer(3, unneeded), -30900) << "without a record nothing is made";
    CTestHost host(MakePicture({0, 0, 1, 1}, false));
    const auto noDisplay = [](const auto&) { throw std::runtime_error("no display"); };
    EXPECT_EQ(answer(3, noDisplay, &host.m_record), -30900);
    const auto noMemory = [](const auto&) { throw std::bad_alloc(); };
    EXPECT_EQ(answer(3, noMemory, &host.m_record), memFullErr);
    EXPECT_EQ(answer(0, [&](const auto& fn) { m_platform.Run(fn); }), 77);
    EXPECT_EQ(m_platform.m_vShown, (std::vector<std::wstring>{L"CAboutDialog", L"CAboutDialog"}));
    EXPECT_EQ(m_platform.m_nCodecs, 0) << "the dialog alone";
}

TEST_F(CSession, UntouchedPicturesComeBackFromWhereTheyWereManyInARow) {
    for (const CSize sz : {CSize{1, 1}, {95, 97}, {96, 96}, {97, 95}, {300, 210}})
        for (const CPoint pt : {CPoint{0, 0}, {13, 1001}, {-50, -7}, {32767 - 300, 32767 - 210}})
            for (const bool bTransparency : {false, true}) ExpectRoundTrip(CRect(pt, sz), bTransparency);
}

TEST_F(CSession, WhatIsErasedGoesBackOnWhiteWhereThereIsNoTransparency) {
    const auto layer = [] {
        return boost::dynamic_pointer_cast<CRasterLayerBuffer>(
            g_lstCanvasFrame.front()->GetCanvas()->GetActiveLayer());
    };
    const auto erase = [&](CPlayer&) {
        for (const auto& [pt, uAlpha] : {std::pair{CPoint{0, 0}, 128}, {CPoint{96, 0}, 0}}) {
            const auto spTile = layer()->GetRaster()->GetBlock(pt, true)->Clone();
            spTile->Fill(MakeColor(10, 20, 30), static_cast<uint8_t>(uAlpha));
            layer()->GetRaster()->SetBlock(pt, spTile);
        }
    };
    const auto play = [&](bool bTransparency, const TAction& fnThen) {
        CPictureHost host(MakePicture({5, 5, 205, 6}, bTransparency, 1));
        m_platform.AddStep(erase);
        m_platform.AddStep(fnThen);
        EXPECT_EQ(host.Run(TestMain), 0);
        return host.GetPicture();
    };
    const auto at = [](const THostPicture& picture, size_t i) {
        return std::vector<int>{picture.vRed[i], picture.vGreen[i], picture.vBlue[i], picture.vAlphas[0][i]};
    };
    const THostPicture flat = play(false, [](CPlayer&) {});
    EXPECT_EQ(at(flat, 95), (std::vector{133, 138, 143, 143})) << "the further channel gets what blue gets";
    EXPECT_EQ(at(flat, 191), (std::vector{255, 255, 255, 255}));
    EXPECT_EQ(flat.vRed[192], MakePicture({5, 5, 205, 6}, false).vRed[192]);
    const THostPicture clear = play(true, [](CPlayer&) {});
    EXPECT_EQ(at(clear, 95), (std::vector{10, 20, 30, 30}));
    EXPECT_TRUE(clear.vTransparency[95] == 128 && clear.vTransparency[191] == 0);
    const THostPicture grey = play(false, [](CPlayer&) {
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_MODE_GREY});
    });
    EXPECT_EQ(at(grey, 95), (std::vector{137, 137, 137, 137})); // of the level 18
    EXPECT_EQ(at(grey, 191), (std::vector{255, 255, 255, 255}));
    EXPECT_EQ(at(play(false, [&](CPlayer&) { layer()->SetVisible(false); }), 199), std::vector(4, 255));
}

TEST_F(CSession, PixelsThatFloatGoBackWhereTheyLie) {
    const CRect rc(5, 5, 105, 45);
    CPictureHost host(MakePicture(rc, true));
    m_platform.AddStep([](CPlayer&) {
        g_pMainFrame->SwitchTool(CRasterMove::TOOL_ID);
        CTools& tool = *g_wpActiveTool.lock();
        for (const auto& [message, x] :
             {std::pair{EMessage::LButtonDown, 0}, {EMessage::MouseMove, 24}, {EMessage::LButtonUp, 24}})
            tool.Dispatch(message, x, 0, 1024, 90, 0);
        EXPECT_TRUE(g_lstCanvasFrame.front()->GetCanvas()->GetFloatState().spFloat);
    });
    EXPECT_EQ(host.Run(TestMain), 0);
    const THostPicture before = MakePicture(rc, true);
    const THostPicture after = host.GetPicture();
    for (size_t i = 0; i < after.vRed.size(); ++i) {
        const bool bLeft = i % 100 < 3;
        EXPECT_EQ(after.vTransparency[i], bLeft ? 0 : before.vTransparency[i - 3]) << i;
        if (after.vTransparency[i]) {
            EXPECT_EQ(after.vRed[i], before.vRed[i - 3]) << i;
        }
    }
}

TEST_F(CSession, WhatAnotherSessionLeftIsOffered) {
    const CTestSettings folder;
    CLocations locations;
    const auto play = [&](const THostPicture& picture, size_t nFrames) {
        CSnapshotStore snapshots(locations);
        m_platform.m_pSnapshots = &snapshots;
        m_platform.AddStep([=](CPlayer&) { EXPECT_EQ(g_lstCanvasFrame.size(), nFrames); });
        CTestHost host(picture);
        EXPECT_EQ(host.Run(TestMain), 0);
        EXPECT_TRUE(host.GetPicture() == picture) << "the host's own, not the restored one";
    };
    const auto yes = [](CPlayer& player) {
        player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::Yes});
    };
    m_platform.AddStep([&](CPlayer& player) {
        yes(player);
        player.GetStage().dialogs.Push({});
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Close});
    });
    play(MakePicture({0, 0, 60, 50}, true), 0);
    m_platform.AddStep(yes, EStepKind::Prepares);
    play(MakePicture({0, 0, 30, 20}, true), 2);
    play(MakePicture({0, 0, 30, 20}, true), 1);
}

TEST_F(CSession, FurtherChannelsLiveInTheBluePlane) {
    THostPicture expected = MakePicture({0, 0, 97, 3}, true, 2);
    CTestHost host(expected);
    EXPECT_EQ(host.Run(TestMain), 0);
    EXPECT_EQ(host.m_vReads, (std::vector<int>{1, 2, 3, 0, 0, 16, 1, 2, 3, 0, 0, 16}));
    EXPECT_EQ(host.m_vWrites, host.m_vReads);
    expected.vBlue = expected.vAlphas[0] = expected.vAlphas[1];
    EXPECT_TRUE(host.GetPicture() == expected);
}

TEST_F(CSession, ChannelsWithoutAPortOrAPlaceAreSkipped) {
    CTestHost host(MakePicture({0, 0, 20, 20}, true));
    host.m_deqChannels[0].desc.maxVersion = 0; // its write port is not part of the record then
    host.m_deqChannels[1].desc.writePort = nullptr;
    host.m_deqChannels[2].desc.port = nullptr;
    EXPECT_EQ(host.Run(TestMain), 0);
    EXPECT_EQ(host.m_vReads, (std::vector<int>{1, 2, 16}));
    EXPECT_EQ(host.m_vWrites, (std::vector<int>{3, 16}));
}

TEST_F(CSession, HostsThatCannotServeAreToldAtOnce) {
    const std::function<void(CTestHost&)> CASES[] = {
        [](CTestHost& host) { host.m_record.filterRect = {}; },
        [](CTestHost& host) { host.m_nNoSuite = SP_SUITE_NOT_FOUND; },
        [](CTestHost& host) { host.m_nNoSuite = 0; },
        [](CTestHost& host) { host.m_record.documentInfo = nullptr; },
        [](CTestHost& host) { host.m_record.sSPBasic = nullptr; },
        [](CTestHost& host) { host.m_bNullRecord = true; },
        [](CTestHost& host) { host.m_record.filterRect = {}, host.m_nNoSuite = 0; },
    };
    for (size_t i = 0; i < std::size(CASES); ++i) {
        SCOPED_TRACE(i);
        CTestHost host(MakePicture({0, 0, 8, 8}, false));
        CASES[i](host);
        EXPECT_EQ(host.Run(TestMain), i == 0 ? paramErr : -30900);
        EXPECT_EQ(host.m_vCalls, (std::vector<int>{1, 2, 3}));
        EXPECT_TRUE(host.m_vReads.empty() && host.m_vWrites.empty() && m_platform.m_vShown.empty());
        EXPECT_EQ(g_AppModule.GetMessageLoop() != nullptr, i != 0) << "abandoned, not closed";
        ExpectNothingLeft();
        m_platform.m_nCodecs = 0;
    }
    ExpectRoundTrip({0, 0, 8, 8}, true);
}

TEST_F(CSession, ARefusedTileKeepsItsOldPixelsAlone) {
    CTestHost host(MakePicture({0, 0, 200, 100}, false, 1));
    host.m_refuseWrite = [](const VRect& rc) { return rc.left == 96 && rc.top == 0; };
    const THostPicture before = host.GetPicture();
    EXPECT_EQ(host.Run(TestMain), 0);
    for (size_t i = 0; i < 200 * 100; ++i) {
        const bool bRefused = i % 200 >= 96 && i % 200 < 192 && i / 200 < 96;
        ASSERT_EQ(host.GetPicture().vBlue[i], bRefused ? before.vBlue[i] : before.vAlphas[0][i]) << i;
    }
}

/// Throws out of the message loop, as only a fault of a filter or idle handler can.
struct CThrowingHandler : IIdleHandler {
    bool OnIdle(int) override {
        g_AppModule.GetMessageLoop()->RemoveIdleHandler(this);
        throw std::bad_alloc();
    }
};

TEST_F(CSession, AnExceptionEndsTheSessionWithoutWriting) {
    CThrowingHandler handler;
    for (const int nCase : {0, 1, 2}) {
        m_platform.m_bRefuseMain = nCase == 0;
        m_platform.m_bRefuseCanvas = nCase == 1;
        if (nCase == 2) // both windows are open, and messages to them are pending
            m_platform.AddStep([&](CPlayer& player) {
                g_AppModule.GetMessageLoop()->AddIdleHandler(&handler);
                player.GetStage().platform.queue.Post(
                    {g_lstCanvasFrame.front()->GetWindow(), EMessage::Timer, 1, 0, {}});
            });
        CTestHost host(MakePicture({0, 0, 8, 8}, true));
        EXPECT_EQ(host.Run(TestMain), 0);
        EXPECT_TRUE(!host.m_vReads.empty() && host.m_vWrites.empty());
        EXPECT_EQ(host.m_vCalls.back(), filterSelectorFinish);
        ASSERT_EQ(m_platform.m_vShown.size(), 1u);
        EXPECT_NE(m_platform.m_vShown[0].find(nCase == 2 ? L"bad_alloc" : L"internal_error"),
                  std::wstring::npos);
        m_platform.m_bRefuseMain = m_platform.m_bRefuseCanvas = false;
        m_platform.m_vShown.clear();
        ExpectRoundTrip({0, 0, 8, 8}, true);
    }
}

TEST_F(CSession, OneSessionAtATime) {
    CTestHost hostInner(MakePicture({0, 0, 8, 8}, false));
    int16_t nInner = 0;
    m_platform.AddStep([&](CPlayer&) { nInner = hostInner.Run(TestMain); });
    ExpectRoundTrip({0, 0, 40, 40}, true);
    EXPECT_EQ(nInner, userCanceledErr);
    EXPECT_TRUE(hostInner.m_vReads.empty());
}

} // namespace
