// The host in memory against small modules: what it gives to any module, not only to ours.
#include "core/Base/Failure.h"
#include "tests/host/TestHost.h"

using namespace hostabi;

namespace {

const ChannelPortsSuite& AcquireSuite(const FilterRecord& record) {
    const void* pSuite = nullptr;
    EXPECT_EQ(record.sSPBasic->AcquireSuite("no such suite", 3, &pSuite), SP_SUITE_NOT_FOUND);
    EXPECT_EQ(record.sSPBasic->AcquireSuite(CHANNEL_PORTS_SUITE, 3, &pSuite), 0);
    return *static_cast<const ChannelPortsSuite*>(pSuite);
}

void NoCheckMain(int16_t, void*, intptr_t*, int16_t*) {}

/// Swaps red and green through a picture of B, G, R, A bytes that is larger than the host's.
void InterleavedMain(int16_t nSelector, void* pRecord, intptr_t*, int16_t*) {
    if (nSelector != filterSelectorStart) return;
    const auto& record = *static_cast<FilterRecord*>(pRecord);
    const ChannelPortsSuite& suite = AcquireSuite(record);
    const ReadChannelDesc* pRed = record.documentInfo->targetCompositeChannels;
    const ReadChannelDesc* pGreen = pRed->next;
    std::vector<uint8_t> vPixels(8 * 6 * 4, 200);
    const auto describe = [&](int nBitOffset) {
        return PixelMemoryDesc{vPixels.data(), 8 * 32, 32, nBitOffset, 8};
    };
    const PixelMemoryDesc asGreen = describe(8);
    const PixelMemoryDesc asRed = describe(16);
    const VRect rcWide{9, 19, 15, 27}; // the picture is (20, 10) to (25, 13)
    VRect rc = rcWide;
    EXPECT_EQ(suite.ReadPixelsFromLevel(pRed->port, 0, &rc, &asGreen), 0);
    EXPECT_TRUE(rc.top == 10 && rc.left == 20 && rc.bottom == 13 && rc.right == 25);
    rc = rcWide;
    EXPECT_EQ(suite.ReadPixelsFromLevel(pGreen->port, 0, &rc, &asRed), 0);
    EXPECT_EQ(vPixels[0], 200);
    EXPECT_EQ(vPixels[(8 + 1) * 4 + 3], 200); // the first pixel's other bytes are not touched
    rc = rcWide;
    EXPECT_EQ(suite.WritePixelsToBaseLevel(pRed->writePort, &rc, &asRed), 0);
    rc = rcWide;
    EXPECT_EQ(suite.WritePixelsToBaseLevel(pGreen->writePort, &rc, &asGreen), 0);

    rc = {0, 0, 5, 5};
    EXPECT_NE(suite.ReadPixelsFromLevel(pRed->port, 0, &rc, &asRed), 0);
    rc = rcWide;
    EXPECT_NE(suite.ReadPixelsFromLevel(pRed->port, 1, &rc, &asRed), 0);
    PixelMemoryDesc deep = asRed;
    deep.depth = 16;
    EXPECT_EQ(suite.ReadPixelsFromLevel(pRed->port, 0, &rc, &deep), errUnsupportedDepth);
    EXPECT_EQ(suite.CountLevels(), SP_NOT_IMPLEMENTED);
}

TEST(PictureHost, AnyLayoutOfMemoryIsServedAndClipped) {
    const THostPicture before = MakePicture({20, 10, 25, 13}, false);
    CPictureHost host(before);
    EXPECT_EQ(host.Run(InterleavedMain), 0);
    EXPECT_EQ(host.GetPicture().vRed, before.vGreen);
    EXPECT_EQ(host.GetPicture().vGreen, before.vRed);
    EXPECT_EQ(host.GetPicture().vBlue, before.vBlue);
}

TEST(PictureHost, CallsComeInTheOrderOfHosts) {
    const auto callsOf = [](PluginMainProc pMain, int16_t nExpected) {
        CTestHost host(MakePicture({0, 0, 4, 4}, true));
        EXPECT_EQ(host.Run(pMain), nExpected);
        return host.m_vCalls;
    };
    EXPECT_EQ(callsOf(NoCheckMain, 0), (std::vector<int>{1, 2, 3, 5}));
    // Two rounds of Continue, the second one fails: Start had answered 0, so Finish comes.
    EXPECT_EQ(callsOf(
                  [](int16_t nSelector, void* pRecord, intptr_t*, int16_t* pnResult) {
                      auto& record = *static_cast<FilterRecord*>(pRecord);
                      if (nSelector == filterSelectorStart) record.outRect = {0, 0, 1, 1};
                      if (nSelector != filterSelectorContinue) return;
                      if (record.inRect.bottom == 1) *pnResult = userCanceledErr;
                      record.inRect = {0, 0, 1, 1};
                  },
                  userCanceledErr),
              (std::vector<int>{1, 2, 3, 4, 4, 5}));
    EXPECT_EQ(callsOf(
                  [](int16_t nSelector, void*, intptr_t*, int16_t* pnResult) {
                      if (nSelector == filterSelectorPrepare) *pnResult = paramErr;
                  },
                  paramErr),
              (std::vector<int>{1, 2}));
}

TEST(PictureHost, RecordsTellOfThePicture) {
    CTestHost host(MakePicture({-5, 7, 4, 9}, true, 2));
    EXPECT_EQ(host.m_record.filterRect.left, -5);
    EXPECT_EQ(host.m_record.filterRect.bottom, 9);
    EXPECT_EQ(host.m_record.planes, 4);
    const ReadChannelDesc* pAlpha = host.m_document.alphaChannels;
    ASSERT_TRUE(pAlpha && pAlpha->next && !pAlpha->next->next);
    EXPECT_EQ(host.m_document.targetTransparency->channelType, 16);
    EXPECT_EQ(CTestHost(MakePicture({0, 0, 2, 2}, false)).m_document.targetTransparency, nullptr);
}

TEST(PictureHost, PicturesThatNoRecordHoldsAreRefused) {
    THostPicture picture = MakePicture({0, 0, 2, 2}, false);
    picture.vBlue.pop_back();
    EXPECT_THROW(CPictureHost{picture}, constraint_violation);
    for (const CRect& rc : {CRect(0, 0, 0, 5), CRect(0, 0, 32768, 1), CRect(-1, 0, 32767, 1)}) {
        picture = THostPicture{rc, {}, {}, {}, {}, {}};
        for (auto* pPlane : {&picture.vRed, &picture.vGreen, &picture.vBlue})
            pPlane->resize(static_cast<size_t>(rc.Width()) * static_cast<size_t>(rc.Height()));
        EXPECT_THROW(CPictureHost{picture}, constraint_violation) << rc.Width();
    }
}

} // namespace
