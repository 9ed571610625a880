#include "core/RasterKernel/StampKernel.h"

#include "tests/support/TargetTest.h"

using StampKernels_ = CTargetTest;

// By hand: 200 * 30000 / 255 + 20000 - 20000 * 30000 / 65535 = 23529 + 20000 - 9155.
TEST(StampKernel, OverlappingStampsStopAtTheirOpacity) {
    std::vector<uint16_t> vDest{20000, 0, 51399, 51400, 60000, 65535, 50000};
    const std::vector<uint16_t> vSrc{30000, 65535, 1, 65535, 65535, 0, 65535};
    PlainStampKernels().pAccumulate({vDest.data(), 0, vSrc.data(), 0, vDest.size(), 1}, 200);
    EXPECT_EQ(vDest, (std::vector<uint16_t>{34374, 51400, 51399, 51400, 60000, 65535, 51400}));
}

TEST_P(StampKernels_, AccumulationIsExactForAllValues) {
    constexpr size_t WIDTH = 8192;
    std::mt19937 random(1);
    std::vector<uint16_t> vSrc(WIDTH);
    std::vector<uint16_t> avDest[2];
    for (int nRun = 0; nRun < 512; ++nRun) {
        // Edges, where roundings go wrong, among random values; every opacity.
        const auto draw = [&] {
            const uint32_t u = random();
            return static_cast<uint16_t>(u % 4 == 0 ? (u >> 16) % 5 - 2 : u >> 16);
        };
        for (uint16_t& u : vSrc) u = draw();
        avDest[0].resize(WIDTH);
        for (uint16_t& u : avDest[0]) u = draw();
        avDest[1] = avDest[0];
        const size_t nWidth = nRun % 2 ? WIDTH : static_cast<size_t>(nRun / 2);
        for (int n = 0; n < 2; ++n)
            (n ? VectorStampKernels() : PlainStampKernels())
                .pAccumulate({avDest[n].data(), 300, vSrc.data(), 301, nWidth, nWidth < 300 ? 5u : 1u},
                             static_cast<uint8_t>(nRun % 256));
        ASSERT_EQ(avDest[0], avDest[1]) << nRun;
    }
}

TEST_P(StampKernels_, UpperBytesOfEveryValueAtEveryLength) {
    std::vector<uint16_t> vValues(65536);
    for (size_t i = 0; i < vValues.size(); ++i) vValues[i] = static_cast<uint16_t>(i * 257);
    for (size_t n = 0; n <= vValues.size(); n += n < 99 ? 1 : 65437) {
        std::vector<uint8_t> vBytes(n + 1, 77);
        VectorStampKernels().pUpperBytes(vBytes.data(), vValues.data(), n);
        for (size_t i = 0; i <= n; ++i) ASSERT_EQ(vBytes[i], i < n ? vValues[i] >> 8 : 77) << n << ' ' << i;
    }
}

ON_EVERY_TARGET(StampKernels_);
