#include "core/PathErase/ErasePlan.h"
#include "tests/support/PathSession.h"
#include "tests/support/Paths.h"

namespace {

using TStretches = std::vector<TLineStretch>;

/// A straight stroke of half-width 8 with ends of one kind; a parameter step of 0x10000 is its whole length.
boost::shared_ptr<COpenPathObject> MakeLine(CPoint ptFrom, CPoint ptTo, EPathTerm term = TERM_FLAT,
                                            uint32_t uWidth = 8) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    const CPoint third{(ptTo.x - ptFrom.x) / 3, (ptTo.y - ptFrom.y) / 3};
    AddAnchor(spPath->GetStream(), ptFrom, {}, third);
    AddAnchor(spPath->GetStream(), ptTo, {-third.x, -third.y});
    spPath->GetStream().SetWidth(uWidth);
    for (const bool b : {true, false}) spPath->GetStream().SetTerm(CreateOpenPathTerm(term, b));
    spPath->Update();
    return spPath;
}

class ErasePlan : public testing::Test {
protected:
    ErasePlan() : m_spCanvas(CreateCanvas({400, 300})), m_spLayer(CreateVectorLayer(m_spCanvas)) {}
    void Add(const boost::shared_ptr<CPathObject>& spPath) { m_spLayer->InsertPath(spPath); }
    std::vector<TErasedPath> Plan(CPoint pt, EEraseMode mode, double dRadius = 16) {
        const TVector at{double(pt.x), double(pt.y)};
        CStrokeLines lines;
        return PlanErase(*m_spLayer, lines, {{at, at}, dRadius}, mode);
    }
    // From where to where the only stroke there is taken up to its crossings, in x.
    std::pair<int, int> Crossings(CPoint pt) {
        const auto vErased = Plan(pt, ERASE_TO_CROSSING);
        if (vErased.size() != 1 || vErased[0].vStretches.size() != 1) return {-1, -1};
        const TLineStretch& stretch = vErased[0].vStretches[0].stretch;
        const auto x = [&](uint32_t t) { return static_cast<int>(std::lround(vErased[0].spLine->At(t).x)); };
        return {x(stretch.tFirst), x(stretch.tLast)};
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    boost::shared_ptr<CVectorLayerBuffer> m_spLayer;
};

using TSpan = std::pair<int, int>;

} // namespace

TEST_F(ErasePlan, TheTouchedStretchGoesToTheCrossingsOnBothSides) {
    Add(MakeLine({160, 800}, {3000, 800}));
    for (const int x : {800, 1200, 2000}) Add(MakeLine({x, 400}, {x, 1200}));
    EXPECT_EQ(Crossings({1000, 810}), TSpan(800, 1200));
    EXPECT_EQ(Crossings({1600, 790}), TSpan(1200, 2000));
    const TErasedStretch erased = Plan({1600, 790}, ERASE_TO_CROSSING)[0].vStretches[0];
    EXPECT_TRUE(erased.before.type == TERM_FLAT && erased.behind.type == TERM_FLAT);
    EXPECT_EQ(Crossings({300, 800}), TSpan(160, 800));
    EXPECT_EQ(Crossings({2600, 800}), TSpan(2000, 3000));
    EXPECT_EQ(Crossings({1000, 825}), TSpan(-1, -1)) << "beside the paint";
}

TEST_F(ErasePlan, AGapOfTwoPixelsIsACrossingAndThreeAreNot) {
    // The line's paint ends at 792; the other's at its flat end or at its round cap.
    for (const int nGap : {0, 8, 16, 17, 24})
        for (const EPathTerm term : {TERM_FLAT, TERM_ROUND, TERM_SHARP})
            for (const int nSlant : {0, 200}) {
                m_spLayer = CreateVectorLayer(m_spCanvas);
                Add(MakeLine({160, 800}, {3000, 800}));
                const int nCap = term == TERM_ROUND ? 8 : 0;
                Add(MakeLine({1200 - nSlant, 200}, {1200, 792 - nGap - nCap}, term));
                const TSpan span = Crossings({2000, 800});
                if (nGap <= 16)
                    EXPECT_NEAR(span.first, 1200, nSlant ? 12 : 1) << nGap << ' ' << term;
                else
                    EXPECT_EQ(span.first, 160) << nGap << ' ' << term;
                EXPECT_EQ(span.second, 3000);
                const auto vRest = MakeRest(Plan({2000, 800}, ERASE_TO_CROSSING)[0]);
                if (nGap == 0 || nGap > 16) continue;
                const auto& piece = dynamic_cast<const COpenPathObject&>(*vRest.at(0));
                EXPECT_EQ(piece.GetStream().GetTerm(false)->GetType(), TERM_ROUND);
            }
}

