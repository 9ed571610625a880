// A pen that misbehaves: what its missing, doubled and unexpected events lead to.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/CommandIds.h"
#include "core/RasterBrush/FreehandTools.h"
#include "tests/session/ScriptedSession.h"

#include <gtest/gtest.h>

namespace {

constexpr char BRUSH[] = R"({"set":{"section":"BrushParam\\RasterBrush","key":"BrushRadius","value":8}}
{"set":{"section":"BrushParam\\RasterBrush","key":"BlurLevel","value":100}}
{"set":{"section":"BrushParam\\RasterEraser","key":"BrushRadius","value":8}}
{"set":{"section":"BrushParam\\RasterEraser","key":"BlurLevel","value":100}}
{"tool":2}
{"view":{"width":400,"height":400,"zoom":48,"angle":0,"flipH":false,"flipV":false,"scroll":{"x":0,"y":0}}}
)";
constexpr char END[] = "{\"wait\":10}\n{\"answer\":{\"box\":\"no\"}}\n";
constexpr char AWAY[] = "{\"wait\":1000}\n"; // the mouse is heard again

std::string Verb(const char* pszVerb, const char* pszWhat) {
    return std::string("{\"") + pszVerb + "\":\"" + pszWhat + "\"}\n";
}
std::string Proximity(const char* psz) { return Verb("proximity", psz); }

// The place at which canvas pixel (x, 75) is reported, with more words of the line.
std::string Packet(int x, int nPressure, const std::string& strMore = {}) {
    return "{\"packet\":{\"x\":" + std::to_string((x + 100) * 8) +
           ",\"y\":1600,\"pressure\":" + std::to_string(nPressure) + strMore + "}}\n";
}
std::string Line(int x, int nTo, int nPressure, const std::string& strMore = {}) {
    std::string str;
    for (; x <= nTo; x += 4) str += Packet(x, nPressure, strMore);
    return str;
}
std::string Lift(int x, const std::string& strMore = {}) { return Line(x, x + 16, 0, strMore); }
std::string Mouse(const char* psz, int x) {
    return std::string("{\"pointer\":{\"message\":\"") + psz + "\",\"x\":" + std::to_string(x + 100) +
           ",\"y\":200}}\n";
}
constexpr char ERASER[] = ",\"eraser\":true";

class PenContact : public testing::Test, protected CScriptedSession {
protected:
    // The strokes that a script leaves in the history, as b for the brush's and e for the eraser's.
    std::string Draw(const std::string& strScript) {
        EXPECT_EQ(Play(BRUSH + strScript + END), "");
        std::string str;
        for (const auto& spStep : m_spCanvas->GetHistory().GetUndoList()) {
            if (spStep->GetName() == L"ラスタブラシ") str.insert(str.begin(), 'b');
            if (spStep->GetName() == L"消しゴム") str.insert(str.begin(), 'e');
        }
        return str;
    }
    // How much ink lies at a pixel of row 75.
    int Ink(int32_t x) const {
        const auto spLayer = boost::dynamic_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
        const auto spTile = spLayer->GetRaster()->GetBlock({x, 75}, false);
        return spTile ? spTile->GetPixelAlpha(CPoint{x, 75} - spTile->GetPosition()) : 0;
    }
};

} // namespace

TEST_F(PenContact, AnEnterOrTheOtherEndInAStrokeIsAMissedLeave) {
    // The line stays, no bar leads to the new place, and the mouse is heard afterwards.
    const std::string strMouse = Mouse("ldown", 30) + Mouse("move", 50) + Mouse("lup", 50);
    EXPECT_EQ(Draw(Line(20, 60, 900) + Proximity("enter") + Packet(150, 0) + Lift(160) + AWAY + strMouse),
              "bb");
    EXPECT_EQ(Ink(40), 255);
    EXPECT_EQ(Ink(100), 0);
    // So it is when nothing but the contact goes on.
    EXPECT_EQ(Draw(Line(20, 60, 900) + Proximity("enter") + Line(150, 180, 900) + Lift(184)), "bb");
    EXPECT_EQ(Ink(100), 0);
    EXPECT_EQ(Ink(165), 255);
    for (const bool bLeft : {false, true}) {
        const std::string strLeave = bLeft ? Proximity("leave") : "";
        EXPECT_EQ(Draw(Line(20, 60, 900) + strLeave + Line(150, 180, 900) + Lift(184)), bLeft ? "bb" : "b");
        EXPECT_EQ(Ink(100), bLeft ? 0 : 255);
        // The packet of the other end is that end's first.
        EXPECT_EQ(Draw(Line(20, 100, 900) + strLeave + Line(40, 60, 900, ERASER) + Lift(64, ERASER)), "be");
        EXPECT_EQ(Ink(30), 255);
        EXPECT_LT(Ink(50), 30);
    }
}

