// Paths as they are edited: anchors, snapshots, copies, what the layer hears.
#include "core/Base/Failure.h"
#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::vector<uint32_t> ParametersOf(const auto& vMarks) {
    std::vector<uint32_t> v;
    for (const auto& spMark : vMarks) v.push_back(spMark->GetParameter()[STATE_COMMITTED]);
    return v;
}

// Four anchors, marks on and between them.
boost::shared_ptr<COpenPathObject> MakeMarkedStroke() {
    const auto spPath = MakeLevelStroke(4);
    for (const uint32_t t : {0x8000u, 0x10000u, 0x18000u, 0x28000u}) spPath->GetStream().AddWidthPoint(t);
    for (const uint32_t t : {0x4000u, 0xC000u, 0x14000u, 0x24000u}) spPath->GetStream().AddTransPoint(t);
    return spPath;
}

const CPathControlPoint& AnchorOf(const COpenPathObject& path, int n) {
    return **std::next(path.GetStream().GetControlPoints().begin(), n);
}

std::wstring FaultOf(const std::function<void()>& fnDo) {
    try {
        fnDo();
    } catch (const internal_error& e) {
        return e.message;
    }
    return L"none";
}

// Notes what it is told.
struct TListener : IVectorLayer {
    void InvalidatePath(const CRect& rc) override { rcAll = rcAll.Union(rc); }
    CRect rcAll;
};

using TParameters = std::vector<uint32_t>;

} // namespace

TEST(PathObject, MarksStayWhereTheyAreWhenAnchorsComeAndGo) {
    struct TCase {
        int idx;
        TParameters vWidth, vCuts;
    };
    for (const TCase& c : {TCase{0, {0, 0x8000, 0x18000}, {0x4000, 0x14000}},
                           {1, {0x18000}, {}},
                           {2, {0x8000, 0x10000}, {0x4000, 0xC000}},
                           {3, {0x8000, 0x10000, 0x18000}, {0x4000, 0xC000}}}) {
        const auto spPath = MakeMarkedStroke();
        spPath->RemoveControlPoint(AnchorOf(*spPath, c.idx));
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetWidthPoints()), c.vWidth) << c.idx;
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetTransPoints()), c.vCuts) << c.idx;
        EXPECT_EQ(spPath->GetStream().ControlPointCount(), 3u);
    }
    for (const TCase& c :
         {TCase{0, {0x18000, 0x20000, 0x28000, 0x38000}, {0x14000, 0x1C000, 0x24000, 0x34000}},
          {2, {0x8000, 0x10000, 0x18000, 0x38000}, {0x4000, 0xC000, 0x14000, 0x34000}}}) {
        const auto spPath = MakeMarkedStroke();
        const auto spNew = spPath->InsertControlPoint(AnchorOf(*spPath, c.idx), {7, 9});
        EXPECT_EQ(&AnchorOf(*spPath, c.idx), spNew.get());
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetWidthPoints()), c.vWidth) << c.idx;
        EXPECT_EQ(ParametersOf(spPath->GetStream().GetTransPoints()), c.vCuts) << c.idx;
    }
}

