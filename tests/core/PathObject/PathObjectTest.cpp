#include "core/Base/Failure.h"
#include "core/PathObject/PathDrawing.h"
#include "tests/support/Paths.h"

namespace {

std::vector<uint32_t> ParametersOf(const auto& vMarks) {
    std::vector<uint32_t> v;
    for (const auto& spMark : vMarks) v.push_back(spMark->GetParameter()[STATE_COMMITTED]);
    return v;
}

boost::shared_ptr<COpenPathObject> MakeMarkedStroke() {
    const auto spPath = MakeLevelStroke(4);
    for (const uint32_t t : {0x8000u, 0x10000u, 0x18000u, 0x28000u}) spPath->GetStream().AddWidthPoint(t);
    for (const uint32_t t : {0x4000u, 0xC000u, 0x14000u, 0x24000u}) spPath->GetStream().AddTransPoint(t);
    for (const auto& spMark : spPath->GetStream().GetWidthPoints())
        spPath->GetStream().AddAlphaPoint(spMark->GetParameter()[STATE_COMMITTED]);
    return spPath;
}

const CPathControlPoint& AnchorOf(const COpenPathObject& path, int n) {
    return **std::next(path.GetStream().GetControlPoints().begin(), n);
}

using TParameters = std::vector<uint32_t>;

} // namespace

TEST(PathObject, MarksStayWhereTheyAreWhenAnchorsComeAndGo) {
    const auto check = [](int idx, bool bRemove, const TParameters& vWidth, const TParameters& vCuts) {
        const auto spPath = MakeMarkedStroke();
        const CPathControlPoint& anchor = AnchorOf(*spPath, idx);
        if (bRemove) spPath->RemoveControlPoint(anchor);
        const auto spNew = bRemove ? nullptr : spPath->InsertControlPoint(anchor, {7, 9});
        EXPECT_TRUE(bRemove || spNew.get() == &AnchorOf(*spPath, idx));
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetWidthPoints()), vWidth) << idx;
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetTransPoints()), vCuts) << idx;
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetAlphaPoints()), vWidth) << idx;
        EXPECT_EQ(spPath->GetStream().ControlPointCount(), bRemove ? 3u : 5u);
    };
    check(0, true, {0, 0x8000, 0x18000}, {0x4000, 0x14000});
    // The merged segment has no handles: its fraction f lies at 3f^2 - 2f^3 of its length.
    check(1, true, {21408, 0x8000, 44160, 0x18000}, {11264, 29344, 36208, 0x14000});
    check(2, true, {0x8000, 0x10000, 0x10000 + 21408, 0x10000 + 44160},
          {0x4000, 0xC000, 76800, 0x10000 + 36208});
    check(3, true, {0x8000, 0x10000, 0x18000}, {0x4000, 0xC000});
    check(0, false, {0x18000, 0x20000, 0x28000, 0x38000}, {0x14000, 0x1C000, 0x24000, 0x34000});
    check(2, false, {0x8000, 0x10000, 0x18000, 0x38000}, {0x4000, 0xC000, 0x14000, 0x34000});
}

