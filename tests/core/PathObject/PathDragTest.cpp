#include "tests/support/Paths.h"

namespace {

using TLivePoint = boost::shared_ptr<CDualValue<CPoint>>;
using TAnyPoint = boost::shared_ptr<CPathControlPointBase>;

void Drag(const TLivePoint& spCopy, CPoint pt) { (*spCopy)[STATE_LIVE] = pt; }
void DragBy(const TLivePoint& spCopy, CPoint pt) { (*spCopy)[STATE_LIVE] = (*spCopy)[STATE_LIVE] + pt; }

// In a window that shows path units as pixels, with the handles of all anchors or of none.
TPathPick PickAt(CPoint pt, bool bAllHandles = true) {
    TPathPick pick{[](CPoint p) { return p; }, pt, pt};
    pick.selection.bAllHandles = bAllHandles;
    return pick;
}

struct TCapture : IPathDevice {
    void Line(CPoint, CPoint, TColor, bool) override {}
    void Square(CPoint center, int, TColor, TColor) override { vSquares.push_back(center); }
    void PolyBezier(const std::vector<CPoint>& vPoints, TColor) override { vCurves.push_back(vPoints); }
    std::vector<CPoint> vSquares;
    std::vector<std::vector<CPoint>> vCurves;
};

} // namespace

TEST(PathDrag, ASymmetricHandleTurnsTheOther) {
    auto spPoint = boost::make_shared<CPathControlPoint>(CPoint{100, 100});
    spPoint->SetBack(CDualValue<CPoint>({-30, -40}));
    spPoint->SetFore(CDualValue<CPoint>({59, 11})); // a little more than 60 long
    Drag(spPoint->DragBackHandle(true), {0, -100});
    EXPECT_EQ(spPoint->GetFore(STATE_LIVE), (CPoint{0, 60}));
    EXPECT_EQ(spPoint->GetBack(STATE_LIVE), (CPoint{0, -100}));
    EXPECT_EQ(spPoint->GetFore(STATE_COMMITTED), (CPoint{59, 11}));
    EXPECT_EQ(spPoint->GetBack(STATE_COMMITTED), (CPoint{-30, -40}));
    (*spPoint->DragBackHandle(true))[STATE_COMMITTED] = {-80, 60};
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
        EXPECT_EQ(spPoint->GetFore(state), (CPoint{48, -36}));
    Drag(spPoint->DragForeHandle(false), {7, 7});
    EXPECT_EQ(spPoint->GetBack(STATE_COMMITTED), (CPoint{-80, 60}));
    spPoint->DragForeHandle(true)->Set({});
    EXPECT_FALSE(spPoint->HasFore());
    EXPECT_EQ(spPoint->GetBack(STATE_COMMITTED), (CPoint{-80, 60}));
    TLivePoint spCopy = spPoint->DragForeHandle(true);
    EXPECT_TRUE(spPoint->HasFore() && *spCopy == CDualValue<CPoint>());
    spCopy.reset();
    EXPECT_FALSE(spPoint->HasFore());
    // A drag keeps its point alive; handles travel with the anchor.
    Drag(spPoint->DragAnchorPoint(false), {5, 6});
    EXPECT_EQ(spPoint->At(STATE_LIVE).anchor + spPoint->At(STATE_LIVE).back, (CPoint{5, -94}));
    spCopy = spPoint->DragAnchorPoint(false);
    const boost::weak_ptr<CPathControlPoint> wpPoint = spPoint;
    spPoint.reset();
    EXPECT_FALSE(wpPoint.expired());
    spCopy.reset();
    EXPECT_TRUE(wpPoint.expired());
}

