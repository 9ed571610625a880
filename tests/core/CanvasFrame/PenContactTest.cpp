#include "tests/session/ScriptedSession.h"

namespace {

const std::string BRUSH = SetBrush("BrushRadius", 8) + SetBrush("BlurLevel", 100) +
                          SetBrush("BrushRadius", 8, "RasterEraser") +
                          SetBrush("BlurLevel", 100, "RasterEraser") + R"({"tool":2}
{"view":{"width":400,"height":400,"zoom":48,"angle":0,"flipH":false,"flipV":false,"scroll":{"x":0,"y":0}}}
)";
const std::string END = Wait(10) + LEAVE_UNSAVED;
const std::string AWAY = Wait(1000);                          // the mouse is heard again
const std::string ESCAPE = ScriptLine("key", {{"down", 27}}); // which acts at once

// The place at which canvas pixel (x, 75) is reported, with more words of the line.
std::string Packet(int x, int nPressure, const TWords& more = nullptr) {
    return ScriptLine("packet", {{"x", (x + 100) * 8}, {"y", 1600}, {"pressure", nPressure}}, more);
}
std::string Line(int x, int nTo, int nPressure, const TWords& more = nullptr) {
    std::string str;
    for (; x <= nTo; x += 4) str += Packet(x, nPressure, more);
    return str;
}
std::string Lift(int x, const TWords& more = nullptr) { return Line(x, x + 16, 0, more); }
std::string Mouse(const char* pszWhat, int x) {
    return ScriptLine("pointer", {{"message", pszWhat}, {"x", x + 100}, {"y", 200}});
}
std::string MouseLine(int x, int nTo) { return Mouse("ldown", x) + Mouse("move", nTo) + Mouse("lup", nTo); }
const TWords ERASER{{"eraser", true}}, DOWN{{"message", "ldown"}}, UP{{"message", "lup"}};

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
    int Ink(int32_t x) const { return InkAt({x, 75}); }
};

} // namespace

TEST_F(PenContact, AnEnterOrTheOtherEndInAStrokeIsAMissedLeave) {
    // The line stays, no bar leads to the new place, and the mouse is heard afterwards.
    EXPECT_EQ(
        Draw(Line(20, 60, 900) + Proximity("enter") + Packet(150, 0) + Lift(160) + AWAY + MouseLine(30, 50)),
        "bb");
    EXPECT_EQ(Ink(40), 255);
    EXPECT_EQ(Ink(100), 0);
    EXPECT_EQ(Draw(Line(20, 60, 900) + Proximity("enter") + Line(150, 180, 900) + Lift(184)), "bb");
    EXPECT_EQ(Ink(100), 0);
    EXPECT_EQ(Ink(165), 255);
    for (const bool bLeft : {false, true}) {
        const std::string strLeave = bLeft ? Proximity("leave") : "";
        EXPECT_EQ(Draw(Line(20, 60, 900) + strLeave + Line(150, 180, 900) + Lift(184)), bLeft ? "bb" : "b");
        EXPECT_EQ(Ink(100), bLeft ? 0 : 255);
        EXPECT_EQ(Draw(Line(20, 100, 900) + strLeave + Line(40, 60, 900, ERASER) + Lift(64, ERASER)), "be");
        EXPECT_EQ(Ink(30), 255);
        EXPECT_LT(Ink(50), 30);
    }
}

TEST_F(PenContact, AfterACancelTheRestOfTheContactDrawsNothing) {
    const std::string strAfter = Line(80, 120, 900) + Lift(124);
    const std::string strRight = Packet(64, 900, {{"message", "rdown"}});
    const std::string strLost = ScriptLine("pointer", {{"message", "lost"}});
    for (const std::string& strCancel : {ESCAPE, strRight, strLost, Tool(2)}) {
        EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + strAfter), "") << strCancel;
        EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + Line(80, 120, 900) + Packet(140, 0) + strAfter), "b");
        EXPECT_EQ(Ink(100), 255);
        EXPECT_EQ(Ink(60), 0);
        for (const char* psz : {"leave", "enter"})
            EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + Proximity(psz) + strAfter), "b") << psz;
        EXPECT_EQ(Draw(Line(20, 60, 900) + strCancel + Line(80, 120, 900, ERASER) + Lift(124)), "e");
    }
    // In the exit the line is complete.
    EXPECT_EQ(Draw(Line(20, 60, 900) + Packet(64, 0) + ESCAPE + strAfter), "bb");
}

