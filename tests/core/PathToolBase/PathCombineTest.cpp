#include "core/PathToolBase/PathCombine.h"
#include "tests/support/Paths.h"

#include <sstream>

namespace {

// A path as text: base width, anchors with their handles, width points (absolute), cuts, ends.
std::string Describe(const COpenPathObject& path) {
    const COpenPathStream& stream = path.GetStream();
    std::ostringstream out;
    out << stream.GetWidth() << (stream.HasWave() ? "~:" : ":");
    for (const auto& spPoint : stream.GetControlPoints()) {
        const auto [pt, back, fore] = spPoint->At(STATE_COMMITTED);
        out << ' ' << pt.x << ',' << pt.y << '(' << back.x << ',' << back.y << ';' << fore.x << ',' << fore.y
            << ')';
    }
    for (const auto& spMark : stream.GetWidthPoints())
        out << " w" << std::hex << spMark->GetParameter()[STATE_COMMITTED] << std::dec << '='
            << spMark->GetWidth(SIDE_LEFT, STATE_COMMITTED) << '/'
            << spMark->GetWidth(SIDE_RIGHT, STATE_COMMITTED);
    for (const auto& spMark : stream.GetTransPoints())
        out << " c" << std::hex << spMark->GetParameter()[STATE_COMMITTED] << std::dec << '@'
            << spMark->GetAngle()[STATE_COMMITTED];
    for (const auto& spMark : stream.GetAlphaPoints())
        out << " o" << std::hex << spMark->GetParameter()[STATE_COMMITTED] << std::dec << '='
            << spMark->GetAlpha()[STATE_COMMITTED];
    for (const bool bBegin : {true, false}) {
        const auto& spTerm = stream.GetTerm(bBegin);
        out << (spTerm->IsBegin() ? " b" : " e") << spTerm->GetType();
        if (const auto pFlat = dynamic_cast<const COpenPathFlatTerm*>(spTerm.get()))
            out << std::hex << '(' << pFlat->GetMultiple(SIDE_LEFT)[STATE_COMMITTED] << ','
                << pFlat->GetMultiple(SIDE_RIGHT)[STATE_COMMITTED] << std::dec << '@'
                << pFlat->GetAngle()[STATE_COMMITTED] << ')';
    }
    return out.str();
}

// Two anchors with outer and inner handles, half-width 10, with a wave, a round beginning and a sharp end.
TOpenPathPtr MakeDrawn() {
    const auto spPath = boost::make_shared<COpenPathObject>();
    AddAnchor(spPath->GetStream(), {-900, 0}, {-5, -6}, {5, 6});
    AddAnchor(spPath->GetStream(), {-100, 0}, {-7, -8}, {7, 8});
    spPath->GetStream().SetWidth(10);
    spPath->GetStream().SetWave(true, {48, 2});
    spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, true));
    spPath->Update();
    return spPath;
}

const std::string STROKE = "80,72(0,0;160,0) 480,240(-80,-60;80,60) 800,400(0,0;0,0)";
const std::string TURNED = "800,400(0,0;0,0) 480,240(80,60;-80,-60) 80,72(160,0;0,0)";

} // namespace

TEST(PathCombine, AConnectedPathKeepsWidthsAndOuterEnds) {
    const auto spDrawn = MakeDrawn();
    const auto spStroke = MakeStroke();
    const TBytes vDrawn = BytesOf(*spDrawn), vStroke = BytesOf(*spStroke);
    const std::string strDrawn = "10~: -900,0(-5,-6;5,6) -100,0(-7,-8;7,8) ";
    EXPECT_EQ(Describe(*ConnectPaths(*spDrawn, {spStroke, true})),
              strDrawn + STROKE +
                  " w10000=10/10 w28000=46/40 w34000=40/20 c38000@90 c3a000@60 b2 "
                  "e3(14001,10000@75)");
    EXPECT_EQ(Describe(*ConnectPaths(*spDrawn, {spStroke, false})),
              strDrawn + TURNED + " w10000=10/10 w2c000=20/40 w38000=40/46 c26000@60 c28000@90 b2 e2");
    EXPECT_TRUE(BytesOf(*spDrawn) == vDrawn && BytesOf(*spStroke) == vStroke);
    // Between plain strokes only a different width needs width points.
    const auto spPlain = MakeLevelStroke(2);
    const std::string strBoth = strDrawn + "0,0(0,0;0,0) 800,0(0,0;0,0)";
    EXPECT_EQ(Describe(*ConnectPaths(*spDrawn, {spPlain, true})),
              strBoth + " w10000=10/10 w20000=40/40 b2 e1");
    spPlain->GetStream().SetWidth(10);
    EXPECT_EQ(Describe(*ConnectPaths(*spDrawn, {spPlain, true})), strBoth + " b2 e1");
    spDrawn->GetStream().SetWidth(0); // nothing is a multiple of it
    EXPECT_EQ(Describe(*ConnectPaths(*spDrawn, {spPlain, true})),
              "10~" + strBoth.substr(3) + " w10000=0/0 w20000=10/10 b2 e1");
}

