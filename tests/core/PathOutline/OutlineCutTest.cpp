#include "tests/support/Strokes.h"

#include <ctime>

namespace {

constexpr uint32_t ONE = BEZIER_T_RESOLUTION;

struct TCut {
    uint32_t t;
    uint32_t uAngle = 90;
};

void SetCuts(COpenPathObject& path, const std::vector<TCut>& vCuts) {
    path.GetStream().SetTransPoints({});
    for (const TCut& cut : vCuts)
        path.GetStream().AddTransPoint(cut.t)->SetAngle(CDualValue<uint32_t>(cut.uAngle));
    path.Update();
}

// A level stroke along y = 100, 10 pixels wide, whose parameter runs evenly from x = 25 to 250.
boost::shared_ptr<COpenPathObject> MakeLevel() {
    const auto spPath = MakePath({{{200, 800}, {600, 0}}, {{2000, 800}, {600, 0}}}, 40);
    for (const bool bBegin : {true, false})
        spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, bBegin));
    return spPath;
}

struct TExpected {
    int x, y, nCoverage;
};

void ExpectPixels(const COpenPathObject& path, const std::vector<TExpected>& vExpected) {
    const auto v = CoverageOf(path);
    for (const auto& [x, y, n] : vExpected) EXPECT_NEAR(At(v, x, y), n, 16) << x << ' ' << y;
}

// How much of the centre line outside a pair of cuts, and out of their reach, is lost by them.
double LostShare(COpenPathObject& path, const std::vector<TCut>& vCuts) {
    COpenPathStream& stream = path.GetStream();
    SetCuts(path, {});
    const auto vWhole = CoverageOf(path);
    uint32_t uReach = 3 * stream.GetWidth();
    for (const auto& spPoint : stream.GetWidthPoints())
        uReach = std::max(uReach, 4 * spPoint->GetWidth(SIDE_LEFT, STATE_COMMITTED));
    SetCuts(path, vCuts);
    const auto vCut = CoverageOf(path);
    int nAll = 0, nLost = 0;
    for (uint32_t t = 0; t <= (stream.ControlPointCount() - 1) * ONE; t += 0x100) {
        const CPoint pt = stream.PointAt(t, STATE_COMMITTED);
        const auto isNear = [&](const TCut& cut) {
            return LengthDown(pt - stream.PointAt(cut.t, STATE_COMMITTED)) < uReach;
        };
        const bool bHidden = t >= vCuts.front().t && t <= vCuts.back().t;
        const int nWhole = At(vWhole, pt.x / 8, pt.y / 8);
        if (bHidden || isNear(vCuts.front()) || isNear(vCuts.back()) || nWhole < 128) continue;
        ++nAll;
        nLost += At(vCut, pt.x / 8, pt.y / 8) < nWhole / 2;
    }
    return nAll ? nLost / static_cast<double>(nAll) : 0;
}

} // namespace

TEST(OutlineCut, ShortHandlesDoNotTurnTheCut) {
    // The middle anchor's handle of one unit leads across the level stroke; the cut there slants by the
    // stroke itself.
    const auto spPath =
        MakePath({{{200, 800}, {600, 0}}, {{1120, 800}, {0, 1}}, {{2000, 800}, {600, 0}}}, 40);
    SetCuts(*spPath, {{ONE, 45}});
    ExpectPixels(*spPath, {{141, 96, 255}, {146, 96, 0}, {131, 103, 255}, {139, 103, 0}});
}

TEST(OutlineCut, NothingIsLostThatIsNotCut) {
    std::mt19937 random(11);
    for (int n = 0; n < 40; ++n) {
        const auto spPath = MakePath(HandKnots(random, 5), 16 + random() % 24);
        for (const bool bBegin : {true, false})
            spPath->GetStream().SetTerm(CreateOpenPathTerm(1 + random() % 3, bBegin));
        const uint32_t t = ONE / 2 + random() % (2 * ONE), tBehind = t + ONE / 2 + random() % (ONE / 2);
        const uint32_t uAnchor = (1 + random() % 2) * ONE;
        const std::vector<std::vector<TCut>> vKinds{
            {{t}, {tBehind}},
            {{t, 20}, {tBehind, 20}},
            {{t, 160}, {tBehind, 20}},
            {{0}, {ONE}},
            {{3 * ONE}, {4 * ONE}},
            {{uAnchor}, {uAnchor + ONE}},
            {{uAnchor}, {uAnchor, 50}},
            {{0, 20}, {ONE, 130}},
            {{t}, {t}},
            {{t, 5}, {tBehind, 175}},
            {{3 * ONE, 160}, {4 * ONE, 160}},
        };
        for (const bool bZero : {false, true}) {
            if (bZero) {
                for (const uint32_t tEnd : {ONE / 8, 4 * ONE - ONE / 8})
                    AddWidth(spPath->GetStream(), tEnd, FIXED_ONE, FIXED_ONE);
                AddWidth(spPath->GetStream(), t, 0, 0);
            }
            for (size_t i = 0; i < vKinds.size(); ++i)
                EXPECT_EQ(LostShare(*spPath, vKinds[i]), 0) << n << ' ' << i << ' ' << bZero;
        }
    }
}