TEST(PathDrag, WhatIsCommittedStaysWhileLiveValuesAreDragged) {
    int nDrag = 0;
    const auto check = [&](const auto& fnDo) {
        SCOPED_TRACE(++nDrag);
        const auto spPath = MakeStroke();
        COpenPathStream& stream = spPath->GetStream();
        const TBytes vBytes = BytesOf(*spPath);
        const auto vOutline = stream.GetOutline(STATE_COMMITTED);
        fnDo(stream);
        for (const bool bDrag : {true, false}) {
            bDrag ? spPath->UpdateDrag() : spPath->Update();
            EXPECT_NE(stream.GetOutline(STATE_LIVE), vOutline);
            EXPECT_EQ(stream.GetOutline(STATE_COMMITTED), vOutline);
        }
        EXPECT_EQ(BytesOf(*spPath), vBytes);
    };
    const auto anchor = [](auto& s, int n) { return *std::next(s.GetControlPoints().begin(), n); };
    const auto begin = [](auto& s) {
        return boost::static_pointer_cast<COpenPathRoundTerm>(s.GetTerm(true));
    };
    const auto end = [](auto& s) { return boost::static_pointer_cast<COpenPathFlatTerm>(s.GetTerm(false)); };
    check([&](auto& s) { DragBy(anchor(s, 1)->DragAnchorPoint(false), {30, 9}); });
    check([&](auto& s) { DragBy(anchor(s, 1)->DragBackHandle(true), {30, 90}); });
    check([&](auto& s) { DragBy(anchor(s, 2)->DragBackHandle(true), {0, -99}); }); // a new one
    check([&](auto& s) { Drag(s.GetWidthPoints()[0]->DragAnchorPoint(false), {90, 80}); });
    check([&](auto& s) { DragBy(s.GetWidthPoints()[0]->DragHandleImpl(true, true), {200, -300}); });
    check([](auto& s) { (*s.GetWidthPoints()[0]->LeftHandle())[STATE_LIVE] = 9; });
    check([&](auto& s) { Drag(s.GetTransPoints()[1]->DragAnchorPoint(false), {790, 380}); });
    check([&](auto& s) { DragBy(s.GetTransPoints()[1]->DragHandleImpl(true), {0, 500}); });
    check([&](auto& s) { DragBy(begin(s)->DragGrowHandle(false), {-90, 0}); });
    check([&](auto& s) { DragBy(end(s)->DragHandleImpl(true, true), {90, 200}); });
}

TEST(PathDrag, WidthsAreMultiplesInsideAndDistancesOutside) {
    const auto spPath = MakeLevelStroke(3);
    COpenPathStream& stream = spPath->GetStream();
    const auto spMark = stream.AddWidthPoint(0x8000), spOther = stream.AddWidthPoint(0x14000);
    spPath->Update();
    spMark->LeftHandle()->Set(50);
    EXPECT_EQ(spMark->GetMultiple(SIDE_LEFT)[STATE_COMMITTED], 0x14000u);
    spMark->RightHandle()->Set(1);
    EXPECT_EQ(spMark->GetMultiple(SIDE_RIGHT)[STATE_COMMITTED], 1638u); // 1638.4
    spMark->SetMultiple(SIDE_LEFT, CDualValue<uint32_t>(0xCCD));
    EXPECT_EQ((*spMark->LeftHandle())[STATE_LIVE], 2u); // 2.0005
    EXPECT_EQ(spMark->GetMultiple(SIDE_LEFT)[STATE_LIVE], 0xCCDu);
    // Marks stand at ten times the width: above the path on the left.
    const auto widths = [&](bool bLeft, bool bBoth, CPoint pt) {
        Drag(spMark->DragHandleImpl(bLeft, bBoth), pt);
        return std::pair(spMark->GetWidth(SIDE_LEFT, STATE_LIVE), spMark->GetWidth(SIDE_RIGHT, STATE_LIVE));
    };
    EXPECT_EQ(widths(true, false, {123, -250}), std::pair(25u, 1u));
    EXPECT_EQ(widths(false, true, {400, 300}), std::pair(30u, 30u));
    EXPECT_EQ(widths(false, false, {400, -300}), std::pair(30u, 0u));
    // A side that is missing is made.
    CSerializer chunk;
    chunk.SetTag(CPathWidthControlPoint::CHUNK_TAG, 0);
    for (const int n : {0x8000, -1, 0x10000}) chunk.WriteInt32(n);
    CDeserializer reader(chunk);
    spMark->Deserialize(reader);
    EXPECT_FALSE(spMark->HasSide(SIDE_LEFT));
    const auto spWidth = spMark->LeftHandle();
    EXPECT_TRUE(spMark->HasSide(SIDE_LEFT) && *spWidth == CDualValue<uint32_t>(0));
    // Marks neither pass nor meet each other, however often they try, nor do cuts.
    for (int n = 0; n < 3; ++n) {
        Drag(spMark->DragAnchorPoint(false), {1600, 50 + n});
        EXPECT_EQ(spMark->GetParameter()[STATE_LIVE], 0x13FFFu);
        EXPECT_EQ(spMark->GetParameter()[STATE_COMMITTED], 0x8000u);
        spPath->UpdateDrag();
    }
    for (int n = 0; n < 3; ++n) {
        (*spOther->DragAnchorPoint(false))[STATE_COMMITTED] = {100, n};
        EXPECT_EQ(spOther->GetParameter()[STATE_COMMITTED], 0x8001u);
        spPath->Update();
    }
    Drag(spOther->DragAnchorPoint(false), {1700, 0});
    EXPECT_EQ(spOther->GetParameter()[STATE_LIVE], 0x20000u);
    const auto spCut = stream.AddTransPoint(0x8000);
    stream.AddTransPoint(0x1C000);
    spPath->Update();
    Drag(spCut->DragAnchorPoint(false), {1700, 50});
    EXPECT_EQ(spCut->GetParameter()[STATE_LIVE], 0x1BFFFu);
    spCut->SetParameter(CDualValue<uint32_t>(0x8000));
    spPath->Update();
    // A cut is turned by either of its two marks.
    Drag(spCut->DragHandleImpl(true), {500, -100});
    EXPECT_EQ(spCut->GetAngle()[STATE_LIVE], 45u);
    Drag(spCut->DragHandleImpl(false), {500, 100});
    EXPECT_EQ(spCut->GetAngle()[STATE_LIVE], 135u);
    (*spCut->DragHandleImpl(true))[STATE_COMMITTED] = {300, -100};
    EXPECT_EQ(spCut->GetAngle()[STATE_COMMITTED], 135u);
}

