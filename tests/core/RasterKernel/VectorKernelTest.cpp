#include "core/RasterKernel/HalveKernel.h"
#include "core/RasterKernel/Kernels.h"
#include "tests/support/TargetTest.h"

namespace {

constexpr size_t ALL_PAIRS = 65536;

struct TPlanes {
    std::vector<uint8_t> av[9];

    explicit TPlanes(size_t n, uint32_t uSeed) {
        std::mt19937 random(uSeed);
        for (auto& v : av) {
            v.resize(n);
            // Half of the bytes are the edges, where roundings go wrong.
            for (uint8_t& u : v)
                u = random() % 2 ? static_cast<uint8_t>(random()) : static_cast<uint8_t>(random() % 2 * 255);
        }
    }
    TConstColorPixels Source() const { return {av[0].data(), av[1].data(), av[2].data(), av[3].data()}; }
    TConstGreyPixels GreySource() const { return {av[0].data(), av[3].data()}; }
    TColorPixels Dest() { return {av[5].data(), av[6].data(), av[7].data(), av[8].data()}; }
    TGreyPixels GreyDest() { return {av[5].data(), av[8].data()}; }
    // Every pair of source and destination alpha; one of them stays the same for 256 pixels.
    void SetAllAlphas(bool bEvenSource = false) {
        for (size_t i = 0; i < av[3].size(); ++i) {
            av[bEvenSource ? 8 : 3][i] = static_cast<uint8_t>(i);
            av[bEvenSource ? 3 : 8][i] = static_cast<uint8_t>(i >> 8);
        }
    }
};

// Compares every plane behind both forms of every kernel; names the kernel and the first pixel that differs.
void CompareAll(const TPlanes& planes, size_t n, uint8_t uOpacity, bool bMask) {
    const TConstColorPixels color = planes.Source();
    const TConstGreyPixels grey = planes.GreySource();
    const uint8_t* pCover = planes.av[3].data();
    const uint8_t* pMask = bMask ? planes.av[4].data() : nullptr;
    const auto compare = [&](const char* pszKernel, const auto& fnRun) {
        TPlanes plain = planes, vector = planes;
        fnRun(PlainKernels(), plain);
        fnRun(VectorKernels(), vector);
        for (size_t nPlane = 5; nPlane < 9; ++nPlane)
            for (size_t i = 0; i < plain.av[nPlane].size(); ++i)
                ASSERT_EQ(int{vector.av[nPlane][i]}, int{plain.av[nPlane][i]})
                    << pszKernel << " plane " << nPlane << " pixel " << i << ": source "
                    << int{planes.av[nPlane - 5][i]} << " alpha " << int{planes.av[3][i]} << " on "
                    << int{planes.av[nPlane][i]} << " alpha " << int{planes.av[8][i]};
    };
    compare("fast colour", [&](auto& k, auto& p) { k.pFastColor(p.Dest(), color, n); });
    compare("fast grey", [&](auto& k, auto& p) { k.pFastGrey(p.GreyDest(), grey, n); });
    compare("colour", [&](auto& k, auto& p) { k.pGeneralColorOnColor(p.Dest(), color, uOpacity, pMask, n); });
    compare("on grey",
            [&](auto& k, auto& p) { k.pGeneralColorOnGrey(p.GreyDest(), color, uOpacity, pMask, n); });
    compare("grey", [&](auto& k, auto& p) { k.pGeneralGreyOnGrey(p.GreyDest(), grey, uOpacity, pMask, n); });
    const TInk ink{7, 255, 130};
    compare("ink", [&](auto& k, auto& p) { k.pInkOnColor(p.Dest(), ink, pCover, pMask, n); });
    compare("grey ink", [&](auto& k, auto& p) { k.pInkOnGrey(p.GreyDest(), 201, pCover, pMask, n); });
    compare("erase", [&](auto& k, auto& p) { k.pErase(p.av[8].data(), pCover, pMask, n); });
    compare("cover", [&](auto& k, auto& p) { k.pCover(p.av[8].data(), pCover, pMask, n); });
}

using VectorKernels_ = CTargetTest;

} // namespace