TEST(PathObject, ADivisionChangesNoShape) {
    for (const uint32_t t : {0x1u, 0x6000u, 0x8000u, 0x13000u, 0x1FFFFu}) {
        const auto spPath = MakeStroke();
        COpenPathStream& stream = spPath->GetStream();
        const auto spWhole = MakeStroke();
        spPath->Divide(t);
        EXPECT_EQ(stream.ControlPointCount(), 4u);
        const uint32_t tNew = (t + 0xFFFF) & ~0xFFFFu;
        const COpenPathStream& whole = spWhole->GetStream();
        EXPECT_LE(LengthDown(stream.PointAt(tNew, STATE_LIVE) - whole.PointAt(t, STATE_LIVE)), 2u);
        for (uint32_t n = 0; n <= 0x20000; n += 0x700)
            EXPECT_LE(stream.DistanceSquared(whole.PointAt(n, STATE_COMMITTED)), 8) << t << ' ' << n;
        const auto expectPlaces = [&](const auto& vNow, const auto& vBefore) {
            const auto at = [](const auto& spMark) { return spMark->GetPosition(STATE_COMMITTED); };
            for (size_t n = 0; n < vNow.size(); ++n) EXPECT_LE(LengthDown(at(vNow[n]) - at(vBefore[n])), 3u);
        };
        expectPlaces(stream.GetWidthPoints(), whole.GetWidthPoints());
        expectPlaces(stream.GetTransPoints(), whole.GetTransPoints());
    }
    const auto spPath = MakeStroke();
    const TBytes vBefore = BytesOf(*spPath);
    for (const uint32_t t : {0u, 0x10000u, 0x20000u, 0x28000u}) spPath->Divide(t);
    EXPECT_EQ(BytesOf(*spPath), vBefore);
    CClosedPathObject shape;
    for (const CPoint pt : {CPoint{0, 0}, {800, 0}, {0, 800}}) AddAnchor(shape.GetStream(), pt);
    shape.Divide(0x28000);
    EXPECT_EQ(shape.GetStream().GetControlPoints().back()->GetAnchor()[STATE_COMMITTED], (CPoint{0, 400}));
}

TEST(PathObject, ASnapshotBringsBackTheSameObjects) {
    const auto spPath = MakeStroke();
    COpenPathStream& stream = spPath->GetStream();
    const auto spAlpha = stream.AddAlphaPoint(0x4000);
    const auto spSnapshot = spPath->CreateSnapshot();
    const TBytes vBytes = BytesOf(*spPath);
    const auto vOutline = stream.GetOutline(STATE_COMMITTED);
    const auto lstPoints = stream.GetControlPoints();
    const auto vWidths = stream.GetWidthPoints();
    const auto vCuts = stream.GetTransPoints();
    spPath->RemoveControlPoint(*lstPoints.front());
    lstPoints.back()->SetAnchor(CDualValue<CPoint>({900, 10}));
    lstPoints.front()->SetFore(CDualValue<CPoint>({1, 2}));
    stream.SetTransPoints({});
    stream.AddWidthPoint(7);
    spAlpha->SetAlpha(CDualValue<uint32_t>(3));
    stream.SetAlphaPoints({stream.AddAlphaPoint(9)});
    stream.SetTerm(CreateOpenPathTerm(TERM_SHARP, true));
    stream.SetWidth(5);
    stream.SetWave(true, {9, 9});
    spPath->Update();
    ASSERT_NE(stream.GetOutline(STATE_COMMITTED), vOutline);
    spPath->ApplySnapshot(*spSnapshot);
    EXPECT_EQ(BytesOf(*spPath), vBytes);
    EXPECT_EQ(stream.GetControlPoints(), lstPoints);
    EXPECT_EQ(stream.GetWidthPoints(), vWidths);
    EXPECT_EQ(stream.GetTransPoints(), vCuts);
    EXPECT_EQ(stream.GetAlphaPoints(), COpenPathStream::TAlphaPoints{spAlpha});
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) EXPECT_EQ(stream.GetOutline(state), vOutline);
    COpenPathObject copy;
    copy.AppendControlPoint({1, 1});
    copy.Assign(*spPath);
    EXPECT_EQ(BytesOf(copy), vBytes);
    EXPECT_FALSE(copy.GetStream().Contains(*lstPoints.front()));
    CClosedPathObject shape;
    const auto spFirst = shape.AppendControlPoint({8, 8});
    const auto spShape = shape.CreateSnapshot();
    shape.RemoveControlPoint(*spFirst);
    shape.ApplySnapshot(*spShape);
    EXPECT_TRUE(shape.GetStream().Contains(*spFirst));
    EXPECT_EQ(shape.RectIncludingPath(), CRect(8, 8, 9, 9));
    EXPECT_THROW(copy.Assign(shape), internal_error);
}

