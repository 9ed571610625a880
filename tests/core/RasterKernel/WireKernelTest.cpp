#include "core/RasterKernel/WireKernel.h"
#include "tests/support/TargetTest.h"

#include <vector>

using WireKernel = CTargetTest;

TEST_P(WireKernel, EveryLengthThereAndBackAndNothingBeyond) {
    constexpr size_t MOST = 200;
    std::vector<uint8_t> av[4];
    for (size_t k = 0; k < 4; ++k)
        for (size_t i = 0; i < MOST; ++i) av[k].push_back(static_cast<uint8_t>(i * 5 + k * 64));
    const auto at = [](std::vector<uint8_t>* a, size_t k) { return a[k].data(); };
    for (size_t n = 0; n < MOST; ++n) {
        std::vector<uint8_t> vExpected(MOST * 4, 77), vWire(MOST * 4, 77);
        std::vector<uint8_t> vGreyExpected = vExpected, vGreyWire = vWire;
        for (size_t i = 0; i < n; ++i) {
            for (size_t k = 0; k < 4; ++k) vExpected[i * 4 + k] = av[k < 3 ? 2 - k : 3][i];
            vGreyExpected[i * 2] = av[0][i], vGreyExpected[i * 2 + 1] = av[1][i];
        }
        Interleave(vWire.data(), TConstColorPixels{at(av, 0), at(av, 1), at(av, 2), at(av, 3)}, n);
        Interleave(vGreyWire.data(), TConstGreyPixels{at(av, 0), at(av, 1)}, n);
        ASSERT_EQ(vWire, vExpected) << n;
        ASSERT_EQ(vGreyWire, vGreyExpected) << n;
        std::vector<uint8_t> avBack[6];
        for (auto& v : avBack) v.assign(MOST, 77);
        Deinterleave(TColorPixels{at(avBack, 0), at(avBack, 1), at(avBack, 2), at(avBack, 3)}, vWire.data(),
                     n);
        Deinterleave(TGreyPixels{at(avBack, 4), at(avBack, 5)}, vGreyWire.data(), n);
        for (size_t k = 0; k < 6; ++k)
            for (size_t i = 0; i < MOST; ++i)
                ASSERT_EQ(avBack[k][i], i < n ? av[k % 4][i] : 77) << n << " plane " << k << " pixel " << i;
    }
}

ON_EVERY_TARGET(WireKernel);
