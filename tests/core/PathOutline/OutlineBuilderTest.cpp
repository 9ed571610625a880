#include "core/PathOutline/OutlineBuilder.h"
#include "core/Base/Failure.h"
#include "tests/support/Strokes.h"

namespace {

constexpr uint32_t ONE = BEZIER_T_RESOLUTION;

// Changes one thing of a stroke in both states, as a drag or a command does, without an update.
void ChangeOne(COpenPathStream& stream, std::mt19937& random) {
    const auto dual = [&](uint32_t uFrom, uint32_t uTo) {
        return CDualValue<uint32_t>(uFrom + random() % (uTo - uFrom));
    };
    const auto point = [&](int32_t n) {
        const auto draw = [&] { return static_cast<int32_t>(random() % static_cast<uint32_t>(2 * n)) - n; };
        return CPoint{draw(), draw()};
    };
    const auto markOf = [&](const auto& vMarks) { return vMarks[random() % vMarks.size()]; };
    const auto t = dual(0, static_cast<uint32_t>(stream.ControlPointCount()) * ONE);
    const auto spAnchor =
        *std::next(stream.GetControlPoints().begin(), random() % stream.ControlPointCount());
    const bool bBegin = random() % 2;
    const auto side = static_cast<EPathSide>(random() % 2);
    const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(stream.GetTerm(bBegin));
    if (stream.GetWidthPoints().empty()) return AddWidth(stream, t[0], ONE, ONE / 2);
    if (stream.GetTransPoints().empty()) return stream.AddTransPoint(t[0]), void();
    const bool bMayGrow = stream.ControlPointCount() < 14;
    const std::vector<std::function<void()>> vChanges{
        [&] { spAnchor->SetAnchor(CDualValue<CPoint>(spAnchor->GetAnchor()[0] + point(200))); },
        [&] { spAnchor->SetFore(CDualValue<CPoint>(point(200))); },
        [&] { spAnchor->SetBack(CDualValue<CPoint>(point(200))); },
        [&] { markOf(stream.GetWidthPoints())->SetParameter(t); },
        [&] { markOf(stream.GetWidthPoints())->SetMultiple(side, dual(0, 2 * ONE)); },
        [&] { markOf(stream.GetTransPoints())->SetParameter(t); },
        [&] { markOf(stream.GetTransPoints())->SetAngle(dual(10, 170)); },
        [&] { stream.AddTransPoint(t[0]); },
        [&] { stream.SetTransPoints({}); },
        [&] { stream.SetTerm(CreateOpenPathTerm(1 + random() % 3, bBegin)); },
        [&] { spFlat ? spFlat->SetMultiple(side, dual(ONE / 2, 2 * ONE)) : void(); },
        [&] { spFlat ? spFlat->SetAngle(dual(40, 140)) : void(); },
        [&] { stream.SetWidth(random() % 80); },
        [&] {
            stream.SetWave(random() % 2, {dual(32, 34)[0], dual(4, 6)[0]});
        },
        [&] { bMayGrow ? (void)stream.Divide(t[0]) : void(); },
        [&] {
            bMayGrow ? (void)stream.AppendControlPoint(CPoint{1500, 1500} + point(900)) : void();
        },
        [&] { stream.ControlPointCount() > 4 ? stream.RemoveControlPoint(*spAnchor) : void(); },
        [&] { stream.Transform([way = point(99)](CPoint pt) { return pt + way; }); }};
    markOf(vChanges)();
}

// The centre line of a hand with marks on its anchors.
TOutlineSource SourceOf(int nAnchors, const IOutlineTerm& begin, const IOutlineTerm& end) {
    TOutlineSource source;
    for (int n = 0; n < nAnchors; ++n) {
        source.vAnchors.push_back({{5000 * n, 3000 * (n % 3)}, {-900, 300 * (n % 2)}, {900, -300}});
        source.vWidths.push_back({static_cast<uint32_t>(n) * ONE, {900, 800}});
    }
    source.pBegin = &begin;
    source.pEnd = &end;
    return source;
}

} // namespace

TEST(OutlineBuilder, AStrokeThatChangesHasTheOutlineOfOneMadeAnew) {
    std::mt19937 random(31);
    const auto spPath = MakePath(HandKnots(random, 9), 40);
    COpenPathStream& stream = spPath->GetStream();
    for (const uint32_t t : {ONE / 2, 3 * ONE, 5 * ONE + 77}) AddWidth(stream, t, ONE, ONE / 2);
    for (int n = 0; n < 1200; ++n) {
        if (n % 400 == 399) {
            // A build that fails leaves nothing behind.
            const auto spPoint = *std::next(stream.GetControlPoints().begin(), 2);
            const auto spNext = *std::next(stream.GetControlPoints().begin(), 3);
            const auto anchor = spPoint->GetAnchor(), next = spNext->GetAnchor();
            spPoint->SetAnchor(CDualValue<CPoint>({-130000000, 0}));
            spNext->SetAnchor(CDualValue<CPoint>({130000000, 0}));
            EXPECT_THROW(spPath->UpdateDrag(), refused_error);
            spPoint->SetAnchor(anchor);
            spNext->SetAnchor(next);
        }
        ChangeOne(stream, random);
        const auto spFirst = stream.GetControlPoints().front();
        CDualValue<CPoint> fore(spFirst->GetFore(STATE_COMMITTED));
        fore[STATE_LIVE].x ^= 1; // the states differ: a drag
        spFirst->SetFore(fore);
        spPath->UpdateDrag();
        stream.Commit();
        CDeserializer reader(spPath->Serialize());
        const auto spNew = boost::make_shared<COpenPathObject>();
        spNew->Deserialize(reader);
        ASSERT_EQ(stream.GetOutline(STATE_LIVE), spNew->GetStream().GetOutline(STATE_COMMITTED)) << n;
    }
}

