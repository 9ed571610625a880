#include "core/PathFit/InkLine.h"

#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "tests/support/RunningClock.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr CSize SIZE{400, 200};

// Half the coverage across a level line that a hard brush draws, in pixels.
double DrawnHalfWidth(const TBrushParam& param, const std::vector<TCtlPoint>& vPoints) {
    CRunningClock clock(0);
    CStrokeRandom random;
    CRasterBrushStroke stroke({.szCanvas = SIZE,
                               .bDouble = param.BrushRadius < 32,
                               .param = param,
                               .clock = clock,
                               .random = random});
    for (const TCtlPoint& pt : vPoints) stroke.AddCtlPoint({pt.x, pt.y}, pt.pressure, pt.altitude);
    stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, UPRIGHT);
    while (!stroke.Update()) {
    }
    CColorRasterBuffer plane;
    plane.Create(SIZE, DEFAULT_BLOCKSIZE);
    plane.ForEachBlock(
        [&](CPoint pt) { stroke.GetMain().BlendBlockInto(*plane.GetBlock(pt, true), nullptr); });
    const auto spAll = plane.ExtractBlock({0, 0, SIZE.cx, SIZE.cy}, false, nullptr);
    double dSum = 0;
    for (int32_t x = 150; x < 250; ++x)
        for (int32_t y = 0; y < SIZE.cy; ++y) dSum += spAll->GetPixelAlpha({x, y}) / 255.0;
    return dSum / 200;
}

} // namespace

TEST(InkLine, IsAsWideAsTheBrushDraws) {
    for (const uint32_t uSize : {1u, 2u, 3u, 5u, 7u, 9u, 14u, 22u, 31u, 50u, 72u}) {
        for (const uint32_t uPressure : {350u, 700u, 1024u}) {
            const TBrushParam param{.BrushRadius = uSize, .BlurLevel = 100};
            std::vector<TCtlPoint> vPoints;
            for (int32_t n = 0; n < 60; ++n) vPoints.push_back({400 + n * 40, 803, uPressure, UPRIGHT});
            const double dDrawn = DrawnHalfWidth(param, vPoints);
            // The stroke fades its points in; this line has them as they are.
            const auto vLine = DrawnLine(vPoints, param);
            EXPECT_NEAR(vLine[vLine.size() / 2].dHalf / 8, dDrawn, 0.08) << uSize << " at " << uPressure;
            EXPECT_NEAR(vLine[vLine.size() / 2].y, 803, 1);
        }
    }
    const std::vector<TCtlPoint> vLifted{{0, 0, 0, UPRIGHT}, {80, 0, 0, UPRIGHT}};
    EXPECT_TRUE(DrawnLine(vLifted, {}).empty());
}
