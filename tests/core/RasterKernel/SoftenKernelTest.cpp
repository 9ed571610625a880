// The softening filter's vector form against the definition, on every instruction set that this machine has.
#include "core/RasterKernel/SoftenKernel.h"

#include "tests/support/TargetTest.h"

#include <random>
#include <vector>

using SoftenKernels_ = CTargetTest;

TEST_P(SoftenKernels_, AllSumsAndSizesAreExact) {
    std::mt19937 random(1);
    const auto draw = [&] {
        return static_cast<uint8_t>(random() % 3 ? random() >> 24 : 255 * (random() % 2));
    };
    std::vector<uint8_t> avDest[2];
    for (size_t nRun = 0; nRun < 400; ++nRun) {
        const size_t nCount = nRun % 4 ? nRun % 4 * 16 : nRun / 4, nRows = 1 + nRun % 5;
        std::vector<std::vector<uint8_t>> vRows(nRows + 2);
        std::vector<const uint8_t*> vpRows;
        for (auto& vRow : vRows) {
            for (size_t n = 0; n < nCount + 2; ++n) vRow.push_back(draw());
            vpRows.push_back(&vRow[1]);
        }
        // Now and then nothing is there yet, so that every value shows.
        const size_t nStride = nCount + 1;
        avDest[0].assign(nRows * nStride, 0);
        for (size_t n = 0; n < nRows * nStride && nRun % 3; ++n) avDest[0][n] = draw();
        avDest[1] = avDest[0];
        for (int n = 0; n < 2; ++n)
            (n ? VectorSoftenKernels() : PlainSoftenKernels())
                .pSoften({avDest[n].data(), nStride, vpRows.data(), nRows, nCount});
        ASSERT_EQ(avDest[0], avDest[1]) << nRun;
    }
}

ON_EVERY_TARGET(SoftenKernels_);
