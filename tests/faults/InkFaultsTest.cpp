#include "core/PathFit/InkCorrection.h"
#include "tests/faults/FailingMemory.h"
#include "tests/support/Hands.h"
#include "tests/support/InkDistance.h"

#include <gtest/gtest.h>

#include <set>

TEST(InkFaults, AStrokeThatCannotBeFittedIsRoughButThere) {
    for (const THand& hand : AllHands()) {
        // Sharp and repeated corners, changing widths, a dot.
        if (!std::set<std::string>{"zigzag", "retrace", "swell", "tap"}.contains(hand.strName)) continue;
        SCOPED_TRACE(hand.strName);
        const TInkSamples samples{.input = {.vPoints = hand.vPoints}, .param = hand.param, .uTolerance = 35};
        // Number 1 is the copy of the samples for the call, 2 is before the fit and the others in it.
        for (const uint64_t uFail : {2, 80, 120}) {
            boost::shared_ptr<COpenPathObject> spPath;
            {
                const CFailingMemory memory(uFail);
                spPath = MakeInk(samples);
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
