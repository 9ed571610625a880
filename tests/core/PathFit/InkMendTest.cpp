// Faults of an outline: what changes beside them and what stays.
#include "core/PathFit/InkMend.h"
#include "core/PathFit/InkMarks.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr double TOLERANCE = 2.8;

// A wave with half-widths by length.
TInkWay Wave(const std::function<double(double)>& fnHalf) {
    TInkWay vWay;
    for (int n = 0; n <= 600; ++n)
        vWay.push_back({{n * 3.0, std::round(150 * std::sin(n * 0.03))}, fnHalf(n * 3.0), 255});
    MeasureWay(vWay, TOLERANCE);
    return vWay;
}

// The curves of `vCurves` that `vOthers` has too.
size_t CountSame(const std::vector<TCentreCurve>& vCurves, const std::vector<TCentreCurve>& vOthers) {
    return static_cast<size_t>(std::ranges::count_if(vCurves, [&](const TCentreCurve& curve) {
        return std::ranges::find(vOthers, curve) != vOthers.end();
    }));
}

TEST(InkMend, ChangesPlacesApartAndTakesBackTheVain) {
    const TInkWay vWay = Wave([](double) { return 8; });
    const auto vFirst = FitCentre(vWay, TOLERANCE, 1);
    ASSERT_GE(vFirst.size(), 8U);
    const auto middleOf = [&](size_t n) { return (vFirst[n].range.idxFirst + vFirst[n].range.idxLast) / 2; };
    CInkMend mend(vWay, TOLERANCE, vFirst);
    ASSERT_TRUE(mend.Change({middleOf(1), middleOf(6)}));
    const auto vDivided = mend.GetCurves();
    EXPECT_EQ(vFirst.size() + 2, vDivided.size());
    EXPECT_EQ(vFirst.size() - 2, CountSame(vFirst, vDivided));
    // The first place got better; the second one is fitted otherwise, from what it was.
    ASSERT_TRUE(mend.Change({middleOf(6)}));
    const auto vAgain = mend.GetCurves();
    EXPECT_EQ(vDivided[1], vAgain[1]);
    EXPECT_EQ(vDivided[2], vAgain[2]);
    EXPECT_EQ(0U, CountSame({vDivided[7], vDivided[8]}, vAgain));
    for (size_t n = 1; n < vAgain.size(); ++n) {
        EXPECT_EQ(vAgain[n - 1].cubic.p3, vAgain[n].cubic.p0);
        EXPECT_EQ(vAgain[n - 1].range.idxLast, vAgain[n].range.idxFirst);
    }
    // When nothing helps the curves are those before.
    int nRounds = 0;
    while (mend.Change({middleOf(6)}) && nRounds < 20) ++nRounds;
    EXPECT_LT(nRounds, 20);
    EXPECT_EQ(vFirst.size() - 1, CountSame(vFirst, mend.GetCurves()));
    EXPECT_FALSE(CInkMend(vWay, TOLERANCE, vFirst).Change({}));
}

TEST(InkMend, TurnsAreFittedWithTheCurvesBesideThem) {
    TInkWay vWay;
    for (int n = 0; n <= 200; ++n) vWay.push_back({{n * 2.0, 0}, 20, 255});
    for (int n = 1; n <= 200; ++n) vWay.push_back({{400 - n * 1.6, n * 1.2}, 20, 255});
    MeasureWay(vWay, TOLERANCE);
    const auto vFirst = FitCentre(vWay, TOLERANCE, 1);
    ASSERT_EQ(3U, vFirst.size());
    ASSERT_TRUE(vFirst[1].IsTurn());
    CInkMend mend(vWay, TOLERANCE, vFirst);
    std::vector<TInkCubic> vTurns{vFirst[1].cubic};
    for (int n = 0; n < 4; ++n) {
        ASSERT_TRUE(mend.Change({200})) << n;
        const auto& vCurves = mend.GetCurves();
        ASSERT_EQ(3U, vCurves.size()) << n;
        if (std::ranges::find(vTurns, vCurves[1].cubic) == vTurns.end()) vTurns.push_back(vCurves[1].cubic);
        EXPECT_EQ(vCurves[0].cubic.p3, vCurves[1].cubic.p0) << n;
        EXPECT_EQ(vCurves[1].cubic.p3, vCurves[2].cubic.p0) << n;
        EXPECT_EQ(vFirst[0].cubic.p0, vCurves[0].cubic.p0) << n;
        EXPECT_EQ(vFirst[2].cubic.p3, vCurves[2].cubic.p3) << n;
    }
    EXPECT_GE(vTurns.size(), 3U);
}

