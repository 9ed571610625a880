#include "core/PathFit/InkCorrection.h"
#include "core/PathFit/InkFit.h"
#include "tests/faults/FailingMemory.h"
#include "tests/support/Hands.h"
#include "tests/support/InkDistance.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <set>

TEST(InkFaults, AStrokeThatCannotBeFittedIsRoughButThere) {
    for (const THand& hand : AllHands()) {
        // Sharp and repeated corners, changing widths, a dot.
        if (!std::set<std::string>{"zigzag", "retrace", "swell", "tap"}.contains(hand.strName)) continue;
        SCOPED_TRACE(hand.strName);
        const TInkSamples samples{.input = {.vPoints = hand.vPoints}, .param = hand.param, .uTolerance = 35};
        // The first is before the fit and the others in it.
        for (const uint64_t uFail : {1, 80, 120}) {
            boost::shared_ptr<COpenPathObject> spPath;
            {
                const CFailingMemory memory(uFail);
                spPath = MakeInkOrRough(samples);
            }
            ASSERT_TRUE(spPath);
            EXPECT_TRUE(spPath->GetStream().GetSamples());
            EXPECT_GE(spPath->GetStream().GetWidth(), 10u) << "path units";
            if (uFail != 120) continue;
            const auto vLine =
                DrawnLine(ControlPointsOf(samples.input, hand.param.CurveStrength), hand.param);
            EXPECT_LE(CInkDistance(vLine, spPath->GetStream().GetShape(STATE_COMMITTED)).Measure().dNearly,
                      8);
            EXPECT_GT(spPath->GetStream().GetControlPoints().size(), hand.strName == "tap" ? 1u : 80u)
                << "the fit needs fewer";
        }
    }
}

TEST(InkFaults, AShortWideStrokeIsRoughFromEndToEnd) {
    const std::vector<TInkDisc> vLine{{0, 0, 40, 255}, {9, 0, 40, 255}, {18, 0, 40, 255}};
    const auto spPath = MakeRoughInkPath(vLine);
    EXPECT_LE(CInkDistance(vLine, spPath->GetStream().GetShape(STATE_COMMITTED)).Measure().dMost, 8);
}

TEST(InkFaults, ACorrectionThatCannotBeFittedLeavesTheStroke) {
    const THand hand = AllHands().front();
    const auto spPath = MakeInk({.input = {.vPoints = hand.vPoints}, .param = hand.param, .uTolerance = 35});
    const TBytes vBefore = BytesOf(*spPath);
    for (const uint64_t uFail : {1, 80, 120}) {
        const CFailingMemory memory(uFail);
        EXPECT_THROW(CorrectInk(spPath->GetStream(), {.uSmoothing = {}, .uTolerance = 75}), std::bad_alloc);
    }
    EXPECT_EQ(BytesOf(*spPath), vBefore);
}
