#include "core/RasterKernel/RescaleKernel.h"
#include "core/Base/Failure.h"
#include "core/RasterKernel/KernelChoice.h"
#include "tests/support/TargetTest.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using TPlanes = std::vector<std::vector<uint8_t>>;

size_t AreaOf(CSize sz) { return static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy); }

template <class Byte>
std::vector<Byte*> Pointers(auto& planes) {
    std::vector<Byte*> vp;
    for (auto& plane : planes) vp.push_back(plane.data());
    return vp;
}

TPlanes Rescaled(const TPlanes& from, CSize szFrom, CSize szTo, ERescaleMode mode) {
    TPlanes to(from.size(), std::vector<uint8_t>(AreaOf(szTo)));
    CRescaleMap(szFrom, szTo, mode)
        .Render(Pointers<uint8_t>(to).data(), szTo.cx, {{0, 0}, szTo}, Pointers<const uint8_t>(from).data(),
                {{0, 0}, szFrom}, from.size());
    return to;
}

std::vector<uint8_t> Line(const std::vector<uint8_t>& vFrom, int32_t nTo, ERescaleMode mode) {
    return Rescaled({vFrom}, {static_cast<int32_t>(vFrom.size()), 1}, {nTo, 1}, mode)[0];
}

// Weights and samples of an axis as a formula has them for pixel i.
std::vector<std::pair<int32_t, float>> TapsOf(int32_t i, int32_t nFrom, int32_t nTo, bool bAverage,
                                              ERescaleMode mode) {
    std::vector<std::pair<int32_t, float>> v;
    const float fRate = float(nFrom) / float(nTo);
    if (mode == ERescaleMode::Nearest) {
        v.emplace_back((i * 2 + 1) * nFrom / (nTo * 2), 1.0f);
    } else if (bAverage) {
        const float fStart = float(i) * fRate, fEnd = std::min(float(i + 1) * fRate, float(nFrom));
        const int32_t nLast = int32_t(std::ceil(fEnd)) - 1;
        v.emplace_back(int32_t(fStart), 1 - (fStart - std::floor(fStart)));
        while (v.back().first < nLast) v.emplace_back(v.back().first + 1, 1.0f);
        if (v.size() > 1) v.back().second = fEnd + 1 - std::ceil(fEnd);
    } else {
        const float fAt = (float(i) + 0.5f) * fRate - 0.5f, f = fAt - std::floor(fAt);
        const auto add = [&](int32_t n, float fWeight) {
            v.emplace_back(std::clamp(int32_t(std::floor(fAt)) + n, 0, nFrom - 1), fWeight);
        };
        const auto near = [](float d) { return d * d * d - 2 * d * d + 1; };
        const float d = 1 + f;
        if (mode == ERescaleMode::Bilinear)
            add(0, 1 - f), add(1, f);
        else
            add(-1, -d * d * d + 5 * d * d - 8 * d + 4), add(0, near(f)), add(1, near(1 - f));
    }
    return v;
}

// The definition for one pixel of one channel.
int Expected(const TPlanes& from, size_t nChannel, CSize szFrom, CSize szTo, CPoint pt, ERescaleMode mode) {
    const bool bMultiple = szFrom.cx % szTo.cx == 0 && szFrom.cy % szTo.cy == 0;
    const bool bAverage = szFrom.cx >= szTo.cx && szFrom.cy >= szTo.cy;
    float fSum = 0, fWeights = 0;
    for (const auto& [v, fDown] : TapsOf(pt.y, szFrom.cy, szTo.cy, bAverage, mode))
        for (const auto& [u, fAcross] : TapsOf(pt.x, szFrom.cx, szTo.cx, bAverage, mode)) {
            const auto i = size_t(v * szFrom.cx + u);
            if (nChannel + 1 < from.size() && from.back()[i] == 0) continue;
            const float fWeight = fDown * fAcross;
            fSum += fWeight * float(from[nChannel][i]);
            fWeights += fWeight;
        }
    if (fWeights < 1.1920929e-07f) return 0;
    if (bMultiple && mode != ERescaleMode::Nearest) return int(fSum) / int(fWeights);
    return int(std::clamp(fSum / fWeights + 1.0f / 1024, 0.0f, 255.0f));
}

using RescaleKernels_ = CTargetTest;

} // namespace

