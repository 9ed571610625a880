#include "core/RasterTransform/TransformRender.h"
#include "core/Base/StableMath.h"
#include "core/RasterKernel/KernelChoice.h"
#include "core/RasterTransform/TransformDrag.h"
#include "tests/support/LayerPictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using TPlane = boost::shared_ptr<CRasterBuffer>;
/// A pixel as 0xAABBGGRR.
using TPixels = std::function<uint32_t(int32_t x, int32_t y)>;

TPlane MakePicture(CSize sz, const TPixels& fnPixel) {
    const TPlane spPlane = MakePlane<CColorRasterBuffer>(sz);
    spPlane->ForEachBlock([&](CPoint pt) {
        const auto spTile = spPlane->GetBlock(pt, true);
        const CRect rc = CRect(pt, spPlane->GetBlockSize()).Intersect(spPlane->GetRect());
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x)
                for (size_t n = 0; n < 4; ++n)
                    spTile->GetPixelPtr(CPoint{x, y} - pt)[n * spTile->GetPlaneBytes()] =
                        static_cast<uint8_t>(fnPixel(x, y) >> (8 * n));
    });
    return spPlane;
}

TPlane Transform(const TPlane& spPlane, const CRect& rc, const TQuad& quad, CSize sz) {
    EXPECT_TRUE(IsQuadUsable(quad));
    const TPlane spResult = spPlane->CreateSized(sz, DEFAULT_BLOCKSIZE);
    const CTransformMap map(rc, quad);
    spResult->ForEachBlock([&](CPoint pt) {
        const auto spTile = spResult->CreateBlock(pt);
        if (RenderTransform({spPlane, {}, rc, {}}, map, spResult->GetRect(), *spTile))
            spResult->SetBlock(pt, spTile);
    });
    return spResult;
}
TPlane Transform(const TPlane& spPlane, const TQuad& quad) {
    return Transform(spPlane, spPlane->GetRect(), quad, spPlane->GetSize());
}

uint32_t AlphaAt(CRasterBuffer& plane, CPoint pt) { return PixelAt(plane, pt) >> 24; }
uint32_t Grey(uint32_t u) { return u * 0x010101 | 0xFF000000; }

TQuad Turned(const TQuad& quad, double dDegrees) {
    const TPosition ptMiddle = MiddleOf(quad);
    const auto [dSin, dCos] = StableSinCos(dDegrees * 3.14159265358979323846 / 180);
    TQuad result = quad;
    for (TPosition& pt : result) {
        const TPosition at = pt - ptMiddle;
        pt = ptMiddle + TPosition{at.x * dCos - at.y * dSin, at.x * dSin + at.y * dCos};
    }
    return result;
}

// Lines of one to five pixels in all directions, and circles, softened.
uint32_t LineDrawing(int32_t x, int32_t y) {
    double dInk = 0;
    const auto add = [&](double dDistance, double dHalf) {
        dInk = std::max(dInk, std::clamp(dHalf + 0.5 - std::abs(dDistance), 0.0, 1.0));
    };
    const double dX = x - 99.5, dY = y - 99.5, dFar = std::sqrt(dX * dX + dY * dY);
    for (int n = 0; n < 10; ++n) {
        const auto [dSin, dCos] = StableSinCos(0.31 * n);
        if (dFar < 80) add(dX * dSin + dY * dCos - 4.3 * n + 20, 0.8 + 0.2 * n);
        add(dFar - 8 * n, 1.2);
    }
    return Grey(static_cast<uint32_t>(255.5 - 255 * dInk));
}

// The root of the mean squared deviation from the mean, inside a rectangle.
double Deviation(CRasterBuffer& plane, const CRect& rc) {
    double dSum = 0, dSquares = 0, nCount = 0;
    for (int32_t y = rc.top; y < rc.bottom; ++y)
        for (int32_t x = rc.left; x < rc.right; ++x, ++nCount) {
            const double d = PixelAt(plane, {x, y}) & 0xFF;
            dSum += d, dSquares += d * d;
        }
    return std::sqrt(dSquares / nCount - dSum / nCount * (dSum / nCount));
}

} // namespace

