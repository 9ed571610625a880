#include "core/RasterKernel/KernelChoice.h"
#include "tests/session/ScriptedSession.h"

namespace {

std::string Stroke(int x, int y, int nPressure = 700, const TWords& more = nullptr) {
    std::string strLines;
    for (int n = 0; n < 30; ++n) {
        const int p = n == 0 || n > 26 ? 0 : nPressure + n;
        strLines +=
            ScriptLine("packet", {{"x", x + n * 61}, {"y", y + n * n}, {"pressure", p}}, more) + Wait(7);
    }
    return strLines;
}

const std::string VIEW = "{\"view\":{\"width\":640,\"height\":480}}\n";

class Recorder : public testing::Test, protected CScriptedSession {
protected:
    void ExpectSame(const std::string& strScript) {
        EXPECT_EQ(Record(strScript), "");
        EXPECT_TRUE(m_spCanvas->GetHistory().CanUndo());
        CScriptedSession player;
        EXPECT_EQ(player.Play(m_strRecord), "");
        EXPECT_TRUE(player.GetDocument() == GetDocument()) << m_strRecord;
    }
    size_t Count(const std::string& strPart) const {
        size_t n = 0;
        for (size_t i = 0; (i = m_strRecord.find(strPart, i)) != std::string::npos; ++i) ++n;
        return n;
    }
};

TEST_F(Recorder, StrokesOfEveryDevice) {
    ExpectSame(VIEW + Stroke(1200, 1000) + "{\"command\":12820}\n" + Stroke(900, 1200) +
               "{\"command\":57643}\n{\"command\":12812}\n" +
               Stroke(800, 1100, 400, {{"altitude", 600}, {"eraser", true}}));
    EXPECT_EQ(Count("\"packet\""), 90u);
    EXPECT_EQ(Count("\"altitude\":600,"), 30u);
    EXPECT_EQ(m_spCanvas->GetHistory().GetUndoList().size(), 4u) << "two layers and two strokes";
    ExpectSame("{\"set\":{\"section\":\"Tablet\",\"key\":\"MouseCoord\",\"value\":0}}\n"
               "{\"tablet\":{\"units\":32,\"pressure\":65535,\"altitude\":900}}\n" +
               VIEW + Stroke(5000, 4000, 50000, {{"azimuth", 77}, {"twist", -9}}));
    EXPECT_EQ(m_strRecord.find("{\"set\":"), 0u);
    // The mouse is accepted only a second after the pen has left.
    const std::string strMouse = "{\"pointer\":{\"message\":\"ldown\",\"x\":250,\"y\":180}}\n"
                                 "{\"pointer\":{\"x\":300,\"y\":230,\"left\":true}}\n"
                                 "{\"pointer\":{\"message\":\"lup\",\"x\":300,\"y\":230}}\n";
    ExpectSame(VIEW + Stroke(1300, 1000) + MarkIdle(strMouse) + Wait(1001) + strMouse +
               "{\"wheel\":120}\n{\"keys\":[16]}\n{\"pointer\":{\"message\":\"leave\"}}\n" + strMouse);
    EXPECT_EQ(Count("ldown"), 3u);
    EXPECT_EQ(Count("{\"wheel\":120}"), 1u);
    EXPECT_EQ(Count("\"idle\""), 3u) << "the record says that nothing took them";
    EXPECT_EQ(Count("{\"keys\":[16]}"), 1u);
}

TEST_F(Recorder, ThePenThatIsFittedInTheSettingsDrawsTheSame) {
    const auto reply = [](const TWords& act) {
        return ScriptLine("reply", {{"dialog", "CConfigDialog"}}, act);
    };
    const auto draw = [this](const std::string& strScript) {
        ExpectSame(strScript);
        return GetDocument();
    };
    const std::string strOpen = "{\"command\":\"app-config\"}\n", strOk = reply(nullptr);
    std::string strFit = reply({{"control", 205}, {"value", 1}});
    for (int n = 0; n < 120; ++n)
        strFit += reply({{"view", 203},
                         {"pen", {{"x", 8 * n}, {"y", 400}, {"pressure", 100 + n * 5 / 2}}},
                         {"time", 5000 + 8 * n},
                         {"width", 420},
                         {"height", 170}});
    strFit += reply({{"control", 206}, {"value", 1}});
    const std::string strBefore = VIEW + Stroke(1200, 1000, 250), strAfter = Stroke(1300, 1500, 250);
    const std::string strPlain = draw(strBefore + strOpen + strOk + strAfter), strFirst = draw(strBefore);
    EXPECT_FALSE(draw(strBefore + strOpen + strFit + strOk + strAfter) == strPlain)
        << "the window that is open draws with the curve";
    EXPECT_EQ(Count("\"pen\":{"), 120u);
    EXPECT_FALSE(draw(strBefore) == strFirst) << "so does the next session";
    EXPECT_EQ(Count("PressHigh"), 1u);
}

TEST_F(Recorder, PanelsKeysLayersAndWhatActsPastTheSeam) {
    const std::string strScript = VIEW + R"({"panel":{"id":12805,"control":8,"value":1}}
{"panel":{"id":12815,"view":1,"message":"ldown","x":70,"y":70,"width":140,"height":140}}
{"panel":{"id":12815,"view":1,"message":"lup","x":70,"y":70,"width":140,"height":140}}
)" + Stroke(1300, 1000) + R"({"tool":2}
{"layer":{"select":[0],"name":"下","opacity":90}}
{"pen":{"x":80,"y":160,"pressure":0}}
{"pen":{"x":80,"y":160,"pressure":512}}
{"pen":{"x":480,"y":360,"pressure":700}}
{"pen":{"x":500,"y":360,"pressure":0}}
{"pen":{"x":520,"y":360,"pressure":0}}
{"pen":{"x":540,"y":360,"pressure":0}}
{"expect":{"enabled":{"57643":true}}}
{"key":{"down":17}}
{"key":{"down":90}}
{"key":{"up":90}}
{"key":{"up":17}}
{"command":57644}
{"command":12800}
{"activate":0}
{"key":{"down":32}}
{"pointer":{"message":"ldown","x":200,"y":150}}
{"pointer":{"x":170,"y":130,"left":true}}
{"pointer":{"message":"lup","x":170,"y":130}}
{"key":{"up":32}}
)" + Stroke(1200, 900);
    ExpectSame(strScript);
    EXPECT_EQ(Count("{\"activate\":0}"), 1u);
    EXPECT_EQ(Count("{\"panel\":{\"control\":8,\"id\":\"panel-tool\""), 1u);
}