TEST(RescaleKernel, ModesGiveTheirSamplesAndMeans) {
    using enum ERescaleMode;
    using TBytes = std::vector<uint8_t>;
    const TBytes vFive{0, 100, 200, 40, 80};
    EXPECT_EQ(Line(vFive, 3, Nearest), (TBytes{0, 200, 80}));
    EXPECT_EQ(Line({7, 9}, 5, Nearest), (TBytes{7, 7, 9, 9, 9})) << "the middle lies on a border";
    EXPECT_EQ(Line({7, 9, 30, 40}, 2, Nearest), (TBytes{9, 40})) << "no mean at a whole multiple";
    EXPECT_EQ(Rescaled({{10, 11, 11, 11}}, {2, 2}, {1, 1}, Bilinear)[0], TBytes{10}) << "truncated";
    // 0 + 100 + 100 and 100 + 40 + 80, of 2.5.
    EXPECT_EQ(Line(vFive, 2, Bicubic), (TBytes{80, 88}));
    TBytes vLast(29);
    vLast.back() = 255; // of 0.636 + 1 + 1; in single precision 11 times the rate is more than 29
    EXPECT_EQ(Line(vLast, 11, Bicubic).back(), 96);
    EXPECT_EQ(Rescaled({TBytes(600, 255)}, {1, 600}, {1, 1}, Bilinear)[0], TBytes{255}) << "over 16 bits";
    for (int32_t n = 1; n <= 600; ++n) // a flat area stays flat whatever the count
        ASSERT_EQ(Rescaled({TBytes(size_t(32 * n), 255)}, {32, n}, {32, 1}, Bilinear)[0], TBytes(32, 255))
            << n;
    EXPECT_EQ(Line({0, 100}, 4, Bilinear), (TBytes{0, 25, 75, 100})) << "the border repeats";
    // The sums of (-0.140625, 0.890625, 0.296875) and (-0.046875, 0.296875, 0.890625) are 1.046875
    // and 1.140625.
    EXPECT_EQ(Line({0, 200}, 4, Bicubic), (TBytes{0, 56, 156, 226}));
    EXPECT_EQ(Line({0, 255}, 4, Bicubic), (TBytes{0, 72, 199, 255}));
    EXPECT_EQ(Line({255, 0}, 4, Bicubic), (TBytes{255, 182, 55, 0}));
    // The height shrinks to rows 1 and 4 alone, because the width grows.
    EXPECT_EQ(Rescaled({{0, 10, 0, 0, 20, 0}}, {1, 6}, {2, 2}, Bilinear)[0], (TBytes{10, 10, 20, 20}));
    EXPECT_EQ(Line(vFive, 5, Bicubic), vFive);
    EXPECT_THROW(Line(vFive, 0, Nearest), constraint_violation_as<invalid_argument>);
}

TEST(RescaleKernel, TransparentSamplesDoNotCount) {
    using enum ERescaleMode;
    const TPlanes two{{10, 200}, {0, 255}};
    EXPECT_EQ(Rescaled(two, {2, 1}, {4, 1}, Bilinear), (TPlanes{{0, 200, 200, 200}, {0, 63, 191, 255}}));
    EXPECT_EQ(Rescaled(two, {2, 1}, {2, 1}, Nearest), (TPlanes{{0, 200}, {0, 255}}));
    EXPECT_EQ(Rescaled(two, {2, 1}, {1, 1}, Bilinear), (TPlanes{{200}, {127}}));
    // Pixel 3 is between samples 1 and 2; sample 0, which alone is visible there, weighs less than nothing.
    const TPlanes hole = Rescaled({{90, 0, 0, 90}, {255, 0, 0, 255}}, {4, 1}, {8, 1}, Bicubic);
    EXPECT_EQ(hole[0][2], 90);
    EXPECT_EQ(hole[0][3], 0);
}