TEST(TransformRender, TurnsByQuartersFlipsAndMovesAreExact) {
    std::mt19937 random(1);
    const CSize sz{101, 67};
    std::vector<uint32_t> vPixels(101 * 67); // colours without alpha too
    for (uint32_t& u : vPixels) u = random() % 3 ? random() : random() & 0xFFFFFF;
    const auto pixel = [&](int32_t x, int32_t y) { return vPixels[size_t(y * 101 + x)]; };
    const TPlane spPicture = MakePicture(sz, pixel);
    for (int n = 0; n < 8; ++n) {
        const bool bTurned = n & 4;
        const int32_t w = bTurned ? 67 : 101, h = bTurned ? 101 : 67;
        // The corners of a rectangle at (40, 30) in every order that is no distortion.
        TQuad quad = QuadOf({40, 30, 40 + w, 30 + h});
        if (bTurned) std::swap(quad[1], quad[3]);
        if (n & 1) std::swap(quad[0], quad[1]), std::swap(quad[2], quad[3]);
        if (n & 2) std::swap(quad[0], quad[3]), std::swap(quad[1], quad[2]);
        const TPlane spResult = Transform(spPicture, spPicture->GetRect(), quad, {200, 150});
        int nWrong = 0;
        for (int32_t y = 0; y < 150; ++y)
            for (int32_t x = 0; x < 200; ++x) {
                // The part of each side at which the pixel's centre lies tells its place in the source.
                const TPosition at = TPosition{x + 0.5, y + 0.5} - quad[0];
                const TPosition right = quad[1] - quad[0], down = quad[3] - quad[0];
                const auto part = [&](TPosition side, int32_t nLength) {
                    return static_cast<int32_t>(std::floor((at.x * side.x + at.y * side.y) / nLength));
                };
                const CPoint pt{part(right, 101), part(down, 67)};
                const uint32_t uWanted = spPicture->GetRect().Contains(pt) ? pixel(pt.x, pt.y) : 0;
                nWrong += PixelAt(*spResult, {x, y}) != uWanted;
            }
        EXPECT_EQ(nWrong, 0) << n;
    }
}

// Twelve turns by 30 degrees bring a drawing back.
TEST(TransformRender, TwelveTurnsKeepALineDrawing) {
    const TPlane spPicture = MakePicture({200, 200}, LineDrawing);
    std::vector<std::vector<uint8_t>> vForms;
    for (const bool bVector : {true, false}) {
        UseVectorKernels(bVector);
        TPlane spPlane = spPicture;
        for (int n = 0; n < 12; ++n) spPlane = Transform(spPlane, Turned(QuadOf(spPlane->GetRect()), 30));
        vForms.push_back(PixelsOf(*spPlane));
    }
    UseVectorKernels(true);
    EXPECT_EQ(vForms[0], vForms[1]) << "both forms of the kernels";
    const auto vPicture = PixelsOf(*spPicture);
    double dSquares = 0, nCount = 0;
    int nLargest = 0;
    const size_t nTile = 96 * 96 * 4;
    for (int32_t y = 0; y < 200; ++y)
        for (int32_t x = 0; x < 200; ++x) {
            if ((x - 99.5) * (x - 99.5) + (y - 99.5) * (y - 99.5) > 85 * 85) continue;
            const size_t i = size_t(y / 96 * 3 + x / 96) * nTile + size_t(y % 96 * 96 + x % 96);
            const int nError = std::abs(vPicture[i] - vForms[0][i]);
            dSquares += nError * nError, ++nCount;
            nLargest = std::max(nLargest, nError);
        }
    const double dDecibel = 10 * std::log10(255 * 255 * nCount / dSquares);
    EXPECT_NEAR(dDecibel, 22.53, 0.01);
    EXPECT_LT(nLargest, 120);
}

// A hatching that pixels cannot show averages out, in one direction or both, also within a distortion.
TEST(TransformRender, ShrinkingLeavesNoMoire) {
    for (const int32_t nPeriod : {2, 4, 5})
        for (const bool bDown : {false, true}) {
            const TPlane spPicture = MakePicture({300, 300}, [&](int32_t x, int32_t y) {
                return Grey((bDown ? y : x) % nPeriod < nPeriod / 2 ? 0 : 255);
            });
            const CRect rcWhole = spPicture->GetRect();
            const auto deviation = [&](const TQuad& quad, const CRect& rc) {
                return Deviation(*Transform(spPicture, rcWhole, quad, {300, 300}), rc);
            };
            const double dMost = nPeriod == 2 ? 3 : nPeriod == 4 ? 12 : 35; // 5 pixels: near what can be seen
            EXPECT_LT(deviation(QuadOf({0, 0, 100, 100}), {10, 10, 90, 90}), dMost) << nPeriod;
            EXPECT_LT(deviation(QuadOf(bDown ? CRect(0, 0, 300, 75) : CRect(0, 0, 75, 300)), {8, 8, 60, 60}),
                      dMost);
            EXPECT_LT(deviation({TPosition{20, 0}, {80, 0}, {100, 60}, {0, 60}}, {30, 10, 70, 50}), dMost);
        }
}