TEST_F(Recorder, EveryPanelsChangesAreWrittenAsTheyWereMade) {
    const std::string strLines = R"({"panel":{"control":6,"id":"panel-brush","value":40}}
{"panel":{"control":4,"id":"panel-color","text":"#ff8000","value":0}}
{"panel":{"control":1101,"id":"panel-tool-option","value":1}}
{"panel":{"control":3,"id":"panel-press","value":40}}
{"panel":{"control":7,"id":"panel-press","value":0}}
{"panel":{"control":7,"id":"panel-press","value":0}}
{"panel":{"control":6,"id":"panel-press","rename":1,"text":"G ペン"}}
{"panel":{"control":6,"from":1,"id":"panel-press","to":0}}
{"panel":{"activate":1,"control":6,"id":"panel-press"}}
{"panel":{"id":"panel-press","key":39,"view":1}}
{"panel":{"height":160,"id":"panel-press","message":"ldown","view":1,"width":200,"x":24,"y":140}}
{"panel":{"control":2,"id":"panel-tool","value":1}}
)";
    EXPECT_EQ(Record(VIEW + strLines), "");
    EXPECT_NE(m_strRecord.find(strLines), std::string::npos) << m_strRecord;
}

TEST_F(Recorder, AnswersStandBehindTheLineThatAsks) {
    m_files.m_mapFiles[L"bad.vlm"] = "no project";
    EXPECT_EQ(Record(R"({"open":"bad.vlm"}
{"expect":{"box":"データファイルが破損しています。\nFile: 'bad.vlm'\n\nバックアップがあれば、そちらを開いてください。"}}
{"answer":{"box":"cancel"}}
{"close":"frame"}
{"command":"app-manual"}
{"answer":{"dialog":"CAboutDialog","extra":true}}
{"command":57664}
{"wait":3600000}
{"wait":1})"),
              "");
    EXPECT_EQ(m_strRecord.substr(m_strRecord.find("{\"open\"")), R"({"open":"bad.vlm"}
{"expect":{"box":"データファイルが破損しています。\nFile: 'bad.vlm'\n\nバックアップがあれば、そちらを開いてください。"}}
{"close":"frame"}
{"reply":{"box":"cancel"}}
{"command":"app-manual"}
{"view":{"angle":0,"flipH":false,"flipV":false,"height":700,"scroll":{"x":0,"y":0},"width":1000,"zoom":48}}
{"command":"app-about"}
{"reply":{"dialog":"CAboutDialog","extra":true}}
{"wait":3600000}
{"wait":1}
{"close":"main"}
{"reply":{"box":"no"}}
)");
    EXPECT_EQ(Play(m_strRecord), "");
    EXPECT_EQ(Play("{\"close\":\"frame\"}\n{\"wait\":1}\n{\"reply\":{\"box\":\"no\"}}").substr(0, 4), "s:1:");
}

TEST_F(Recorder, BeginsWithWhatTheUserHasSet) {
    CIniConfig config(CIniConfig::FindPath(m_places), m_files);
    config.GetSection(L"BrushParam")->GetSection(L"RasterBrush")->SetInt(L"BrushRadius", 40);
    config.GetSection(L"Windows")->GetSection(L"Main")->SetInt(L"Left", 7);
    config.GetSection(L"Global")->SetInt(L"MaxHistory", 5);
    const TGlobalSwitches before = g_Switches;
    g_Switches.m_nMaxHistory = 1; // as changed by the program since
    g_Switches.m_bEnableSSE2 = 0;
    ExpectSame(VIEW + Stroke(1200, 1000) + Stroke(1200, 1100));
    EXPECT_EQ(g_Switches.m_nMaxHistory, 1) << "by the record, whatever the store said";
    EXPECT_EQ(m_spCanvas->GetHistory().GetUndoList().size(), 1u);
    EXPECT_FALSE(UsesVectorKernels());
    g_Switches = before;
    UseVectorKernels(true);
    EXPECT_EQ(m_strRecord.substr(0, m_strRecord.find("{\"tablet\"")),
              R"({"set":{"key":"EnableSSE2","section":"Global","value":"0"}}
{"set":{"key":"MaxHistory","section":"Global","value":"1"}}
{"set":{"key":"BrushRadius","section":"BrushParam\\RasterBrush","value":"40"}}
)");
}

} // namespace