TEST_F(PenContact, AfterACancelTheRestOfTheContactDrawsNothing) {
    const std::string strAfter = Line(80, 120, 900) + Lift(124);
    const std::string strRight = Packet(64, 900, ",\"message\":\"rdown\"");
    for (const std::string& strCancel :
         {std::string("{\"key\":{\"down\":27}}\n{\"key\":{\"up\":27}}\n"), strRight,
          std::string("{\"pointer\":{\"message\":\"lost\"}}\n"), std::string("{\"tool\":2}\n")}) {
        EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + strAfter), "") << strCancel;
        // The next contact draws, and nothing leads to it from the one before.
        EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + Line(80, 120, 900) + Packet(140, 0) + strAfter), "b");
        EXPECT_EQ(Ink(100), 255);
        EXPECT_EQ(Ink(60), 0);
        for (const char* psz : {"leave", "enter"})
            EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + Proximity(psz) + strAfter), "b") << psz;
        EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + Line(80, 120, 900, ERASER) + Lift(124)), "e");
    }
    // In the exit the line is complete.
    EXPECT_EQ(Draw(Line(20, 60, 900) + Packet(64, 0) + "{\"key\":{\"down\":27}}\n" + strAfter), "bb");
}

TEST_F(PenContact, WhileTheMouseDrawsPacketsAreReadAndDropped) {
    const std::string strPackets = Line(120, 180, 900, ",\"idle\":true");
    EXPECT_EQ(Draw(Mouse("ldown", 20) + strPackets + Mouse("move", 60) + Mouse("lup", 60) +
                   "{\"expect\":{\"history\":{\"undo\":[\"レイヤー追加\",\"レイヤー追加\",\"ラスタブラシ\"],"
                   "\"redo\":[]}}}\n" +
                   Lift(60)),
              "b");
    EXPECT_EQ(Ink(40), 255);
    EXPECT_EQ(Ink(150), 0);
    // Those of the other end change no tool.
    const std::string strEraser = Line(120, 180, 900, std::string(ERASER) + ",\"idle\":true");
    EXPECT_EQ(Draw(Mouse("ldown", 20) + strEraser + Mouse("move", 60) + Mouse("lup", 60)), "b");
    // A leave meanwhile ends the contact that was cancelled before: the pen's next line is drawn.
    EXPECT_EQ(Draw(Line(20, 60, 900) + "{\"key\":{\"down\":27}}\n{\"key\":{\"up\":27}}\n" + AWAY +
                   Mouse("ldown", 20) + Proximity("leave") + Mouse("move", 60) + Mouse("lup", 60) +
                   Line(80, 120, 900) + Lift(124)),
              "bb");
    // An end that goes meanwhile gives the tip its tool back.
    EXPECT_EQ(Draw(Proximity("eraser") + AWAY + Mouse("ldown", 20) + Proximity("leave") + Mouse("move", 60) +
                   Mouse("lup", 60) + AWAY + Mouse("ldown", 20) + Mouse("move", 60) + Mouse("lup", 60)),
              "eb");
}