TEST_F(ErasePlan, AStrokeCrossesItselfAndItsOwnOpenLoop) {
    // A loop: to the right, round, and back down through itself at 1200.
    const auto spLoop = boost::make_shared<COpenPathObject>();
    AddAnchor(spLoop->GetStream(), {400, 800}, {}, {500, 0});
    AddAnchor(spLoop->GetStream(), {2000, 800}, {-300, 0}, {300, 0});
    AddAnchor(spLoop->GetStream(), {1600, 300}, {400, 0}, {-400, 0});
    AddAnchor(spLoop->GetStream(), {1200, 1200}, {0, -300});
    spLoop->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, true));
    spLoop->Update();
    Add(spLoop);
    const auto vErased = Plan({2000, 800}, ERASE_TO_CROSSING);
    ASSERT_EQ(vErased.size(), 1u);
    const TLineStretch stretch = vErased[0].vStretches[0].stretch;
    const auto from = vErased[0].spLine->At(stretch.tFirst), to = vErased[0].spLine->At(stretch.tLast);
    EXPECT_NEAR(from.x, to.x, 2);
    EXPECT_NEAR(from.y, 800, 2);
    EXPECT_NEAR(to.y, 800, 2);
    const auto vRest = MakeRest(vErased[0]);
    ASSERT_EQ(vRest.size(), 2u);
    // A circle whose end stops a pixel short of its beginning: only what stands out beyond it goes.
    m_spLayer = CreateVectorLayer(m_spCanvas);
    const auto spCircle = boost::make_shared<COpenPathObject>();
    AddAnchor(spCircle->GetStream(), {800, 200}, {}, {0, 500});
    AddAnchor(spCircle->GetStream(), {1200, 1400}, {-300, 0}, {300, 0});
    AddAnchor(spCircle->GetStream(), {1600, 800}, {0, 300}, {0, -300});
    AddAnchor(spCircle->GetStream(), {824, 600}, {200, 0});
    for (const bool b : {true, false}) spCircle->GetStream().SetTerm(CreateOpenPathTerm(TERM_FLAT, b));
    spCircle->Update();
    Add(spCircle);
    const auto vEnd = Plan({800, 250}, ERASE_TO_CROSSING);
    ASSERT_EQ(vEnd.size(), 1u);
    EXPECT_FALSE(vEnd[0].bWhole);
    EXPECT_EQ(vEnd[0].vStretches[0].stretch.tFirst, 0u);
    EXPECT_NEAR(vEnd[0].spLine->At(vEnd[0].vStretches[0].stretch.tLast).y, 600, 12);
}

TEST_F(ErasePlan, AStrokeThatPassesByIsACrossingAndOneBesideIsNot) {
    // A bow that comes near the line at 1600, its paint within a pixel; hatching that runs beside it.
    Add(MakeLine({160, 800}, {3000, 800}));
    const auto spBow = boost::make_shared<COpenPathObject>();
    AddAnchor(spBow->GetStream(), {1400, 400}, {}, {0, 200});
    AddAnchor(spBow->GetStream(), {1600, 776}, {-100, 0}, {100, 0});
    AddAnchor(spBow->GetStream(), {1800, 400}, {0, 200});
    spBow->GetStream().SetWidth(8);
    spBow->Update();
    Add(spBow);
    const TSpan span = Crossings({2400, 800});
    EXPECT_NEAR(span.first, 1600, 30);
    EXPECT_EQ(span.second, 3000);
    Add(MakeLine({200, 818}, {2900, 818}));
    EXPECT_EQ(Crossings({2400, 785}).second, 3000) << "the other ends beside it";
    Add(MakeLine({300, 830}, {300, 600}));
    // An end that would stand out by two pixels at most is no piece.
    Add(MakeLine({2980, 600}, {2980, 1000}));
    EXPECT_EQ(Crossings({2400, 785}).second, 3000);
}