TEST(PathCombine, JoinedPathsShareAnAnchorAtTheTarget) {
    const auto spDrawn = MakeDrawn();
    const auto spStroke = MakeStroke();
    const auto joined = [&](bool bDraggedFirst, bool bTargetFirst) {
        return Describe(*JoinPaths({spDrawn, bDraggedFirst}, {spStroke, bTargetFirst}));
    };
    const std::string strHead = "10~: -900,0(-5,-6;5,6) ";
    const std::string strTail = " 480,240(-80,-60;80,60) 800,400(0,0;0,0)";
    EXPECT_EQ(joined(false, true), strHead + "80,72(-7,-8;160,0)" + strTail +
                                       " wf000=10/10 w18000=46/40 w24000=40/20 c28000@90 c2a000@60 b2 "
                                       "e3(14001,10000@75)");
    EXPECT_EQ(joined(false, false), strHead + "800,400(-7,-8;0,0) 480,240(80,60;-80,-60) 80,72(160,0;0,0)" +
                                        " wf000=10/10 w1c000=20/40 w28000=40/46 c16000@60 c18000@90 b2 e2");
    EXPECT_EQ(joined(true, false), "10~: 80,72(0,0;160,0) 480,240(-80,-60;80,60) 800,400(0,0;5,6) "
                                   "-100,0(-7,-8;7,8) w8000=46/40 w14000=40/20 w21000=10/10 c18000@90 "
                                   "c1a000@60 b2 e1");
    EXPECT_EQ(joined(true, true), "10~: 800,400(0,0;0,0) 480,240(80,60;-80,-60) 80,72(160,0;5,6) "
                                  "-100,0(-7,-8;7,8) wc000=20/40 w18000=40/46 w21000=10/10 c6000@60 c8000@90 "
                                  "b3(10000,14001@75) e1");
    // Of two different width points at the shared anchor none is lost.
    spDrawn->GetStream().AddWidthPoint(0x10000);
    spStroke->GetStream().GetWidthPoints()[0]->SetParameter(CDualValue<uint32_t>(0));
    EXPECT_NE(joined(false, true).find(" w10000=10/10 w10001=46/40 "), std::string::npos);
}

TEST(PathCombine, ADividedPathKeepsItsInkAndJoinsAgain) {
    const auto spPath = MakeStroke();
    const std::string strHead = "40: 80,72(0,0;160,0) 480,240(-80,-60;80,60) ";
    const std::string strTail = "40: 480,240(-80,-60;80,60) 800,400(0,0;0,0) ";
    const auto expectHalves = [&](const std::string& str, const std::string& strOther) {
        const auto [spHead, spTail] = DividePath(*spPath, 1);
        EXPECT_EQ(Describe(*spHead), strHead + str + "b2 e1");
        EXPECT_EQ(Describe(*spTail), strTail + strOther + "b1 e3(14001,10000@75)");
        return BytesOf(*JoinPaths({spHead, false}, {spTail, true}));
    };
    COpenPathStream& stream = spPath->GetStream();
    EXPECT_EQ(expectHalves("w8000=46/40 ", "w4000=40/20 c8000@90 ca000@60 "), BytesOf(*spPath));
    // A width point at the anchor belongs to both halves; a pair of cuts around it is divided.
    stream.GetWidthPoints()[1]->SetParameter(CDualValue<uint32_t>(0x10000));
    stream.GetTransPoints()[0]->SetParameter(CDualValue<uint32_t>(0xC000));
    stream.GetTransPoints()[0]->SetAngle(CDualValue<uint32_t>(70));
    spPath->Update();
    EXPECT_EQ(expectHalves("w8000=46/40 w10000=40/20 cc000@70 c10000@90 ", "w0=40/20 c0@90 ca000@60 "),
              BytesOf(*spPath));
    // A half without width points has the old widths at the new end, not the path's own.
    stream.SetWidthPoints({stream.GetWidthPoints()[0]});
    stream.SetTransPoints({stream.GetTransPoints()[0]}); // a single cut reaches to the end
    stream.GetWidthPoints()[0]->SetMultiple(SIDE_RIGHT, CDualValue<uint32_t>(FIXED_ONE / 4));
    spPath->Update();
    const auto auWidth = stream.GetWidthsAt(0x10000, STATE_COMMITTED);
    EXPECT_LT(auWidth[SIDE_RIGHT], auWidth[SIDE_LEFT]);
    expectHalves("w8000=46/10 cc000@70 c10000@90 ", "w0=" + std::to_string(auWidth[SIDE_LEFT]) + "/" +
                                                        std::to_string(auWidth[SIDE_RIGHT]) +
                                                        " c0@90 c10000@90 ");
}

