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
            }
}
