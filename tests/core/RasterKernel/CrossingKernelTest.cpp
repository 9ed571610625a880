// The crossing sums' vector form against the definition, on every instruction set that this machine has.
#include "core/RasterKernel/CrossingKernel.h"

#include "tests/support/TargetTest.h"

#include <array>
#include <random>

namespace {

using CrossingKernels_ = CTargetTest;

} // namespace

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

ON_EVERY_TARGET(CrossingKernels_);