TEST_F(ErasePlan, PiecesEndAtTheCrossingHiddenByItAndKeepMarks) {
    Add(MakeStroke()); // cuts at 0x18000 and 0x1A000
    const auto vTouched = Plan({600, 300}, ERASE_TOUCHED, 20);
    ASSERT_EQ(vTouched.size(), 1u);
    const auto vRest = MakeRest(vTouched[0]);
    ASSERT_EQ(vRest.size(), 2u);
    const auto& tail = dynamic_cast<const COpenPathObject&>(*vRest[1]).GetStream();
    EXPECT_EQ(tail.GetTerm(false)->GetType(), TERM_FLAT);
    EXPECT_EQ(dynamic_cast<const COpenPathFlatTerm&>(*tail.GetTerm(false)).GetAngle()[STATE_COMMITTED], 75u);
    EXPECT_EQ(tail.GetTransPoints().size(), 2u);
    // Up to a crossing what is hidden behind the touched place goes too, but not what follows it.
    const auto vCrossing = Plan({600, 300}, ERASE_TO_CROSSING, 20);
    const auto vLast = MakeRest(vCrossing[0]);
    ASSERT_EQ(vLast.size(), 1u);
    EXPECT_TRUE(dynamic_cast<const COpenPathObject&>(*vLast[0]).GetStream().GetTransPoints().empty());
    EXPECT_EQ(vCrossing[0].vStretches[0].stretch.tLast, 0x1A000u);
    // A slanted crossing cuts along the other stroke: nothing stands out on its far side.
    m_spLayer = CreateVectorLayer(m_spCanvas);
    Add(MakeLine({160, 800}, {3000, 800}, TERM_FLAT, 24));
    Add(MakeLine({1100, 600}, {1300, 1000}, TERM_FLAT, 4));
    const auto vSlanted = MakeRest(Plan({2000, 800}, ERASE_TO_CROSSING)[0]);
    ASSERT_EQ(vSlanted.size(), 1u);
    const auto hasInk = [&](int x, int y) { return vSlanted[0]->HasInkAt({x, y}); };
    EXPECT_TRUE(hasInk(1180, 780) && hasInk(1202, 818) && hasInk(1195, 800));
    EXPECT_FALSE(hasInk(1202, 780) || hasInk(1216, 800) || hasInk(1224, 820));
}

TEST_F(ErasePlan, WhatIsTouchedIsThePaintOfThatSideAndOfTheEnds) {
    // 40 wide on its left side, above, nothing below; a cap that stands out by 120; hidden from 1480 to 1960.
    const auto spPath = MakeEvenStroke({1000, 800});
    COpenPathStream& stream = spPath->GetStream();
    const auto spMark = stream.AddWidthPoint(0x8000);
    spMark->SetMultiple(SIDE_RIGHT, CDualValue<uint32_t>(0));
    for (const uint32_t t : {0x10000u, 0x20000u}) stream.AddTransPoint(t);
    const auto spCap = boost::make_shared<COpenPathRoundTerm>(true);
    spCap->SetGrow(CDualValue<uint32_t>(6 * FIXED_ONE));
    stream.SetTerm(spCap);
    spPath->Update();
    Add(spPath);
    const auto touches = [&](CPoint pt) { return !Plan(pt, ERASE_TOUCHED).empty(); };
    EXPECT_TRUE(touches({1240, 750}) && touches({1240, 810}) && touches({890, 800}));
    EXPECT_FALSE(touches({1240, 740}) || touches({1240, 850}) || touches({840, 800}) || touches({1700, 790}));
    const auto vEdge =
        Plan({1480, 790}, ERASE_TOUCHED); // the hidden stretch stays out, and alone is no piece
    ASSERT_EQ(vEdge.size(), 1u);
    EXPECT_EQ(vEdge[0].vStretches[0].stretch.tLast, 0x10000u);
    EXPECT_EQ(MakeRest(vEdge[0]).size(), 1u);
    // A piece of less than half a pixel does not stay.
    Add(MakeLine({160, 1600}, {3000, 1600}));
    EXPECT_EQ(MakeRest(Plan({186, 1600}, ERASE_TOUCHED)[0]).size(), 1u);
    EXPECT_EQ(MakeRest(Plan({190, 1600}, ERASE_TOUCHED)[0]).size(), 2u);
}