TEST(PathObject, ADivisionChangesNoShape) {
    for (const uint32_t t : {0x1u, 0x6000u, 0x8000u, 0x13000u, 0x1FFFFu}) {
        const auto spPath = MakeStroke();
        COpenPathStream& stream = spPath->GetStream();
        const auto spWhole = MakeStroke();
        spPath->Divide(t);
        EXPECT_EQ(stream.ControlPointCount(), 4u);
        const uint32_t tNew = (t + 0xFFFF) & ~0xFFFFu;
        EXPECT_LE(LengthDown(stream.PointAt(tNew, STATE_LIVE) - spWhole->GetStream().PointAt(t, STATE_LIVE)),
                  2u);
        for (uint32_t n = 0; n <= 0x20000; n += 0x700)
            EXPECT_LE(stream.DistanceSquared(spWhole->GetStream().PointAt(n, STATE_COMMITTED)), 8)
                << t << ' ' << n;
        const auto expectPlaces = [&](const auto& vNow, const auto& vBefore) {
            for (size_t n = 0; n < vNow.size(); ++n)
                EXPECT_LE(LengthDown(vNow[n]->GetPosition(STATE_COMMITTED) -
                                     vBefore[n]->GetPosition(STATE_COMMITTED)),
                          3u);
        };
        expectPlaces(stream.GetWidthPoints(), spWhole->GetStream().GetWidthPoints());
        expectPlaces(stream.GetTransPoints(), spWhole->GetStream().GetTransPoints());
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

TEST(PathObject, DefectsAreNamed) {
    COpenPathObject empty;
    COpenPathStream& stream = empty.GetStream();
    CPathFill fill;
    CAlphaBlock8 tile;
    EXPECT_EQ(FaultOf([&] { stream.RectIncludingPath(); }), L"RectIncludingPath: zero anchor");
    EXPECT_EQ(FaultOf([&] { stream.RasterizePath(fill, {9, 9}, tile); }), L"RasterizePath: zero anchor");
    EXPECT_EQ(FaultOf([&] { stream.DistanceSquared({}); }), L"SearchNearPointOnPath: zero anchor");
    CClosedPathObject shape;
    EXPECT_EQ(FaultOf([&] { shape.GetStream().RectIncludingPath(); }), L"RectIncludingPath: zero anchor");
    EXPECT_EQ(FaultOf([&] {
                  shape.GetStream().RasterizePath(fill, {9, 9}, tile);
              }),
              L"RasterizePath: zero anchor");
    const CPathControlPoint foreign;
    EXPECT_EQ(FaultOf([&] { stream.InsertControlPoint(foreign, {}); }),
              L"InsertControlPoint: not anchor point");
    EXPECT_EQ(FaultOf([&] { stream.RemoveControlPoint(foreign); }), L"RemoveControlPoint: not in stream");
    const auto spOnly = empty.AppendControlPoint({8, 8});
    EXPECT_EQ(FaultOf([&] { empty.RemoveControlPoint(*spOnly); }), L"RemoveControlPoint: zero anchor");
    EXPECT_TRUE(stream.Contains(*spOnly) && !stream.Contains(foreign));
    EXPECT_EQ(stream.SearchNearPointOnPath({11, 12}, STATE_LIVE).nDistanceSquared, 25);
}

TEST(PathObject, ASnapshotBringsBackTheSameObjects) {
    const auto spPath = MakeStroke();
    COpenPathStream& stream = spPath->GetStream();
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
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) EXPECT_EQ(stream.GetOutline(state), vOutline);
    // A copy takes the values, not the objects.
    COpenPathObject copy;
    for (int n = 0; n < 5; ++n) copy.AppendControlPoint({n, n});
    copy.Assign(*spPath);
    EXPECT_EQ(BytesOf(copy), vBytes);
    EXPECT_FALSE(copy.GetStream().Contains(*lstPoints.front()));
    CClosedPathObject shape;
    const auto spFirst = shape.AppendControlPoint({8, 8});
    const auto spShape = shape.CreateSnapshot();
    shape.RemoveControlPoint(*spFirst);
    EXPECT_TRUE(shape.RectIncludingPath().IsEmpty());
    shape.ApplySnapshot(*spShape);
    EXPECT_TRUE(shape.GetStream().Contains(*spFirst));
    EXPECT_EQ(shape.RectIncludingPath(), CRect(8, 8, 9, 9));
    EXPECT_EQ(FaultOf([&] { copy.Assign(shape); }), L"Assign: deserialize_error in Deserialize()");
}

TEST(PathObject, ATransformMovesBothStatesAndTheLayerHearsOfBothPlaces) {
    const auto spPath = MakeStroke();
    const auto spListener = boost::make_shared<TListener>();
    spPath->SetLayer(spListener);
    const CRect rcBefore = spPath->RectIncludingPath();
    std::vector<TPolyBezier> avMoved;
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        avMoved.push_back(spPath->GetStream().BezierPoints(state));
        for (CPoint& pt : avMoved.back()) pt = pt + CPoint{4000, -80};
    }
    const auto vOutline = spPath->GetStream().GetOutline(STATE_COMMITTED);
    spPath->Transform([](CPoint pt) { return pt + CPoint{4000, -80}; });
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
        EXPECT_EQ(spPath->GetStream().BezierPoints(state), avMoved[state]);
    const CRect rcAfter = spPath->RectIncludingPath();
    EXPECT_GE(rcAfter.left, rcBefore.right);
    EXPECT_EQ(spListener->rcAll, rcBefore.Union(rcAfter));
    EXPECT_EQ(spPath->GetStream().GetOutline(STATE_COMMITTED).size(), vOutline.size());
}

TEST(PathObject, TheNearestPlaceIsThatOfADenseScan) {
    const auto spPath = MakeStroke();
    const COpenPathStream& stream = spPath->GetStream();
    std::mt19937 random(3);
    for (int n = 0; n < 100; ++n) {
        const CPoint pt{static_cast<int32_t>(random() % 900), static_cast<int32_t>(random() % 500)};
        double dScan = 1e9;
        for (uint32_t t = 0; t <= 0x20000; t += 0x40) {
            const CPoint away = stream.PointAt(t, STATE_LIVE) - pt;
            dScan = std::min(dScan, std::hypot(away.x, away.y));
        }
        const TPathPlace place = stream.SearchNearPointOnPath(pt, STATE_LIVE);
        EXPECT_LE(std::sqrt(static_cast<double>(place.nDistanceSquared)), dScan + 1) << pt.x << ' ' << pt.y;
        const CPoint away = stream.PointAt(place.t, STATE_LIVE) - pt;
        EXPECT_EQ(place.nDistanceSquared, Dot(away, away));
    }
}