TEST_P(VectorKernels_, AllAlphasUnderAllOpacitiesAndMasks) {
    TPlanes planes(ALL_PAIRS, 1);
    for (int n = 0; n < 14; ++n) {
        planes.SetAllAlphas(n % 2);
        const auto uOpacity = std::array<uint8_t, 7>{0, 1, 2, 127, 128, 254, 255}[static_cast<size_t>(n / 2)];
        CompareAll(planes, ALL_PAIRS, uOpacity, false);
        CompareAll(planes, ALL_PAIRS, uOpacity, true);
        if (HasFatalFailure()) return;
    }
}

TEST_P(VectorKernels_, AllColoursOnAllColours) {
    TPlanes planes(ALL_PAIRS, 2);
    for (size_t i = 0; i < ALL_PAIRS; ++i) {
        planes.av[0][i] = planes.av[1][i] = static_cast<uint8_t>(i);
        planes.av[5][i] = planes.av[6][i] = static_cast<uint8_t>(i >> 8);
    }
    for (uint32_t uSeed = 3; uSeed < 19; ++uSeed) {
        const TPlanes random(ALL_PAIRS, uSeed);
        for (const size_t n : {2, 3, 4, 7, 8}) planes.av[n] = random.av[n];
        CompareAll(planes, ALL_PAIRS, static_cast<uint8_t>(uSeed * 37), uSeed % 2);
        if (HasFatalFailure()) return;
    }
}

TEST_P(VectorKernels_, EveryPixelOnWhite) {
    TPlanes planes(ALL_PAIRS, 9);
    planes.SetAllAlphas();
    // Every channel byte under every alpha.
    for (size_t i = 0; i < ALL_PAIRS; ++i) planes.av[0][i] = planes.av[2][i] = static_cast<uint8_t>(i >> 8);
    for (const size_t n : {ALL_PAIRS, size_t{0}, size_t{1}, size_t{7}, size_t{33}, size_t{95}}) {
        std::vector<uint8_t> av[2][2];
        for (int k = 0; k < 2; ++k) {
            const TBlendKernels& kernels = k ? PlainKernels() : VectorKernels();
            for (auto& v : av[k]) v.assign(ALL_PAIRS * 4, 77);
            kernels.pResolveColor(av[k][0].data(), planes.Source(), n);
            kernels.pResolveGrey(av[k][1].data(), planes.GreySource(), n);
        }
        ASSERT_EQ(av[0][0], av[1][0]) << n;
        ASSERT_EQ(av[0][1], av[1][1]) << n;
    }
}

TEST_P(VectorKernels_, EveryLengthAndNothingBeyond) {
    const TPlanes planes(200, 5);
    for (size_t n = 0; n <= 130; ++n) {
        CompareAll(planes, n, 200, n % 2);
        if (HasFatalFailure()) return;
    }
}

TEST_P(VectorKernels_, HalvingReadsOneValueBeyondTheRow) {
    std::mt19937 random(6);
    std::vector<uint16_t> av[3];
    for (auto& v : av)
        for (int i = 0; i < 600; ++i)
            v.push_back(static_cast<uint16_t>(random() % 3 ? random() : random() % 2 * 0xFFFF));
    for (size_t n = 0; n < 300; ++n) {
        const THalveRows rows{{av[0].data(), av[1].data(), av[2].data()},
                              {static_cast<uint16_t>(random()), 0xFFFF, static_cast<uint16_t>(random())}};
        std::vector<uint8_t> vPlain(301, 77), vVector = vPlain;
        PlainHalveKernels().pHalve(vPlain.data(), rows, n);
        VectorHalveKernels().pHalve(vVector.data(), rows, n);
        ASSERT_EQ(vVector, vPlain) << n;
        if (n == 0) continue;
        const size_t i = 2 * n - 2;
        const auto sum = [&](int k) { return av[k][i] + 2u * av[k][i + 1] + rows.auNext[k]; };
        ASSERT_EQ(vPlain[n - 1], ((sum(0) + 2 * sum(1) + sum(2)) / 16) >> 8) << n;
    }
}

ON_EVERY_TARGET(VectorKernels_);