TEST(TransformRender, ColoursAreWeightedByAlpha) {
    // A red disc; the transparent pixels around it are green.
    const TPlane spPicture = MakePicture({120, 120}, [](int32_t x, int32_t y) {
        const double d = std::sqrt((x - 60.) * (x - 60) + (y - 60.) * (y - 60));
        const auto uAlpha = static_cast<uint32_t>(std::clamp(45.5 - d, 0.0, 1.0) * 255);
        return uAlpha ? 0x0000FF | uAlpha << 24 : 0x00FF00;
    });
    for (const TQuad& quad :
         {Turned(QuadOf({0, 0, 120, 120}), 17), QuadOf({0, 0, 50, 41}), QuadOf({-100, -100, 220, 220})}) {
        const TPlane spResult = Transform(spPicture, quad);
        for (int32_t y = 0; y < 120; ++y)
            for (int32_t x = 0; x < 120; ++x) {
                const uint32_t u = PixelAt(*spResult, {x, y});
                ASSERT_TRUE(u >> 24 == 0 ? u == 0 : (u & 0xFFFFFF) == 0x0000FF) << x << ' ' << y << ' ' << u;
            }
        const TPosition ptMiddle = MiddleOf(quad);
        EXPECT_EQ(AlphaAt(*spResult, {int32_t(ptMiddle.x), int32_t(ptMiddle.y)}), 255u) << "opaque as it was";
    }
}

TEST(TransformRender, SmallMovesShiftNothing) {
    // Greys, which nothing limits at either end.
    const TPlane spPicture =
        MakePicture({200, 200}, [](int32_t x, int32_t y) { return Grey(64 + LineDrawing(x, y) % 256 / 2); });
    TPlane spPlane = spPicture;
    for (int n = 0; n < 10; ++n)
        for (const double d : {0.3, -0.3}) {
            TQuad quad = QuadOf(spPlane->GetRect());
            for (TPosition& pt : quad) pt = pt + TPosition{d, -0.7 * d};
            spPlane = Transform(spPlane, quad);
        }
    // The move that explains most of the difference.
    const auto grey = [](CRasterBuffer& plane, CPoint pt) { return double(PixelAt(plane, pt) & 0xFF); };
    for (const CPoint ptStep : {CPoint{1, 0}, {0, 1}}) {
        double dProduct = 0, dSquares = 0;
        for (int32_t y = 20; y < 180; ++y)
            for (int32_t x = 20; x < 180; ++x) {
                const CPoint pt{x, y};
                const double dSlope = (grey(*spPicture, pt + ptStep) - grey(*spPicture, pt - ptStep)) / 2;
                dProduct += dSlope * (grey(*spPlane, pt) - grey(*spPicture, pt));
                dSquares += dSlope * dSlope;
            }
        EXPECT_NEAR(dProduct / dSquares, 0, 0.005);
    }
}

TEST(TransformRender, EdgesAreSoftToAFractionOfAPixel) {
    const TPlane spPicture = MakePicture({60, 60}, [](int32_t, int32_t) { return 0xFF804020u; });
    const TPlane spMoved =
        Transform(spPicture, spPicture->GetRect(),
                  {TPosition{20.25, 30.5}, {80.25, 30.5}, {80.25, 90.5}, {20.25, 90.5}}, {200, 200});
    const std::vector<std::pair<CPoint, uint32_t>> vExpected{{CPoint{20, 50}, 191u}, {CPoint{80, 50}, 64u},
                                                             {CPoint{50, 30}, 128u}, {CPoint{50, 90}, 128u},
                                                             {CPoint{20, 30}, 96u},  {CPoint{19, 50}, 0u}};
    for (const auto& [pt, uAlpha] : vExpected)
        EXPECT_NEAR(AlphaAt(*spMoved, pt), uAlpha, 1) << pt.x << ' ' << pt.y;
    for (const CPoint pt : {CPoint{20, 50}, {50, 50}, {80, 90}})
        EXPECT_EQ(PixelAt(*spMoved, pt) & 0xFFFFFF, 0x804020u);
    // The diagonals of a distorted square meet where those of its corners do.
    const TPlane spCross = MakePicture({60, 60}, [](int32_t x, int32_t y) {
        return std::abs(x - y) < 2 || std::abs(59 - x - y) < 2 ? 0xFF000000u : 0u;
    });
    const TPlane spFar = Transform(spCross, spCross->GetRect(),
                                   {TPosition{70, 20}, {130, 20}, {190, 180}, {10, 180}}, {200, 200});
    EXPECT_GT(AlphaAt(*spFar, {100, 60}), 200u);
    EXPECT_EQ(AlphaAt(*spFar, {100, 100}), 0u) << "the middle of the corners";
}
