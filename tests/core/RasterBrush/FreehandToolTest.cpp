// From pointer events to control points and pixels, through a running session.
#include "core/AppModule/CommandIds.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"
#include "tests/session/ScriptedSession.h"

#include <gtest/gtest.h>

namespace {

std::string Pen(int x, int y, int nPressure) { return PenAt({{x * 8, y * 8, nPressure}}); }

// A pen line from left to right, `nPoints` steps of 4 pixels, and its lift.
std::string PenLine(int x, int y, int nPoints, int nPressure, int nLifted = 4) {
    std::string str;
    for (int n = 0; n < nPoints + nLifted; ++n) str += Pen(x + n * 4, y, n < nPoints ? nPressure : 0);
    return str;
}

const std::string BRUSH = SetBrush("BrushRadius", 12) + Tool(2);

class FreehandTools : public testing::Test {
protected:
    // Plays a script; the state of the document at its end.
    std::string Digest(const std::string& strScript) {
        CScriptedSession session;
        EXPECT_EQ(session.Play(strScript + Wait(10) + "{\"dump\":\"/d\"}\n" + LEAVE_UNSAVED), "");
        const std::string strState = session.m_files.m_mapFiles[L"/d"];
        return strState.substr(strState.find("\"pixels\""), 60);
    }
};

} // namespace

TEST_F(FreehandTools, EscapeCancelsAndALeavingPenCommits) {
    const std::string strBlank = Digest(BRUSH);
    const std::string strHalf = BRUSH + PenLine(20, 50, 20, 700, 0);
    const std::string strMove = "{\"pointer\":{\"message\":\"move\",\"x\":9,\"y\":9,\"idle\":true}}\n";
    EXPECT_EQ(Digest(strHalf + strMove + "{\"key\":{\"down\":27}}\n"), strBlank);
    // The pen leaving commits what it drew.
    CScriptedSession session;
    EXPECT_EQ(session.Play(strHalf + R"({"proximity":"leave"}
{"wait":10}
{"expect":{"history":{"undo":["レイヤー追加","レイヤー追加","ラスタブラシ"],"redo":[]}}}
)" + LEAVE_UNSAVED),
              "");
    // While a stroke runs there is nothing to undo.
    EXPECT_NE(session.Play(strHalf + "{\"command\":57643}\n").find("is disabled"), std::string::npos);
}

TEST_F(FreehandTools, XAloneSwapsTheColours) {
    for (const auto& [nHeld, nBrush] : {std::pair{VK_Shift, 255}, {VK_Control, 0}, {VK_Alt, 0}}) {
        CScriptedSession session;
        const std::string strKeys = ScriptLine("key", {{"down", nHeld}}) + "{\"key\":{\"down\":88}}\n" +
                                    ScriptLine("key", {{"up", nHeld}}) + "{\"pointer\":{\"x\":9,\"y\":9}}\n";
        EXPECT_EQ(session.Play(SetBrush("BackColor", 255) + Tool(2) + strKeys + LEAVE_UNSAVED), "");
        CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", session.m_files);
        EXPECT_EQ(config.GetSection(L"BrushParam")->GetSection(L"RasterBrush")->GetInt(L"BrushColor", 0),
                  nBrush)
            << nHeld;
    }
}

TEST_F(FreehandTools, MouseDrawsAtFullPressureAndNotBesideThePen) {
    const auto mouse = [](const char* psz, int x, int y) {
        return ScriptLine("mouse", {{"message", psz}, {"x", x * 8}, {"y", y * 8}});
    };
    const std::string strStroke = mouse("move", 20, 20) + mouse("ldown", 20, 20) + mouse("move", 60, 20) +
                                  mouse("move", 100, 30) + mouse("lup", 100, 30);
    const std::string strBlank = Digest(BRUSH);
    EXPECT_NE(Digest(BRUSH + strStroke), strBlank);
    // Within a second of the pen it is the pen's own echo.
    EXPECT_EQ(Digest(BRUSH + Pen(1, 1, 0) + MarkIdle(strStroke)), strBlank);
    EXPECT_NE(Digest(BRUSH + Pen(1, 1, 0) + Wait(1000) + strStroke), strBlank);
    // The eraser takes paint away and leaves an empty layer alone.
    EXPECT_EQ(Digest(Tool(3) + strStroke), strBlank);
    EXPECT_NE(Digest(BRUSH + strStroke + Tool(3) + strStroke), Digest(BRUSH + strStroke));
    // A hidden layer cannot be drawn on.
    const std::string strHidden = "{\"layer\":{\"visible\":false}}\n";
    EXPECT_EQ(Digest(strHidden + BRUSH + strStroke), Digest(strHidden + BRUSH));
}

TEST_F(FreehandTools, AHundredStrokesAreTheSameInEveryFormOfTheKernels) {
    std::string strScript;
    for (int n = 0; n < 100; ++n) {
        constexpr const char* TOOLS[]{"RasterBrush", "RasterPencil", "RasterEraser"};
        const std::pair<const char*, int> aValues[]{
            {"BrushRadius", 1 + n * 7 % 60}, {"BlurLevel", n * 25 % 125}, {"BrushAlpha", 255 - n * 2},
            {"Spray", n % 4 * 20},           {"WaveEnable", n % 2},       {"WaveDistMax", 3}};
        for (const auto& [pszKey, nValue] : aValues) strScript += SetBrush(pszKey, nValue, TOOLS[n % 3]);
        strScript += Tool(std::array{2, 8, 3}[static_cast<size_t>(n % 3)]) +
                     PenLine(n % 50, 5 + n, 12 + n % 10, 300 + n * 7);
    }
    const std::string strVector = Digest(strScript);
    g_Switches.m_bEnableSSE2 = 0;
    EXPECT_EQ(Digest(strScript), strVector);
    g_Switches.m_bEnableSSE2 = 1;
    EXPECT_NE(strVector, Digest(""));
}
