// The crossing kernels' vector forms against the definition, on every instruction set that this machine has.
#include "core/RasterKernel/CrossingKernel.h"

#include "tests/support/TargetTest.h"

#include <array>
#include <random>

using CrossingKernels_ = CTargetTest;

TEST_P(CrossingKernels_, SumsAreExactHoweverFarCrossingsLieApart) {
    std::mt19937 random(1);
    for (int nRun = 0; nRun < 20000; ++nRun) {
        const int32_t nFirst = static_cast<int32_t>(random() % 4096) - 32;
        const uint32_t uRange = 1u << random() % 21;
        std::array<int32_t, 16> anCells;
        for (int32_t& nCell : anCells) nCell = nFirst + static_cast<int32_t>(random() % uRange);
        const size_t nCount = nRun % 4 ? 16 : 1 + random() % 16;
        const TCrossingSums plain = PlainCrossingKernels().pSum(anCells.data(), nCount);
        TCrossingSums sums = VectorCrossingKernels().pSum(anCells.data(), nCount);
        if (nCount == 16 && nRun % 2) VectorCrossingKernels().pSumBlocks(&sums, anCells.data(), 0, 1);
        ASSERT_EQ(sums.nMin, plain.nMin) << nRun;
        ASSERT_EQ(sums.nMax, plain.nMax) << nRun;
        ASSERT_EQ(sums.uSums, plain.uSums) << nRun;
    }
}

TEST_P(CrossingKernels_, CrossingsAreExact) {
    std::mt19937_64 random(2);
    std::array<int32_t, 96> anPlain{}, anCells{};
    for (size_t nCount = 1; nCount <= 80; ++nCount) {
        const auto nX = static_cast<int64_t>(random()) >> 4;
        const auto nStep = static_cast<int64_t>(random()) >> (10 + nCount % 40);
        PlainCrossingKernels().pCross(anPlain.data(), nX, nStep, nCount);
        VectorCrossingKernels().pCross(anCells.data(), nX, nStep, nCount);
        for (size_t n = 0; n < nCount; ++n) ASSERT_EQ(anCells[n], anPlain[n]) << nCount << ' ' << n;
    }
}

ON_EVERY_TARGET(CrossingKernels_);
