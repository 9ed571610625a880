#include "core/RasterStamp/StampDisc.h"
#include "core/RasterStamp/StampTarget.h"
#include "tests/support/Planes.h"

namespace {

// A cell of the disc, `x` and `y` counted from the centre to the right and down, 0 first.
uint16_t CellAt(const TStampShape& shape, int64_t x, int64_t y) {
    const bool bFine = shape.uOuter <= 0x4000;
    const int64_t nHalf = bFine ? 2 : 1;
    const auto limit = [&](int64_t r) { return r * 2 * nHalf * r * 2 * nHalf >> 20; };
    const auto nInner = static_cast<int32_t>(shape.uCore >> (bFine ? 8 : 9));
    const auto nOuter = static_cast<int32_t>(shape.uOuter >> (bFine ? 8 : 9));
    const double dRate = 3.6f / static_cast<float>(nOuter - nInner);
    const auto sample = [&](int64_t u, int64_t v) {
        const int64_t d2 = u * u + v * v;
        if (d2 <= limit(shape.uCore)) return 1.0;
        if (d2 > limit(shape.uOuter)) return 0.0;
        return std::exp(-0.5 * dRate * dRate * std::pow(std::sqrt(static_cast<double>(d2)) - nInner, 2));
    };
    if (!bFine) return static_cast<uint16_t>(sample(2 * x + 1, 2 * y + 1) * 65535 + 0.5);
    const double dSum = sample(4 * x + 1, 4 * y + 1) + sample(4 * x + 3, 4 * y + 1) +
                        sample(4 * x + 1, 4 * y + 3) + sample(4 * x + 3, 4 * y + 3);
    return static_cast<uint16_t>(dSum * 16383.75 + 0.5);
}

// The stamp by its definition: 64 cells a pixel, read from the whole disc.
uint16_t PixelAt(const TStampShape& shape, int fx, int fy, int i, int j) {
    const int64_t nHalf = shape.GetHalfSize();
    uint32_t uSum = 0;
    for (int64_t v = 0; v < 8; ++v)
        for (int64_t u = 0; u < 8; ++u) {
            const int64_t y = 8 * (i - nHalf) - fy - 4 + v, x = 8 * (j - nHalf) - fx - 4 + u;
            uSum += CellAt(shape, x < 0 ? -1 - x : x, y < 0 ? -1 - y : y);
        }
    return static_cast<uint16_t>(uSum >> 6);
}

void ExpectStamp(const TStampShape& shape, int fx, int fy) {
    const auto nSide = static_cast<int>(shape.GetHalfSize() * 2);
    std::vector<uint16_t> vStamp(StampLength(shape.GetHalfSize()), 1);
    // Corners are kept for the places that this one is among.
    const int nLostBits = (fx | fy) == 0 ? 3 : (fx | fy) % 2 ? 0 : (fx | fy) % 4 ? 1 : 2;
    CStampDisc(shape, nLostBits).Cut(vStamp.data(), fx, fy);
    const size_t nStride = StampStride(shape.GetHalfSize());
    for (int i = 0; i < nSide; ++i)
        for (int j = -8; j < static_cast<int>(nStride) - 8; ++j) {
            const uint16_t uPixel = j >= 0 && j < nSide ? PixelAt(shape, fx, fy, i, j) : uint16_t{0};
            const uint16_t uStamp =
                vStamp[STAMP_MARGIN + static_cast<size_t>(i) * nStride + static_cast<size_t>(j)];
            ASSERT_EQ(uStamp, uPixel) << shape.uCore << ' ' << shape.uOuter << ": " << j << "," << i;
        }
}

} // namespace

TEST(StampShape, HardnessLeavesAnEdgeAndSetsTheSpacing) {
    // Radius 10 pixels: the hardest edge is 1 pixel and a tenth of the radius, limited to 2.
    EXPECT_EQ(MakeStampShape(81920, 100, 1).uCore, 81920u - 16384u);
    EXPECT_EQ(MakeStampShape(81920, 50, 1).uCore, 40960u);
    EXPECT_EQ(MakeStampShape(81920, 0, 1).uOuter, 122880u);
    EXPECT_EQ(MakeStampShape(4096, 100, 1).uCore, 0u);
    const TStampShape thin = MakeStampShape(4096, 0, 1);
    EXPECT_EQ(thin.GetHalfSize(), 2u);
    EXPECT_EQ(SpacingOf(thin, 0, 1), 8u);
    const uint32_t auSpacing[][3] = {{0, 28, 28}, {50, 24, 28}, {51, 28, 28}, {75, 20, 28}, {100, 16, 28}};
    for (const auto& [uLevel, uPlain, uDouble] : auSpacing) {
        EXPECT_EQ(SpacingOf({0, 0x100000}, uLevel, 1), uPlain) << uLevel;
        EXPECT_EQ(SpacingOf({0, 0x100000}, uLevel, 2), uDouble) << uLevel;
    }
}