TEST(PathDrag, EndsFollowTheirMarks) {
    const auto spPath = MakeLevelStroke(2);
    const auto spRound = boost::make_shared<COpenPathRoundTerm>(true);
    const auto spFlat = boost::make_shared<COpenPathFlatTerm>(false);
    spPath->GetStream().SetTerm(spRound);
    spPath->GetStream().SetTerm(spFlat);
    spPath->Update();
    Drag(spRound->DragGrowHandle(false), {-300, 80});
    EXPECT_EQ(spRound->GetGrow()[STATE_LIVE], 0x18000u);
    EXPECT_EQ(spRound->GetGrow()[STATE_COMMITTED], FIXED_ONE);
    spRound->GrowHandle()->Set(20);
    EXPECT_EQ(spRound->GetGrow()[STATE_COMMITTED], 0x8000u);
    Drag(spFlat->DragHandleImpl(true, false), {1100, -300}); // 424 away
    EXPECT_EQ(spFlat->GetAngle()[STATE_LIVE], 45u);
    EXPECT_EQ(spFlat->LeftPair()[STATE_LIVE], 42u);
    EXPECT_EQ(spFlat->RightPair()[STATE_LIVE], 40u);
    Drag(spFlat->DragHandleImpl(false, true), {800, 600});
    EXPECT_EQ(spFlat->GetAngle()[STATE_LIVE], 90u);
    EXPECT_EQ(spFlat->LeftPair()[STATE_LIVE], 60u);
    EXPECT_EQ(spFlat->RightPair()[STATE_LIVE], 60u);
    spFlat->LeftHandle()->Set(0);
    EXPECT_EQ(spFlat->GetMultiple(SIDE_LEFT)[STATE_COMMITTED], 10u);
}