TEST(OutlineCut, ASlantedCutMeetsBothSidesAndOneThatMissesThemIsSquare) {
    const auto spPath = MakeLevel();
    // From x = 81.25 the upper side is cut 14 pixels farther, the lower one 14 before.
    SetCuts(*spPath, {{ONE / 4, 20}, {3 * ONE / 4, 160}});
    ExpectPixels(*spPath, {{86, 96, 255}, {95, 96, 0}, {67, 103, 255}, {76, 103, 0}});
    ExpectPixels(*spPath, {{180, 96, 0}, {188, 96, 255}, {199, 103, 0}, {208, 103, 255}});
    SetCuts(*spPath, {{ONE / 4, 10}, {3 * ONE / 4, 170}});
    for (const int y : {96, 103})
        ExpectPixels(*spPath, {{78, y, 255}, {84, y, 0}, {190, y, 0}, {196, y, 255}});
    // The second cut of the pair misses: above, its own point at x = 141 is already cut off.
    SetCuts(*spPath, {{ONE / 2, 20}, {0x8400, 10}});
    ExpectPixels(*spPath, {{143, 99, 0}, {150, 99, 255}, {120, 103, 255}, {134, 103, 0}, {147, 103, 255}});
    SetCuts(*spPath, {{ONE / 2, 150}, {0x8400, 30}});
    ExpectPixels(*spPath, {{129, 97, 255}, {139, 97, 0}, {150, 97, 255}, {140, 103, 255}, {149, 103, 255}});
}

TEST(OutlineCut, OnACornerTheMissedSideEndsWhereThePieceBehindBegins) {
    // A right angle at (100, 100) with its mitre; a cut along the second arm misses both sides.
    const auto spPath = MakePath({{{240, 800}, {}}, {{800, 800}, {}}, {{800, 1600}, {}}}, 40);
    SetCuts(*spPath, {{ONE, 1}, {3 * ONE / 2}});
    ExpectPixels(*spPath, {{103, 97, 255}, {97, 97, 255}, {103, 103, 0}, {100, 130, 0}, {100, 180, 255}});
}

TEST(OutlineCut, AtAnEndOnlyARoundCapIsLeft) {
    // A bent stroke of 2250 pixels, long enough for the least part of it to be seen.
    for (const EPathTerm term : {TERM_SHARP, TERM_ROUND, TERM_FLAT}) {
        for (const bool bBegin : {true, false}) {
            const CPoint ptFrom = bBegin ? CPoint{200, 800} : CPoint{-16000, 200};
            const auto spPath = MakePath({{ptFrom, {6000, 0}}, {ptFrom + CPoint{18000, 600}, {6000, 0}}}, 40);
            spPath->GetStream().SetTerm(CreateOpenPathTerm(term, bBegin));
            SetCuts(*spPath,
                    bBegin ? std::vector<TCut>{{0}, {ONE / 20}} : std::vector<TCut>{{ONE - ONE / 20}, {ONE}});
            ExpectPixels(*spPath, {{bBegin ? 22 : 252, 100, term == TERM_ROUND ? 255 : 0}});
            const auto v = CoverageOf(*spPath);
            EXPECT_GT(At(v, bBegin ? 142 : 132, 100), 20) << term;
            const int nCap = term == TERM_ROUND ? 3 : 0; // the pixels that it reaches by softening
            for (int x = bBegin ? 23 + nCap : 144; x < (bBegin ? 130 : 252 - nCap); ++x)
                EXPECT_EQ(At(v, x, 100), 0) << x;
        }
    }
}

TEST(OutlineCut, TwoCutsAtOnePlaceCancelEachOther) {
    std::mt19937 random(12);
    const auto spPath = MakePath(HandKnots(random, 5), 40);
    const auto outline = [&](const std::vector<TCut>& vCuts) {
        SetCuts(*spPath, vCuts);
        return spPath->GetStream().GetOutline(STATE_COMMITTED);
    };
    EXPECT_EQ(outline({{ONE, 40}, {ONE, 120}}), outline({}));
    EXPECT_EQ(outline({{0}, {ONE, 40}, {ONE}, {2 * ONE}}), outline({{0}, {2 * ONE}}));
    EXPECT_EQ(outline({{4 * ONE}, {5 * ONE, 30}}), outline({})); // both are held at the end
}

TEST(OutlineCut, WhereAStrokeCrossesItselfOnlyOneBranchIsCut) {
    // The last branch runs along y = 100 and crosses the first one, whose side lies nearer to the cut than
    // its own.
    const auto spPath = MakePath(
        {{{480, 480}, {}}, {{1600, 1600}, {}}, {{240, 1600}, {}}, {{240, 800}, {}}, {{1600, 800}, {}}}, 32);
    for (const bool bBegin : {true, false})
        spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_FLAT, bBegin));
    const auto parameterAt = [&](int x) {
        return spPath->GetStream().SearchNearPointOnPath({8 * x, 800}, STATE_COMMITTED).t;
    };
    SetCuts(*spPath, {{parameterAt(104)}, {parameterAt(150)}});
    for (const int n : {80, 100, 104, 110, 130, 160, 190}) ExpectPixels(*spPath, {{n, n, 255}});
    for (const int x : {40, 70, 101, 153, 190}) ExpectPixels(*spPath, {{x, 99, 255}});
    ExpectPixels(*spPath, {{30, 150, 255}, {100, 200, 255}, {120, 99, 0}, {147, 99, 0}});
}

TEST(OutlineCut, ASideThatTheLineMeetsTwiceIsCutWhereItIsMetFirst) {
    // A tight half turn, of which a slanted line crosses the inner side's curve on its way in and out.
    const auto spPath = MakePath({{{1235, 1127}, {47, 154}}, {{1070, 1123}, {54, -151}}}, 84);
    for (const bool bBegin : {true, false})
        spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_FLAT, bBegin));
    SetCuts(*spPath, {{0}, {46480, 14}});
    ExpectPixels(*spPath, {{128, 141, 255}, {138, 147, 0}});
}