TEST(OutlineBuilder, OnlyWhatHasMovedIsBuilt) {
    const COpenPathFlatTerm begin(true), end(false);
    const CTermAtState first(begin, STATE_LIVE), last(end, STATE_LIVE);
    TOutlineSource source = SourceOf(40, first, last);
    COutlineBuilder builder;
    const auto runs = [&] { return builder.Build(source), builder.CountRuns(); };
    // Ends are built each time, both sides of a segment.
    EXPECT_EQ(runs(), 2u * 39);
    EXPECT_EQ(runs(), 4u);
    source.vAnchors[20].anchor.y += 7;
    EXPECT_EQ(runs(), 4u + 2 * 2);
    source.vWidths[20].auWidth[SIDE_LEFT] += 7;
    EXPECT_EQ(runs(), 4u + 2);
    source.vWidths[20].auWidth[SIDE_LEFT] -= 7;
    EXPECT_EQ(runs(), 4u) << "as it was two builds ago";
    for (int n = 0; n < 11; ++n) {
        source.vWidths[20].auWidth[SIDE_LEFT] += 7;
        EXPECT_EQ(runs(), 4u + (n == 0 ? 0u : 2u));
    }
    source.vWidths[20].auWidth[SIDE_LEFT] -= 77;
    EXPECT_EQ(runs(), 4u) << "twelve builds ago";
    for (TOutlinePoint& point : source.vAnchors) point.anchor = point.anchor + CPoint{-77, 33};
    EXPECT_EQ(runs(), 4u);
    source.vAnchors[0].anchor.x -= 7;
    EXPECT_EQ(runs(), 4u);
    source.vAnchors.insert(source.vAnchors.begin() + 10, TOutlinePoint{{47000, 9000}, {}, {}});
    source.vWidths.push_back({40 * ONE, {900, 800}});
    EXPECT_EQ(runs(), 4u + 2 * 2);
    source.vAnchors.push_back({{210000, 9000}, {}, {}});
    source.vWidths.push_back({41 * ONE, {900, 800}});
    EXPECT_EQ(runs(), 4u + 2);
    for (const int n : {35, 20, 5}) {
        const CPoint ptAfter = source.vAnchors[static_cast<size_t>(n)].anchor;
        source.vAnchors.insert(source.vAnchors.begin() + n,
                               TOutlinePoint{ptAfter + CPoint{-900, 50}, {}, {}});
        source.vWidths.push_back({source.vWidths.back().t + ONE, {900, 800}});
    }
    EXPECT_EQ(runs(), 4u + 3 * 2 * 2) << "between the new anchors all has moved by one to three";
    for (const int n : {37, 21, 5}) source.vAnchors.erase(source.vAnchors.begin() + n);
    source.vWidths.resize(source.vWidths.size() - 3);
    EXPECT_LE(runs(), 4u + 3 * 2);
    source.wave = {500, 64};
    EXPECT_EQ(runs(), 2u * 41);
    source.vAnchors[30].anchor.x += 1;
    EXPECT_EQ(runs(), 4u + 2 * 2);
}

TEST(OutlineBuilder, IsKeptForADragAndNoLonger) {
    const auto spPath = MakeLevelStroke(41);
    COpenPathStream& stream = spPath->GetStream();
    for (uint32_t n = 0; n <= 40; ++n) AddWidth(stream, n * ONE, ONE, ONE);
    spPath->Update();
    const auto spPoint = *std::next(stream.GetControlPoints().begin(), 20);
    const auto drag = [&](int32_t n) {
        (*spPoint->DragAnchorPoint(false))[STATE_LIVE] = {16000, n};
        spPath->UpdateDrag();
        return stream.CountBuiltRuns();
    };
    for (const bool bCommit : {false, true}) {
        EXPECT_EQ(stream.CountBuiltRuns(), 0u);
        EXPECT_EQ(drag(8), 2u * 40);
        EXPECT_EQ(drag(16), 4u + 2 * 2);
        bCommit ? spPath->CommitDrag() : spPath->CancelDrag();
    }
    EXPECT_EQ(stream.CountBuiltRuns(), 0u);
}