TEST(PathDrag, ThePointerFindsTheTopmostPlace) {
    const auto spPath = MakeLevelStroke(3);
    COpenPathStream& stream = spPath->GetStream();
    const auto spMiddle = *std::next(stream.GetControlPoints().begin());
    spMiddle->SetFore(CDualValue<CPoint>({200, 0}));
    const auto spMark = stream.AddWidthPoint(0x10000);
    const auto spCut = stream.AddTransPoint(0x8000);
    stream.SetTerm(CreateOpenPathTerm(TERM_ROUND, true));
    stream.SetTerm(CreateOpenPathTerm(TERM_FLAT, false));
    spPath->Update();
    const auto expectHit = [&](CPoint pt, EPathHit kind, const TAnyPoint& spPoint) {
        const TPathHit hit = spPath->HitTest(PickAt(pt));
        EXPECT_EQ(hit.kind, kind) << pt.x << ' ' << pt.y;
        EXPECT_EQ(hit.spPoint, spPoint) << pt.x << ' ' << pt.y;
    };
    expectHit({802, -3}, HIT_ANCHOR, spMiddle);
    expectHit({803, -403}, HIT_NONE, {});
    expectHit({1000, 0}, HIT_FORE, spMiddle);
    expectHit({800, -400}, HIT_LEFT, spMark);
    expectHit({800, 400}, HIT_RIGHT, spMark);
    expectHit({400, 0}, HIT_ANCHOR, spCut);
    expectHit({400, -400}, HIT_LEFT, spCut);
    expectHit({400, 400}, HIT_RIGHT, spCut);
    expectHit({-200, 0}, HIT_GROW, stream.GetTerm(true));
    expectHit({1600, -400}, HIT_LEFT, stream.GetTerm(false));
    expectHit({1600, 400}, HIT_RIGHT, stream.GetTerm(false));
    expectHit({600, 4}, HIT_PATH, {});
    expectHit({600, 5}, HIT_NONE, {});
    // Only what is asked for; under the anchor lies the width mark.
    EXPECT_EQ(spPath->HitTestEx(PickAt({800, 0}), false, false, false, true).spPoint, spMark);
    EXPECT_EQ(spPath->HitTest(PickAt({1000, 0}, false)).kind, HIT_PATH); // handles that are not shown
    EXPECT_FALSE(spPath->HitTestEx(PickAt({-200, 0}), true, true, true, false));
    EXPECT_FALSE(spPath->HitTestEx(PickAt({600, 0}), true, true, false, true));
    EXPECT_EQ(spPath->HitTestEx(PickAt({1000, 0}), true, false, true, true).kind, HIT_PATH);
    // All of these are drawn where they are found.
    TCapture device;
    TPathSelection selection;
    selection.bAllHandles = true;
    spPath->DrawOutline(device, PickAt({}).mapper, selection, 0, true);
    EXPECT_EQ(device.vCurves.size(), 1 + stream.GetOutline(STATE_LIVE).size());
    EXPECT_EQ(device.vSquares.size(), 13u + 2u) << "a square each, and dots in those of marks and cuts";
    for (const CPoint pt : device.vSquares)
        EXPECT_TRUE(spPath->HitTestEx(PickAt(pt), true, true, false, true));
    EXPECT_EQ(std::ranges::count(device.vSquares, CPoint{400, 0}), 2);
    device.vSquares.clear();
    TPathPick pick = PickAt({1000, 0});
    pick.selection.bNoHandles = selection.bNoHandles = true;
    spPath->DrawOutline(device, pick.mapper, selection, 0, true);
    EXPECT_EQ(std::ranges::count(device.vSquares, CPoint{1000, 0}), 0);
    EXPECT_FALSE(spPath->HitTestEx(pick, true, true, false, true));
}

TEST(PathDrag, MarksComeBeforeHandlesAndSelectedAnchorsShowTheirs) {
    const auto spPath = MakeLevelStroke(3);
    COpenPathStream& stream = spPath->GetStream();
    const auto spFirst = stream.GetControlPoints().front(), spLast = stream.GetControlPoints().back();
    spLast->SetBack(CDualValue<CPoint>({-1600, 0})); // over the first anchor
    spFirst->SetFore(CDualValue<CPoint>({400, 0}));
    const auto spUnder = stream.AddWidthPoint(0x8000);
    spPath->Update();
    EXPECT_EQ(spPath->HitTest(PickAt({0, 0})).spPoint, spFirst);
    EXPECT_EQ(spPath->HitTestEx(PickAt({0, 0}), false, true, false, false).kind, HIT_BACK);
    // A handle of one width point lies on another one's place.
    const CPoint ptUnder = spUnder->GetPosition(STATE_LIVE);
    stream.AddWidthPoint(0x10000)->SetPlace(STATE_LIVE, ptUnder + CPoint{0, 400}, {100, 0});
    EXPECT_EQ(spPath->HitTest(PickAt(ptUnder)).spPoint, spUnder);
    EXPECT_EQ(spPath->HitTest(PickAt(ptUnder + CPoint{0, 800})).kind, HIT_RIGHT);
    TPathPick pick = PickAt({400, 0}, false);
    pick.selection.setSelected = {spLast.get()};
    EXPECT_EQ(spPath->HitTest(pick).kind, HIT_PATH);
    pick.selection.setSelected = {spFirst.get()};
    EXPECT_EQ(spPath->HitTest(pick).kind, HIT_FORE);
}

