#include "tests/host/TestHost.h"

using namespace hostabi;

namespace {

/// Swaps red and green through a picture of B, G, R, A bytes that is larger than the host's.
void InterleavedMain(int16_t nSelector, void* pRecord, intptr_t*, int16_t*) {
    if (nSelector != filterSelectorStart) return;
    const auto& record = *static_cast<FilterRecord*>(pRecord);
    const void* pSuite = nullptr;
    EXPECT_EQ(record.sSPBasic->AcquireSuite("no such suite", 3, &pSuite), SP_SUITE_NOT_FOUND);
    ASSERT_EQ(record.sSPBasic->AcquireSuite(CHANNEL_PORTS_SUITE, 3, &pSuite), 0);
    const auto& suite = *static_cast<const ChannelPortsSuite*>(pSuite);
    const ReadChannelDesc* pRed = record.documentInfo->targetCompositeChannels;
    const ReadChannelDesc* pGreen = pRed->next;
    std::vector<uint8_t> vPixels(8 * 6 * 4, 200);
    const PixelMemoryDesc asGreen{vPixels.data(), 8 * 32, 32, 8, 8}, asRed{vPixels.data(), 8 * 32, 32, 16, 8};
    VRect arc[4];
    std::fill_n(arc, 4, VRect{9, 19, 15, 27}); // the picture is (20, 10) to (25, 13)
    EXPECT_EQ(suite.ReadPixelsFromLevel(pRed->port, 0, &arc[0], &asGreen), 0);
    EXPECT_TRUE(arc[0].top == 10 && arc[0].left == 20 && arc[0].bottom == 13 && arc[0].right == 25);
    EXPECT_EQ(suite.ReadPixelsFromLevel(pGreen->port, 0, &arc[1], &asRed), 0);
    EXPECT_EQ(vPixels[0], 200);
    EXPECT_EQ(vPixels[(8 + 1) * 4 + 1], MakePicture({20, 10, 25, 13}, false).vRed[0]);
    EXPECT_EQ(vPixels[(8 + 1) * 4 + 3], 200); // the first pixel's other bytes are not touched
    EXPECT_EQ(suite.WritePixelsToBaseLevel(pRed->writePort, &arc[2], &asRed), 0);
    EXPECT_EQ(suite.WritePixelsToBaseLevel(pGreen->writePort, &arc[3], &asGreen), 0);
}

TEST(PictureHost, AnyLayoutOfMemoryIsServedAndClipped) {
    THostPicture expected = MakePicture({20, 10, 25, 13}, false);
    CPictureHost host(expected);
    EXPECT_EQ(host.Run(InterleavedMain), 0);
    expected.vRed.swap(expected.vGreen);
    EXPECT_TRUE(host.GetPicture() == expected);
}

} // namespace