TEST_P(RescaleKernels_, FormsGiveTheDefinitionHoweverCut) {
    std::mt19937 random(18);
    const auto upTo = [&](int32_t n) {
        return static_cast<int32_t>(random() % static_cast<uint32_t>(n)) + 1;
    };
    for (int n = 0; n < 240; ++n) {
        const auto mode = static_cast<ERescaleMode>(n % 3);
        const size_t nChannels = size_t{1} << (n / 3 % 3);
        CSize szTo{upTo(n % 4 ? 50 : 200), upTo(12)};
        CSize szFrom{upTo(n % 5 ? 60 : 500), upTo(20)};
        if (n % 4 == 1) szTo.cx += 80, szFrom = {szTo.cx * (n % 8 > 4 ? upTo(9) : 2), szTo.cy * upTo(4)};
        TPlanes from(nChannels, std::vector<uint8_t>(AreaOf(szFrom)));
        for (auto& plane : from)
            for (uint8_t& u : plane) u = static_cast<uint8_t>(random());
        // Alpha without holes, with single ones and with wide ones.
        for (size_t i = 0; i < AreaOf(szFrom); ++i)
            from.back()[i] = n % 7 == 0   ? from.back()[i] | 1
                             : n % 7 == 1 ? from.back()[i] * (i / 40 % 2)
                                          : from.back()[i] * (random() % 3 > 0);
        UseVectorKernels(n % 5 > 0);
        const CRescaleMap map(szFrom, szTo, mode);
        const CPoint ptCut{upTo(szTo.cx), upTo(szTo.cy)};
        for (const CRect& rcPart : {CRect(0, 0, ptCut.x, ptCut.y), CRect(ptCut.x, 0, szTo.cx, ptCut.y),
                                    CRect(0, ptCut.y, szTo.cx, szTo.cy)}) {
            if (rcPart.IsEmpty()) continue;
            CRect rcFrom = map.GetSource(rcPart);
            rcFrom = CRect(rcFrom.left - n % 2, rcFrom.top - 1, rcFrom.right, rcFrom.bottom + 1)
                         .Intersect({{0, 0}, szFrom});
            TPlanes part(nChannels), out(nChannels, std::vector<uint8_t>(AreaOf(rcPart.Size()) + 1, 77));
            for (size_t i = 0; i < nChannels; ++i)
                for (int32_t y = rcFrom.top; y < rcFrom.bottom; ++y)
                    for (int32_t x = rcFrom.left; x < rcFrom.right; ++x)
                        part[i].push_back(from[i][size_t(y * szFrom.cx + x)]);
            map.Render(Pointers<uint8_t>(out).data(), rcPart.Width(), rcPart,
                       Pointers<const uint8_t>(part).data(), rcFrom, nChannels);
            for (size_t i = 0; i < nChannels; ++i) {
                TPlanes expected(1);
                for (int32_t y = rcPart.top; y < rcPart.bottom; ++y)
                    for (int32_t x = rcPart.left; x < rcPart.right; ++x)
                        expected[0].push_back(
                            static_cast<uint8_t>(Expected(from, i, szFrom, szTo, {x, y}, mode)));
                expected[0].push_back(77);
                ASSERT_EQ(out[i], expected[0]) << n << " channel " << i << ": " << szFrom.cx << 'x'
                                               << szFrom.cy << " to " << szTo.cx << 'x' << szTo.cy;
            }
        }
    }
    UseVectorKernels(true);
}

// Enough results for some that are within a rounding of an integer.
TEST_P(RescaleKernels_, FormsAgreeWhereSumsNearlyGiveAnInteger) {
    std::mt19937 random(7);
    for (const auto& [szFrom, szTo] :
         {std::pair<CSize, CSize>{{200, 150}, {399, 331}}, {{701, 533}, {317, 241}}})
        for (const uint32_t uHoles : {0u, 20u}) {
            TPlanes from(4, std::vector<uint8_t>(AreaOf(szFrom)));
            for (auto& plane : from)
                for (uint8_t& u : plane) u = static_cast<uint8_t>(random() % 255 + 1);
            for (uint8_t& u : from[3]) u = random() % 100 < uHoles ? 0 : u;
            UseVectorKernels(false);
            const TPlanes plain = Rescaled(from, szFrom, szTo, ERescaleMode::Bilinear);
            UseVectorKernels(true);
            EXPECT_TRUE(Rescaled(from, szFrom, szTo, ERescaleMode::Bilinear) == plain)
                << szTo.cx << ' ' << uHoles;
        }
    // Only source pixel (751, 751) is visible. Pixel 1500 is 0.00017 behind 750, pixel 1502 is 0.0005.
    const CRescaleMap map({1500, 1500}, {2999, 2999}, ERescaleMode::Bilinear);
    const CRect rcTo(1490, 1490, 1522, 1510), rcFrom = map.GetSource(rcTo);
    TPlanes from{std::vector<uint8_t>(AreaOf(rcFrom.Size()), 200),
                 std::vector<uint8_t>(AreaOf(rcFrom.Size()))};
    from[1][size_t((751 - rcFrom.top) * rcFrom.Width() + 751 - rcFrom.left)] = 255;
    TPlanes to(2, std::vector<uint8_t>(AreaOf(rcTo.Size())));
    map.Render(Pointers<uint8_t>(to).data(), rcTo.Width(), rcTo, Pointers<const uint8_t>(from).data(), rcFrom,
               2);
    EXPECT_EQ(to[0][10 * 32 + 10], 0) << "its weight is almost 0";
    EXPECT_EQ(to[0][12 * 32 + 12], 200);
}

ON_EVERY_TARGET(RescaleKernels_);