TEST(StampDisc, EveryPixelIsTheMeanOfItsCells) {
    for (const uint32_t uRadius : {0u, 300u, 4096u, 8192u, 10922u, 10923u, 20480u, 70144u, 131072u})
        for (const uint32_t uBlur : {0u, 50u, 100u})
            for (const auto& [fx, fy] : {std::pair{0, 0}, {7, 7}, {3, 6}, {2, 6}, {0, 4}}) {
                ExpectStamp(MakeStampShape(uRadius, uBlur, 1 + (uBlur == 50)), fx, fy);
                if (HasFatalFailure()) return;
            }
}

TEST(StampTarget, CutsAtTheEdgesAndCrossesTiles) {
    const auto spPlane = MakePlane<CStrokePlane>({200, 100});
    CStampTarget target(*spPlane);
    // A stamp whose every value is told by its place, drawn so that it covers corners and tile borders.
    const uint32_t uHalf = 11;
    std::vector<uint16_t> vStamp(StampLength(uHalf));
    const auto stampAt = [&](int i, int j) -> uint16_t& {
        return vStamp[STAMP_MARGIN + static_cast<size_t>(i) * StampStride(uHalf) + static_cast<size_t>(j)];
    };
    for (int i = 0; i < 22; ++i)
        for (int j = 0; j < 22; ++j) stampAt(i, j) = static_cast<uint16_t>(i * 100 + j + 1);
    for (const CPoint ptCentre :
         {CPoint{-3, -4}, {96, 96}, {100, 50}, {90, 20}, {198, 97}, {30, 60}, {187, 40}}) {
        spPlane->Clear();
        target.ForgetTiles();
        target.Draw(vStamp.data(), uHalf, ptCentre, 255);
        const auto vValues = ValuesOf(*spPlane);
        for (int n = 0; n < 200 * 100; ++n) {
            const int i = n / 200 - ptCentre.y + 11, j = n % 200 - ptCentre.x + 11;
            const bool bIn = i >= 0 && i < 22 && j >= 0 && j < 22;
            ASSERT_EQ(vValues[static_cast<size_t>(n)], bIn ? stampAt(i, j) : 0) << ptCentre.x << ": " << n;
        }
    }
    target.Draw(vStamp.data(), uHalf, {-300, 50}, 255);
    target.Draw(vStamp.data(), uHalf, {50, 111}, 255);
    EXPECT_FALSE(spPlane->FindBlock({0, 96})) << "what misses the plane makes no tile";
}

TEST(StampTarget, FlagsOnePixelMoreAndLeavesSharedTilesAlone) {
    const auto spPlane = MakePlane<CStrokePlane>({300, 300});
    CStampTarget target(*spPlane);
    std::vector<uint16_t> vStamp(StampLength(4), 60000);
    target.Draw(vStamp.data(), 4, {100, 150}, 255); // columns 96 to 103: the flag reaches back to 95
    const CBoolMatrix& dirty = spPlane->GetDirty();
    EXPECT_TRUE(dirty.At(0, 1) && dirty.At(1, 1));
    EXPECT_FALSE(dirty.At(1, 0) || dirty.At(2, 1) || dirty.At(1, 2) || spPlane->FindBlock({0, 96}));
    const auto spShared = boost::static_pointer_cast<CStrokePlane>(spPlane->ShallowCopy());
    target.ForgetTiles();
    target.Draw(vStamp.data(), 4, {150, 150}, 100);
    constexpr size_t ROW = 150 * 300;
    EXPECT_EQ(ValuesOf(*spPlane)[ROW + 150], 23529);
    EXPECT_EQ(ValuesOf(*spShared)[ROW + 150], 0);
    EXPECT_EQ(ValuesOf(*spPlane)[ROW + 100], 60000) << "a clone keeps the whole tile";
}
