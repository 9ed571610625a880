#include "core/RasterKernel/SampleKernel.h"
#include "core/RasterKernel/KernelChoice.h"
#include "tests/support/TargetTest.h"

#include <random>

namespace {

using SampleKernels_ = CTargetTest;

// Compares both forms of a kernel that writes into a record of results.
template <class Results>
void CompareForms(const char* pszName, const std::function<void(const TSampleKernels&, Results&)>& fnRun) {
    Results plain{}, vector{};
    fnRun(PlainSampleKernels(), plain);
    fnRun(VectorSampleKernels(), vector);
    EXPECT_EQ(plain, vector) << pszName;
}

} // namespace

TEST(SampleKernel, WeightsAreMirroredAndSumToOne) {
    const auto& rows = SampleWeights().one;
    for (size_t n = 0; n < SAMPLE_PHASES; ++n) {
        int nSum = 0;
        for (size_t i = 0; i < SAMPLE_TAPS; ++i) {
            nSum += rows[n][i];
            const size_t nMirror = (SAMPLE_PHASES - n) % SAMPLE_PHASES;
            if (n > 0) {
                EXPECT_EQ(rows[n][i], rows[nMirror][SAMPLE_TAPS - 1 - i]);
            }
        }
        EXPECT_EQ(nSum, TSampleWeights::ONE) << n;
    }
    EXPECT_EQ(rows[0][SAMPLE_BEFORE], TSampleWeights::ONE) << "a pixel's centre is its value";
}

TEST_P(SampleKernels_, FormsAreEqual) {
    constexpr int32_t SIDE = 24;
    std::mt19937 random(5);
    for (const size_t nCount : {1, 7, 16, 61}) {
        TSampleLine line{};
        line.dFirst = 3, line.dStep = 0.3;
        line.u0 = 5, line.u1 = 0.7, line.v0 = 9, line.v1 = -0.4, line.w0 = 1, line.w1 = -0.06;
        line.dLow = 2, line.dLowDown = 3, line.dHigh = 20, line.dHighDown = 19, line.nCount = nCount;
        using TPlaces = std::array<std::vector<int32_t>, 2>;
        CompareForms<TPlaces>("positions", [&](const TSampleKernels& kernels, TPlaces& places) {
            for (auto& v : places) v.resize(nCount);
            line.pX = places[0].data(), line.pY = places[1].data();
            kernels.pLocate(line);
        });
        std::vector<int32_t> vX(nCount), vY(nCount);
        for (auto* p : {&vX, &vY})
            for (int32_t& n : *p)
                n = static_cast<int32_t>(random() % (18 * SAMPLE_PHASES)) + 2 * SAMPLE_PHASES;
        for (const size_t nChannels : {1, 2, 4}) {
            std::vector<int16_t> vWindow(SIDE * SIDE * nChannels + 8);
            for (int16_t& n : vWindow) n = random() % 2 ? 255 * PREPARED_LEVEL : int16_t(random() % 32640);
            CompareForms<std::vector<int16_t>>("samples", [&](const TSampleKernels& kernels, auto& v) {
                v.resize(nCount * nChannels);
                (nChannels == 1   ? kernels.pSample1
                 : nChannels == 2 ? kernels.pSample2
                                  : kernels.pSample4)(
                    {vWindow.data(), SIDE * ptrdiff_t(nChannels), vX.data(), vY.data(), nCount, v.data()});
            });
            std::vector<int16_t> vSamples(nCount * nChannels);
            for (int16_t& n : vSamples) n = static_cast<int16_t>(random() % 10000) - 900;
            std::vector<uint16_t> vCover(nCount, 100);
            for (const uint16_t* pCover :
                 {static_cast<const uint16_t*>(nullptr), static_cast<const uint16_t*>(vCover.data())})
                CompareForms<std::vector<uint8_t>>("pixels", [&](const TSampleKernels& kernels, auto& v) {
                    v.resize(nCount * nChannels);
                    uint8_t* apPlanes[4];
                    for (size_t n = 0; n < nChannels; ++n) apPlanes[n] = v.data() + n * nCount;
                    (nChannels == 1   ? kernels.pFinish1
                     : nChannels == 2 ? kernels.pFinish2
                                      : kernels.pFinish4)({apPlanes, vSamples.data(), pCover, nCount});
                });
        }
    }
}

ON_EVERY_TARGET(SampleKernels_);
