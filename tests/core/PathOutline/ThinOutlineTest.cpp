// Strokes a few pixels wide, of short pieces: rounding shows in them first.
#include "tests/support/Strokes.h"

#include <gtest/gtest.h>

#include <numbers>

TEST(ThinOutline, SidesOfOneToThreePixelsRunBesideTheCentreLine) {
    constexpr double RADIUS = 480, TURN = 4.5;
    constexpr int32_t CENTRE = 1100;
    for (const uint32_t uWidth : {8u, 12u, 16u, 20u, 24u}) {
        for (const double dStep : {0.15, 0.3, 0.6}) {
            // A part of a circle, with a width point in each segment.
            const auto nCount = static_cast<int>(TURN / dStep);
            const double dHandle = 4.0 / 3 * std::tan(dStep / 4) * RADIUS;
            const auto whole = [](double x, double y) {
                return CPoint{static_cast<int32_t>(std::lround(x)), static_cast<int32_t>(std::lround(y))};
            };
            std::vector<TKnot> vKnots;
            for (int n = 0; n <= nCount; ++n) {
                const double dCos = std::cos(n * dStep), dSin = std::sin(n * dStep);
                vKnots.push_back({whole(CENTRE + RADIUS * dCos, CENTRE + RADIUS * dSin),
                                  whole(-dHandle * dSin, dHandle * dCos)});
            }
            const auto spPath = MakePath(vKnots, uWidth);
            COpenPathStream& stream = spPath->GetStream();
            for (const bool bBegin : {true, false}) stream.SetTerm(CreateOpenPathTerm(TERM_FLAT, bBegin));
            for (int n = 0; n < nCount; ++n)
                AddWidth(stream, static_cast<uint32_t>(n) * BEZIER_T_RESOLUTION + 30000, FIXED_ONE,
                         FIXED_ONE);
            spPath->Update();
            const TPolyBezier& v = stream.GetOutline(STATE_COMMITTED).front().vCurve;
            double dWorst = 0, dSum = 0;
            int nSamples = 0;
            for (size_t i = 0; i + 3 < v.size(); i += 3) {
                for (uint32_t f = 0; f <= BEZIER_T_RESOLUTION; f += BEZIER_T_RESOLUTION / 16) {
                    const CPoint pt =
                        CBezier{v[i], v[i + 1], v[i + 2], v[i + 3]}.PointAt(f) - CPoint{CENTRE, CENTRE};
                    double dAlong = std::atan2(pt.y, pt.x);
                    if (dAlong < -1) dAlong += 2 * std::numbers::pi;
                    if (dAlong < 0.03 || dAlong > nCount * dStep - 0.03) continue; // the ends cross over
                    const double dAside = std::abs(std::hypot(pt.x, pt.y) - RADIUS);
                    const double dAway = std::abs(dAside - uWidth);
                    dWorst = std::max(dWorst, dAway);
                    dSum += dAway;
                    ++nSamples;
                }
            }
            // Path units: a third of a pixel at the worst, less than a tenth on the whole.
            EXPECT_LT(dWorst, 2.6) << uWidth << ' ' << dStep;
            EXPECT_LT(dSum / nSamples, 0.7) << uWidth << ' ' << dStep;
        }
    }
}