TEST_F(PenContact, SilenceAfterALiftEndsAStrokeAndSilenceInContactDoesNot) {
    const std::string strLine = Line(20, 60, 900);
    const auto strokes = [](int n) {
        return std::string("{\"expect\":{\"enabled\":{\"57643\":") + (n ? "true" : "false") + "}}}\n";
    };
    EXPECT_EQ(Draw(strLine + Packet(64, 0) + "{\"wait\":299}\n" + strokes(0) + "{\"wait\":1}\n" + strokes(1)),
              "b");
    EXPECT_EQ(Draw(strLine + "{\"wait\":5000}\n" + strokes(0) + Line(64, 100, 900) + Lift(104)), "b");
    EXPECT_EQ(Ink(90), 255);
    // A packet between begins the time anew.
    const std::string strLong = "{\"set\":{\"section\":\"BrushParam\\\\RasterBrush\",\"key\":\"StrokeOut\","
                                "\"value\":2}}\n{\"tool\":2}\n";
    EXPECT_EQ(Draw(strLong + strLine + Packet(64, 0) + "{\"wait\":200}\n" + Packet(68, 0) +
                   "{\"wait\":299}\n" + strokes(0)),
              "b");
}

TEST_F(PenContact, ATipThatReportsItsTouchAndItsLiftAloneDrawsADot) {
    const std::string strDown = Packet(60, 900, ",\"message\":\"ldown\"");
    const std::string strUp = Packet(60, 0, ",\"message\":\"lup\"");
    EXPECT_EQ(Draw(Packet(30, 0) + strDown + strUp), "b");
    EXPECT_EQ(Ink(60), 255);
    EXPECT_EQ(Ink(45), 0);
    // The touch that made the window active draws nothing, however light it begins.
    const std::string strTouch = "{\"pointer\":{\"message\":\"touch\"}}\n";
    const std::string strLight = Packet(60, 2, ",\"message\":\"ldown\"");
    EXPECT_EQ(Draw(strTouch + strLight + Line(64, 100, 900) + strUp + AWAY), "");
    EXPECT_EQ(Draw(strTouch + strLight + Line(64, 100, 900) + strUp + strDown + strUp), "b");
    EXPECT_EQ(Draw(strTouch + strLight + strUp + strDown + strUp), "b")
        << "a touch too light to be a contact";
    const std::string strClick = Mouse("ldown", 30) + Mouse("lup", 30);
    EXPECT_EQ(Draw("{\"pointer\":{\"message\":\"activate\"}}\n" + strClick), "");
    EXPECT_EQ(Draw("{\"pointer\":{\"message\":\"activate\"}}\n" + strClick + strClick), "b");
}

TEST_F(PenContact, ThePenIsKnownToAnEighthOfAPixelAlsoWhereTheCursorCounts) {
    for (const int nMouseCoord : {0, 1})
        for (const int nEighths : {0, 4}) {
            const std::string strCoord =
                "{\"set\":{\"section\":\"Tablet\",\"key\":\"MouseCoord\",\"value\":" +
                std::to_string(nMouseCoord) + "}}\n";
            const std::string strAt =
                "{\"packet\":{\"x\":" + std::to_string(160 * 8 + nEighths) + ",\"y\":1600,\"pressure\":";
            EXPECT_EQ(Play(strCoord + BRUSH + strAt + "900}}\n" + strAt + "0}}\n" + END), "");
            // A dot on a pixel's edge and one on its centre are symmetric about it.
            for (int n = 0; n < 7; ++n)
                EXPECT_EQ(Ink(60 + n), Ink((nEighths ? 60 : 59) - n)) << nMouseCoord << nEighths << n;
            EXPECT_EQ(Ink(60), 255);
        }
}

TEST_F(PenContact, AContactThatDrewNothingDrawsNothingInTheNextWindow) {
    EXPECT_EQ(Draw(std::string("{\"command\":12800}\n") + BRUSH +
                   "{\"activate\":0}\n{\"layer\":{\"visible\":false}}\n" + Line(20, 60, 900) +
                   "{\"layer\":{\"visible\":true}}\n{\"activate\":1}\n" + Line(80, 120, 900) + Lift(124)),
              "");
}

TEST_F(PenContact, TheOtherEndsToolGoesBackWhicheverWindowHearsIt) {
    const std::string strSecond = "{\"command\":12800}\n";
    EXPECT_EQ(Draw(strSecond + "{\"activate\":0}\n" + Proximity("eraser") + "{\"activate\":1}\n" +
                   Proximity("leave") + "{\"activate\":0}\n" + Line(20, 60, 900) + Lift(64)),
              "b");
}