TEST(InkWidths, AreFittedAgainNearChangesOnly) {
    const TInkWay vWay = Wave([](double d) { return 20 + 10 * std::sin(d * 0.01); });
    const auto vFirst = FitCentre(vWay, TOLERANCE, 1);
    CInkWidths widths(vWay, TOLERANCE), whole(vWay, TOLERANCE);
    widths.Fit(vFirst, {});
    const auto vBefore = widths.GetMarks();
    ASSERT_GE(vBefore.size(), 7U);
    EXPECT_FALSE(widths.Refit(vFirst, {}, {}, 8));
    EXPECT_EQ(vBefore, widths.GetMarks());
    // One curve becomes two: marks before it keep their places, those behind move by one, others are found
    // anew.
    const size_t nCurve = vBefore[vBefore.size() / 2].t / BEZIER_T_RESOLUTION;
    const auto halves = DivideCurve(vFirst[nCurve], vWay, TOLERANCE);
    ASSERT_TRUE(halves);
    auto vCurves = vFirst;
    vCurves[nCurve] = (*halves)[1];
    vCurves.insert(vCurves.begin() + static_cast<std::ptrdiff_t>(nCurve), (*halves)[0]);
    widths.Refit(vCurves, {}, {}, 8);
    const auto& vAfter = widths.GetMarks();
    size_t nOthers = 0;
    for (TFittedMark mark : vBefore) {
        const size_t n = mark.t / BEZIER_T_RESOLUTION;
        if (n == nCurve) continue;
        ++nOthers;
        if (n > nCurve) mark.t += BEZIER_T_RESOLUTION;
        EXPECT_EQ(1, std::ranges::count(vAfter, mark)) << mark.t;
    }
    ASSERT_LT(nOthers, vBefore.size());
    EXPECT_GE(vAfter.size(), vBefore.size());
    EXPECT_TRUE(std::ranges::is_sorted(vAfter, {}, &TFittedMark::t));
    // A mark near a fault goes; others come where its share asks for it.
    const size_t idxFault = vFirst[2].range.idxFirst;
    widths.Fit(vFirst, {});
    const auto isBesideFault = [&](const TFittedMark& mark) {
        return mark.t > BEZIER_T_RESOLUTION && mark.t < 3 * BEZIER_T_RESOLUTION;
    };
    TInkWay vStrict = vWay;
    for (TWayPoint& point : vStrict) point.dShare = 0.01;
    CInkWidths strict(vStrict, TOLERANCE);
    strict.Fit(vFirst, {});
    const auto vRough = strict.GetMarks();
    EXPECT_GT(vRough.size(), vBefore.size());
    for (TWayPoint& point : vStrict) point.dShare = 1;
    EXPECT_TRUE(strict.Refit(vFirst, {}, {idxFault}, 40));
    EXPECT_LT(std::ranges::count_if(strict.GetMarks(), isBesideFault),
              std::ranges::count_if(vRough, isBesideFault));
    EXPECT_EQ(vRough.back(), strict.GetMarks().back());
    // A tip that is given up needs marks from its end on.
    const TInkWay vTaper = Wave([](double d) { return 20 * SharpShare(std::min(d / 200, 1.0)); });
    const auto vCentre = FitCentre(vTaper, TOLERANCE, 1);
    CInkWidths taper(vTaper, TOLERANCE);
    taper.Fit(vCentre, {true, false});
    EXPECT_GT(taper.GetMarks().front().t, 0U);
    EXPECT_TRUE(taper.Refit(vCentre, {}, {}, 8));
    EXPECT_EQ(taper.GetMarks().front().t, 0U);
}

} // namespace