TEST_F(PenContact, WhileTheMouseDrawsPacketsAreReadAndDropped) {
    EXPECT_EQ(Draw(Mouse("ldown", 20) + MarkIdle(Line(120, 180, 900)) + Mouse("move", 60) + Mouse("lup", 60) +
                   "{\"expect\":{\"history\":{\"undo\":[\"レイヤー追加\",\"レイヤー追加\",\"ラスタブラシ\"],"
                   "\"redo\":[]}}}\n" +
                   Lift(60)),
              "b");
    EXPECT_EQ(Ink(40), 255);
    EXPECT_EQ(Ink(150), 0);
    EXPECT_EQ(Draw(Mouse("ldown", 20) + MarkIdle(Line(120, 180, 900, ERASER)) + Mouse("lup", 60)), "b");
    // A leave meanwhile ends the contact that was cancelled before: the pen's next line is drawn.
    EXPECT_EQ(Draw(Line(20, 60, 900) + ESCAPE + AWAY + Mouse("ldown", 20) + Proximity("leave") +
                   Mouse("lup", 60) + Line(80, 120, 900) + Lift(124)),
              "bb");
    // An end that goes meanwhile gives the tip its tool back.
    EXPECT_EQ(Draw(Proximity("eraser") + AWAY + Mouse("ldown", 20) + Proximity("leave") + Mouse("lup", 60) +
                   AWAY + MouseLine(20, 60)),
              "eb");
}

TEST_F(PenContact, SilenceAfterALiftEndsAStrokeAndSilenceInContactDoesNot) {
    const std::string strLine = Line(20, 60, 900);
    const auto strokes = [](int n) { return ScriptLine("expect", {{"enabled", {{"57643", n != 0}}}}); };
    EXPECT_EQ(Draw(strLine + Packet(64, 0) + Wait(299) + strokes(0) + Wait(1) + strokes(1)), "b");
    EXPECT_EQ(Draw(strLine + Wait(5000) + strokes(0) + Line(64, 100, 900) + Lift(104)), "b");
    EXPECT_EQ(Ink(90), 255);
    EXPECT_EQ(Draw(SetBrush("StrokeOut", 2) + Tool(2) + strLine + Packet(64, 0) + Wait(200) + Packet(68, 0) +
                   Wait(299) + strokes(0)),
              "b");
}

TEST_F(PenContact, ATipThatReportsItsTouchAndItsLiftAloneDrawsADot) {
    const std::string strDot = Packet(60, 900, DOWN) + Packet(60, 0, UP);
    EXPECT_EQ(Draw(Packet(30, 0) + strDot), "b");
    EXPECT_EQ(Ink(60), 255);
    EXPECT_EQ(Ink(45), 0);
    // The mouse is heard a second after it.
    EXPECT_EQ(Draw(strDot + Wait(999) + MarkIdle(MouseLine(20, 60)) + Wait(1)), "b");
    EXPECT_EQ(Draw(strDot + AWAY + MouseLine(20, 60)), "bb");
    // The touch that made the window active draws nothing, however light it begins.
    const std::string strTouch = ScriptLine("pointer", {{"message", "touch"}}) + Packet(60, 2, DOWN);
    const std::string strLine = Line(64, 100, 900) + Packet(60, 0, UP);
    EXPECT_EQ(Draw(strTouch + strLine + AWAY), "");
    EXPECT_EQ(Draw(strTouch + strLine + strDot), "b");
    EXPECT_EQ(Draw(strTouch + Packet(60, 0, UP) + strDot), "b") << "a touch too light to be a contact";
    const std::string strClick = Mouse("ldown", 30) + Mouse("lup", 30);
    const std::string strActivate = ScriptLine("pointer", {{"message", "activate"}});
    EXPECT_EQ(Draw(strActivate + strClick), "");
    EXPECT_EQ(Draw(strActivate + strClick + strClick), "b");
}