TEST(PathDrag, ACopyIsLetGoOfAlsoWhenItsPathHasNothingLeft) {
    const auto spPath = MakeLevelStroke(2);
    const auto spMark = spPath->GetStream().AddWidthPoint(0x8000);
    spPath->Update();
    TLivePoint spCopy = spMark->DragAnchorPoint(false);
    spCopy->Set({200, 7});
    CDeserializer reader(COpenPathObject().Serialize());
    spPath->Deserialize(reader);
    spCopy.reset();
    EXPECT_LT(spMark->GetParameter()[STATE_LIVE], 0x8000u);
    spCopy = spMark->DragAnchorPoint(false);
    spCopy->Set({300, 7});
    spCopy.reset();
    EXPECT_LT(spMark->GetParameter()[STATE_LIVE], 0x8000u);
}

TEST(PathDrag, AHandleIsStoredAsItWasSet) {
    // Every way to a component of -1, which the file cannot hold.
    const auto check = [](const auto& fnSet) {
        const auto spPath = MakeStroke();
        const auto spPoint = *std::next(spPath->GetStream().GetControlPoints().begin());
        fnSet(*spPath, *spPoint);
        spPath->Update();
        const auto vOutline = spPath->GetStream().GetOutline(STATE_COMMITTED);
        const CPoint fore = spPoint->GetFore(STATE_COMMITTED), back = spPoint->GetBack(STATE_COMMITTED);
        EXPECT_TRUE(fore.x != -1 && fore.y != -1 && back.x != -1 && back.y != -1);
        CDeserializer reader(spPath->Serialize());
        spPath->Deserialize(reader);
        EXPECT_EQ(spPath->GetStream().GetOutline(STATE_COMMITTED), vOutline);
    };
    check([](auto&, auto& point) { point.SetFore(CDualValue<CPoint>({-1, 90})); });
    check([](auto&, auto& point) { point.SetBack(CDualValue<CPoint>({-90, -1})); });
    check([](auto&, auto& point) { point.DragForeHandle(false)->Set({100, -1}); });
    check([](auto&, auto& point) { point.DragForeHandle(true)->Set({100, 1}); }); // turns the other
    check([](auto& path, auto&) { path.Transform([](CPoint pt) { return CPoint{pt.x, pt.y / 60}; }); });
}

TEST(PathDrag, AClosedPathIsHitWhereItIsFilled) {
    // The last anchor lies on the first; handles there would make a loop that is not filled.
    CClosedPathObject path;
    for (const CPoint pt : {CPoint{0, 0}, {800, 0}, {800, 800}, {0, 0}}) AddAnchor(path.GetStream(), pt);
    path.GetStream().GetControlPoints().back()->SetFore(CDualValue<CPoint>({-400, 0}));
    path.GetStream().GetControlPoints().front()->SetBack(CDualValue<CPoint>({0, -400}));
    path.Update();
    EXPECT_EQ(path.HitTest(PickAt({-150, -150}, false)).kind, HIT_NONE);
    EXPECT_EQ(path.HitTest(PickAt({400, 400}, false)).kind, HIT_PATH);
    // The closing curve is one where the two lie apart.
    path.GetStream().GetControlPoints().back()->SetAnchor(CDualValue<CPoint>({0, 8}));
    path.Update();
    EXPECT_EQ(path.HitTest(PickAt({-150, -147}, false)).kind, HIT_PATH);
}