TEST(PathObject, WhatNoFileCouldHoldIsTakenBack) {
    const auto spPath = MakeStroke();
    COpenPathStream& stream = spPath->GetStream();
    const TBytes vBefore = BytesOf(*spPath);
    const auto vOutline = stream.GetOutline(STATE_COMMITTED);
    const auto lstPoints = stream.GetControlPoints();
    const auto refuse = [&](const char* pszWhat, const auto& change) {
        EXPECT_THROW((change(), spPath->Update()), refused_error) << pszWhat;
        EXPECT_EQ(BytesOf(*spPath), vBefore) << pszWhat;
        EXPECT_EQ(stream.GetOutline(STATE_COMMITTED), vOutline) << pszWhat;
        EXPECT_EQ(stream.GetControlPoints(), lstPoints) << pszWhat;
    };
    constexpr int32_t FAR = PATH_COORDINATE_LIMIT + 1;
    refuse("anchor", [&] { spPath->AppendControlPoint({0, -FAR}); });
    refuse("move", [&] { spPath->Transform([](CPoint pt) { return CPoint{pt.x + FAR, pt.y}; }); });
    refuse("back", [&] { (*lstPoints.back()->DragBackHandle(false))[STATE_COMMITTED] = {FAR, 5}; });
    refuse("fore", [&] { (*lstPoints.front()->DragForeHandle(true))[STATE_COMMITTED] = {5, FAR}; });
    refuse("half-width", [&] { stream.SetWidth(PATH_WIDTH_LIMIT + 1); });
    refuse("wave", [&] { stream.SetWave(true, {32, PATH_WIDTH_LIMIT + 1}); });
    refuse("length", [&] {
        for (int n = 0; n < 20; ++n) AddAnchor(stream, {n % 2 ? FAR - 1 : 1 - FAR, 0});
    });
    spPath->AppendControlPoint({FAR - 1, 1 - FAR});
    stream.SetWidth(PATH_WIDTH_LIMIT);
    spPath->Update();
    CDeserializer reader(spPath->Serialize());
    EXPECT_NO_THROW(COpenPathObject().Deserialize(reader)) << "the limits themselves";
}

TEST(PathObject, AChangeIsFoundWhereCurvesDiffer) {
    const auto spPath = MakeLevelStroke(4); // half-width 40, anchors 800 apart
    for (const uint32_t t : {0x10000u, 0x20000u, 0x30000u}) spPath->GetStream().AddWidthPoint(t);
    spPath->Update();
    const auto spPoint = spPath->GetStream().GetControlPoint(1);
    const auto shapeAt = [&](int32_t y) {
        CDualValue<CPoint> anchor = spPoint->GetAnchor();
        anchor[STATE_LIVE].y = y;
        spPoint->SetAnchor(anchor);
        spPath->UpdateDrag();
        return spPath->GetStream().GetShape(STATE_LIVE);
    };
    const auto vBefore = shapeAt(190), vNow = shapeAt(200); // both have a corner there
    EXPECT_TRUE(ChangedBoxes(vBefore, vBefore).empty());
    const auto vBoxes = ChangedBoxes(vBefore, vNow);
    ASSERT_FALSE(vBoxes.empty());
    CRect rcAll;
    for (const CRect& rc : vBoxes) rcAll = rcAll.Union(rc);
    EXPECT_TRUE(rcAll.Contains({800, 170}) && rcAll.Contains({800, 239}) && rcAll.Contains({1200, 100}));
    EXPECT_LE(rcAll.right, 1700); // the last segment is as it was
    // One list of curves is the other with some more in the middle.
    const TPolyBezier vShort{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 5}, {5, 5}, {6, 0}};
    TPolyBezier vLong = vShort;
    vLong.insert(vLong.begin() + 4, {{3, 1}, {3, 2}, {3, 3}});
    EXPECT_EQ(ChangedBoxes({vShort}, {vLong}), std::vector{CRect(3, 0, 7, 6)});
    EXPECT_EQ(ChangedBoxes({vShort}, {}), std::vector{CRect(0, 0, 7, 6)});
}