TEST(PathCombine, AClosedPathOpensAtAnAnchor) {
    CClosedPathObject shape;
    for (const int n : {0, 1, 2}) AddAnchor(shape.GetStream(), {100 * n, n * n}, {-n, 5}, {n, 6});
    TPathParam param{.uDefaultWidth = 24, .uDefaultBegin = TERM_FLAT, .uDefaultTerm = TERM_ROUND};
    EXPECT_EQ(Describe(*OpenClosedPath(shape, 1, param)),
              "24: 100,1(0,5;1,6) 200,4(-2,5;2,6) 0,0(0,5;0,6) 100,1(0,5;1,6) b3(10000,10000@90) e2");
    // A last anchor at the first one's place is the same one.
    AddAnchor(shape.GetStream(), {0, 0}, {7, 7}, {8, 8});
    EXPECT_EQ(Describe(*OpenClosedPath(shape, 3, param)),
              "24: 0,0(7,7;0,6) 100,1(0,5;1,6) 200,4(-2,5;2,6) 0,0(7,7;0,6) b3(10000,10000@90) e2");
}

TEST(PathCombine, OpacityGoesAlong) {
    const auto make = [](const std::vector<std::pair<uint32_t, uint32_t>>& vMarks) {
        const auto spPath = MakeLevelStroke(3);
        for (const auto& [t, uAlpha] : vMarks)
            spPath->GetStream().AddAlphaPoint(t)->SetAlpha(CDualValue<uint32_t>(uAlpha));
        spPath->Update();
        return spPath;
    };
    const auto marks = [](const COpenPathObject& path) {
        const std::string str = Describe(path);
        const size_t n = str.find(" o");
        return n == std::string::npos ? "" : str.substr(n, str.find(" b") - n);
    };
    const auto spMarked = make({{0x8000, 10}, {0x20000, 90}}), spPlain = make({});
    // A path without marks stays opaque beside one with marks.
    EXPECT_EQ(marks(*ConnectPaths(*spPlain, {spMarked, true})), " o20000=255 o38000=10 o50000=90");
    EXPECT_EQ(marks(*ConnectPaths(*spMarked, {spPlain, false})), " o8000=10 o20000=90 o30000=255");
    EXPECT_EQ(marks(*ConnectPaths(*spMarked, {spMarked, false})), " o8000=10 o20000=90 o30000=90 o48000=10");
    EXPECT_EQ(marks(*JoinPaths({spMarked, false}, {spPlain, true})), " o8000=10 o20000=90 o21000=255");
    EXPECT_EQ(marks(*JoinPaths({spMarked, false}, {make({{0, 90}}), true})), " o8000=10 o20000=90");
    EXPECT_EQ(marks(*JoinPaths({spMarked, false}, {make({{0, 91}}), true})), " o8000=10 o20000=90 o20001=91");
    const auto [spHead, spTail] = DividePath(*make({{0x18000, 10}, {0x20000, 90}}), 1);
    EXPECT_EQ(marks(*spHead), " o10000=10");
    EXPECT_EQ(marks(*spTail), " o8000=10 o10000=90");
    EXPECT_EQ(marks(*DividePath(*spPlain, 1).first), "");
}
