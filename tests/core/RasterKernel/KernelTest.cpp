#include "core/Base/Failure.h"
#include "core/RasterKernel/BlendKernel.h"
#include "core/RasterKernel/ReduceKernel.h"
#include "core/RasterKernel/ResolveKernel.h"

namespace {

struct TPixel {
    uint8_t r, g, b, a;
    TColorPixels Out() { return {&r, &g, &b, &a}; }
    TConstColorPixels In() const { return {&r, &g, &b, &a}; }
    friend bool operator==(const TPixel&, const TPixel&) = default;
};

TPixel Fast(TPixel dest, const TPixel& src) {
    BlendFast(dest.Out(), src.In(), 1);
    return dest;
}

TPixel General(TPixel dest, const TPixel& src, uint8_t uOpacity, int nMask = -1) {
    const auto uMask = static_cast<uint8_t>(nMask);
    BlendGeneral(dest.Out(), src.In(), uOpacity, nMask < 0 ? nullptr : &uMask, 1);
    return dest;
}

} // namespace

TEST(BlendKernel, CoverageIsThatOfOver) {
    for (int s = 0; s < 256; ++s)
        for (int d = 0; d < 256; ++d) {
            const TPixel src{255, 0, 90, static_cast<uint8_t>(s)}, dest{10, 250, 90, static_cast<uint8_t>(d)};
            const double fExact = s + d - s * d / 255.0;
            const TPixel fast = Fast(dest, src), general = General(dest, src, 255);
            EXPECT_NEAR(fast.a, fExact, 1.0);
            EXPECT_NEAR(general.a, fExact, 1.0);
            EXPECT_GE(fast.a, std::max(s, d) - 1);
            EXPECT_TRUE(d || general == (s ? src : TPixel{})) << "a fresh tile takes the source exactly";
            if (fast.a == 0) continue;
            // Equal colours stay as they are up to the kernels' rounding.
            EXPECT_EQ(fast.b, 90);
            EXPECT_EQ(general.b, 90);
            EXPECT_NEAR(fast.r, 10 + 245.0 * s / fast.a, 1.25) << s << " on " << d;
            EXPECT_TRUE(d || fast == src) << s;
        }
}

TEST(BlendKernel, KnownValues) {
    // 128 over 128: the two kernels round differently, and both roundings are kept.
    EXPECT_EQ(Fast({0, 255, 10, 128}, {255, 0, 20, 128}), (TPixel{169, 85, 16, 192}));
    EXPECT_EQ(General({0, 255, 10, 128}, {255, 0, 20, 128}, 255), (TPixel{170, 84, 16, 191}));
    // Opacity and mask truncate one after the other: 255 * 128 / 255 = 128, 128 * 100 / 255 = 50.
    EXPECT_EQ(General({0, 0, 0, 0}, {9, 9, 9, 255}, 128, 100).a, 50);
    EXPECT_EQ(General({1, 2, 3, 40}, {9, 9, 9, 255}, 255, 0), (TPixel{1, 2, 3, 40}));
    // Nothing on nothing: the general kernel clears the colour, the fast one keeps it.
    EXPECT_EQ(General({5, 6, 7, 0}, {9, 9, 9, 0}, 255), (TPixel{0, 0, 0, 0}));
    EXPECT_EQ(Fast({5, 6, 7, 0}, {9, 9, 9, 0}), (TPixel{5, 6, 7, 0}));
}

TEST(BlendKernel, AcrossKinds) {
    TPixel color{10, 20, 30, 255};
    const uint8_t uGrey = 200, uAlpha = 128;
    BlendGeneral(color.Out(), TConstGreyPixels{&uGrey, &uAlpha}, 255, nullptr, 1);
    EXPECT_EQ(color, (TPixel{105, 110, 115, 255}));
}

TEST(ResolveKernel, WhitePaper) {
    EXPECT_EQ(ResolveOnWhite(0, CoverageOf(0)), 255);
    for (int c = 0; c < 256; ++c) {
        const auto on = [&](uint8_t uAlpha) {
            return ResolveOnWhite(static_cast<uint8_t>(c), CoverageOf(uAlpha));
        };
        EXPECT_EQ(on(255), c);
        EXPECT_NEAR(on(100), 255 - (255 - c) * 100 / 255.0, 1.15);
    }
}

TEST(ReduceKernel, WeighsByAreaAndTransparentSamplesDoNotBleed) {
    uint8_t aOut[2] = {};
    const auto reduce = [&](const std::vector<uint8_t>& vColor, const uint8_t* pAlpha, CSize sz) {
        ReducePlane(aOut, {2, 1}, vColor.data(), pAlpha, sz);
        return std::pair<int, int>(aOut[0], aOut[1]);
    };
    const uint8_t aAlpha[] = {255, 0, 255, 255, 0, 255, 255, 255}, aClear[8] = {};
    EXPECT_EQ(reduce({200, 90, 100, 100, 90, 200, 100, 101}, aAlpha, {4, 2}), std::pair(200, 100));
    EXPECT_EQ(reduce({200, 90, 100, 100, 90, 200, 100, 101}, aClear, {4, 2}), std::pair(0, 0));
    // 0 whole and 100 half: 50 / 1.5; 100 half and 200 whole: 250 / 1.5.
    EXPECT_EQ(reduce({0, 100, 200}, nullptr, {3, 1}), std::pair(33, 166));
    EXPECT_THROW(reduce({0}, nullptr, {1, 1}), constraint_violation_as<defect_logic>);
}

namespace {

// FNV-1a over what shrinking noise of one kind gives, 64 bits.
template <class T>
uint64_t DigestOfReduced(CSize szSource, CSize szDest, bool bAlpha) {
    uint32_t uSeed = 1;
    const auto noise = [&] { return uSeed = uSeed * 1664525 + 1013904223, uSeed >> 16; };
    std::vector<T> vSource(static_cast<size_t>(szSource.cx) * static_cast<size_t>(szSource.cy));
    std::vector<uint8_t> vAlpha(vSource.size());
    for (T& u : vSource) u = static_cast<T>(noise());
    for (uint8_t& u : vAlpha) u = noise() % 3 ? static_cast<uint8_t>(noise()) : 0;
    std::vector<T> vDest(static_cast<size_t>(szDest.cx) * static_cast<size_t>(szDest.cy));
    ReducePlane(vDest.data(), szDest, vSource.data(), bAlpha ? vAlpha.data() : nullptr, szSource);
    uint64_t uDigest = 0xCBF29CE484222325u;
    for (const T u : vDest) uDigest = (uDigest ^ u) * 0x100000001B3u;
    return uDigest;
}

} // namespace

TEST(ReduceKernel, GivesTheSameOnEveryMachineWithAnyNumberOfThreads) {
    EXPECT_EQ(DigestOfReduced<uint8_t>({500, 300}, {123, 77}, true), 5151783663399571901u);
    EXPECT_EQ(DigestOfReduced<uint16_t>({500, 300}, {123, 77}, false), 17444129487736707663u);
    EXPECT_EQ(DigestOfReduced<uint16_t>({96, 96}, {3, 2}, true), 10537434630671383967u);
}
