// The softening filter's vector form against the definition, on every instruction set that this machine has.
#include "core/RasterKernel/SoftenKernel.h"

#include "tests/support/TargetTest.h"

#include <random>
#include <vector>

namespace {

using SoftenKernels_ = CTargetTest;

} // namespace

TEST_P(SoftenKernels_, AllSumsAndLengthsAreExact) {
    std::mt19937 random(1);
    const auto draw = [&] {
        return static_cast<uint8_t>(random() % 3 ? random() >> 24 : 255 * (random() % 2));
    };
    std::vector<uint8_t> avDest[2];
    for (size_t nCount = 0; nCount < 400; ++nCount) {
        std::vector<uint8_t> avRows[3];
        for (auto& vRow : avRows)
            for (size_t n = 0; n < nCount + 2; ++n) vRow.push_back(draw());
        // Now and then nothing is there yet, so that every value shows.
        avDest[0].assign(nCount + 1, 0);
        for (size_t n = 0; n < nCount && nCount % 2; ++n) avDest[0][n] = draw();
        avDest[1] = avDest[0];
        for (int n = 0; n < 2; ++n)
            (n ? VectorSoftenKernels() : PlainSoftenKernels())
                .pSoften(avDest[n].data(), {&avRows[0][1], &avRows[1][1], &avRows[2][1], nCount});
        ASSERT_EQ(avDest[0], avDest[1]) << nCount;
        ASSERT_EQ(avDest[0].back(), 0);
    }
}

ON_EVERY_TARGET(SoftenKernels_);