TEST_F(PenContact, ThePenIsKnownToAnEighthOfAPixelAlsoWhereTheCursorCounts) {
    for (const int nMouseCoord : {0, 1})
        for (const int nEighths : {0, 4}) {
            const std::string strCoord =
                ScriptLine("set", {{"section", "Tablet"}, {"key", "MouseCoord"}, {"value", nMouseCoord}});
            const TWords at{{"x", 160 * 8 + nEighths}};
            EXPECT_EQ(Play(strCoord + BRUSH + Packet(0, 900, at) + Packet(0, 0, at) + END), "");
            // A dot on a pixel's edge and one on its centre are symmetric about it.
            for (int n = 0; n < 7; ++n)
                EXPECT_EQ(Ink(60 + n), Ink((nEighths ? 60 : 59) - n)) << nMouseCoord << nEighths << n;
            EXPECT_EQ(Ink(60), 255);
        }
    EXPECT_EQ(Play(BRUSH + Mouse("ldown", 60) + Mouse("lup", 60) + END), "");
    for (int n = 0; n < 7; ++n) EXPECT_EQ(Ink(60 + n), Ink(60 - n)) << n;
    EXPECT_EQ(Ink(60), 255);
}

TEST_F(PenContact, APenThatLeftTheWindowIsOthersUntilThePointerIsBack) {
    const std::string strStroke = Line(20, 60, 900) + Lift(64);
    const std::string strLeft = Packet(310, 0, {{"idle", true}}) + Line(80, 120, 900) + Lift(124);
    EXPECT_EQ(Draw(strLeft + Mouse("move", 20) + strStroke), "b");
    EXPECT_TRUE(Ink(40) == 255 && Ink(100) == 0);
}

TEST_F(PenContact, TheHandFollowsTheDeviceThatTookHoldAlone) {
    const std::string strSpace = ScriptLine("key", {{"down", VK_Space}});
    const std::string strUp = ScriptLine("key", {{"up", VK_Space}});
    const std::string strView =
        R"({"view":{"width":400,"height":400,"zoom":192,"angle":0,"flipH":false,"flipV":false,"scroll":{"x":200,"y":150}}}
)";
    const auto scrolled = [](int x) {
        return ScriptLine("expect", {{"view", {{"scroll", {{"x", x}, {"y", 150}}}}}});
    };
    // Meanwhile the pen's other end takes no tool; behind the release nothing is dragged.
    const std::string strByMouse = Mouse("ldown", 60) + Line(80, 90, 900, ERASER) + Mouse("move", 30) +
                                   scrolled(230) + Mouse("lup", 30) + Mouse("move", 90) + scrolled(230);
    EXPECT_EQ(Draw(strView + strSpace + strByMouse + strUp + MouseLine(20, 60)), "b");
    const std::string strByPen = Packet(60, 900, DOWN) + Packet(50, 900) + Mouse("move", 90) + scrolled(210) +
                                 Packet(20, 900) + scrolled(240) + Packet(20, 0, UP) + Packet(80, 0) +
                                 scrolled(240);
    EXPECT_EQ(Draw(strView + strSpace + strByPen + strUp + AWAY + MouseLine(20, 60)), "b");
    EXPECT_EQ(Draw(ScriptLine("key", {{"down", VK_Control}}) + MouseLine(20, 60)), "") << "no drawing press";
    // A stroke goes on under Space, and a key that is still held arms nothing in the next window.
    EXPECT_EQ(Draw(Line(20, 60, 900) + strSpace + Line(64, 100, 900) + strUp + Lift(104)), "b");
    EXPECT_EQ(Ink(90), 255);
    EXPECT_EQ(Draw(Commands({ID_VIEW_NEW}) + "{\"activate\":0}\n" + strSpace + "{\"activate\":1}\n" +
                   strSpace + MouseLine(20, 60) + strUp),
              "b");
}

TEST_F(PenContact, AContactThatDrewNothingDrawsNothingInTheNextWindow) {
    EXPECT_EQ(Draw(Commands({ID_VIEW_NEW}) + BRUSH + "{\"activate\":0}\n{\"layer\":{\"visible\":false}}\n" +
                   Line(20, 60, 900) + "{\"layer\":{\"visible\":true}}\n{\"activate\":1}\n" +
                   Line(80, 120, 900) + Lift(124)),
              "");
}

TEST_F(PenContact, TheOtherEndsToolGoesBackWhicheverWindowHearsIt) {
    EXPECT_EQ(Draw(Commands({ID_VIEW_NEW}) + "{\"activate\":0}\n" + Proximity("eraser") +
                   "{\"activate\":1}\n" + Proximity("leave") + "{\"activate\":0}\n" + Line(20, 60, 900) +
                   Lift(64)),
              "b");
}
