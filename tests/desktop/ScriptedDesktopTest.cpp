#include "core/ConfigDialog/PenTrace.h"
#include "core/MainFrame/NewDialog.h"
#include "session/seam/SessionPen.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/TestPlatform.h"

#include <algorithm>

namespace {

struct ScriptedDesktop : testing::Test, CScriptedSession {};

TEST_F(ScriptedDesktop, AnAnswerThatDoesNotFitIsAFailure) {
    const std::pair<const char*, const char*> aCases[] = {
        {R"({"cancel":true})", ""},
        {R"({"box":"yes"})", "the answer of line 1 is for a box"},
        {R"({"dialog":"CAboutDialog"})", "the answer of line 1 is for CAboutDialog"},
        {R"({"dialog":"CNewDialog","color":"1"})", R"(no such field as "color")"},
        {R"({"dialog":"CNewDialog","depth":1})", R"(no such field as "depth")"},
        {R"({"dialog":"CNewDialog","extra":true})", "no extra button"},
        {R"({"dialog":"CNewDialog","width":0})", "限定されています。\" opened, but no answer was queued"},
        {"{\"dialog\":\"CNewDialog\",\"width\":0}}\n{\"answer\":{\"box\":\"yes\"}", "not offer the answer"},
        {"{\"dialog\":\"CNewDialog\",\"width\":0}}\n{\"answer\":{\"box\":\"ok\"}", "refused the answer"},
    };
    for (const auto& [pszAnswer, pszFailure] : aCases) {
        const std::string strFailure =
            Play("{\"answer\":" + std::string(pszAnswer) + "}\n{\"command\":57600}", false);
        EXPECT_NE(strFailure.find(pszFailure), std::string::npos) << strFailure;
        EXPECT_EQ(strFailure.empty(), !*pszFailure) << strFailure;
    }
}

TEST_F(ScriptedDesktop, ARecordMakesAndSavesTheSameDocuments) {
    const std::string strScript = R"(
{"expect":{"frames":0,"enabled":{"57600":true,"57604":false}}}
{"answer":{"dialog":"CNewDialog","width":"12001"}}
{"answer":{"box":"ok"}}
{"answer":{"dialog":"CNewDialog","width":300,"height":200,"color":false}}
{"command":57600}
{"expect":{"box":"ピクセルサイズは 1～12000 に限定されています。"}}
{"expect":{"frames":1,"size":{"width":300,"height":200},"color":false,"modified":false,"path":""}}
{"layer":{"name":"線画","opacity":90}}
{"export":"page.png"}
{"expect":{"modified":true,"title":"名称未設定"}}
{"save":"page.vlm"}
{"expect":{"modified":false,"title":"page.vlm","path":"page.vlm"}}
{"command":12800}
{"close":"frame"}
{"close":"frame"}
{"expect":{"frames":0}}
{"open":"page.png"}
{"expect":{"size":{"width":300,"height":200},"title":"page.png","layers":[{"opacity":255}]}}
{"open":"page.vlm"}
{"expect":{"frames":2,"layers":[{"name":"線画","opacity":90}],"modified":false}}
{"open":"none.vlm"}
{"expect":{"frames":2,"box":"ファイルを開けませんでした。\nFile: 'none.vlm'\n\nファイルがありません。名前を変えたり、移したり、消したりしていないか確かめてください。"}}
{"close":"frame"}
{"command":12900}
{"answer":{"cancel":true}}
{"command":57604}
{"command":57616}
{"answer":{"box":"yes"}}
{"answer":{"file":"other"}}
{"activate":0}
{"close":"frame"}
)";
    EXPECT_EQ(Record(strScript, false), "");
    CScriptedSession player;
    EXPECT_EQ(player.Play(m_strRecord, false), "") << m_strRecord;
    for (const wchar_t* psz : {L"page.vlm", L"page.png", L"other.vlm"}) {
        EXPECT_TRUE(player.m_files.m_mapFiles[psz] == m_files.m_mapFiles[psz]) << m_strRecord;
        EXPECT_FALSE(m_files.m_mapFiles[psz].empty());
    }
}

TEST_F(ScriptedDesktop, ANewDocumentHasTheColourModeOfTheDialog) {
    CSessionLog log("s");
    CSessionDialogs boxes(log);
    CNewDialog dialog(boxes);
    dialog.m_vControls[3].nValue = 1;
    for (const int nColor : {0, 0, 1}) {
        dialog.OnControlMessage({nullptr, EMessage::PanelChange, 3, nColor});
        EXPECT_EQ(dialog.m_vControls[3].bEnabled, nColor == 1) << "light display is of use in colour only";
        EXPECT_EQ(dialog.m_vControls[3].nValue, nColor) << "it gets its mark back";
    }
    EXPECT_EQ(Play(R"({"answer":{"dialog":"CNewDialog","light":true}}
{"command":"file-new"}
{"expect":{"color":false,"colorRaster":true,"checked":{"mode-light":true},"modified":false}}
{"answer":{"dialog":"CNewDialog","color":false,"light":true}}
{"command":"file-new"}
{"expect":{"color":false,"colorRaster":false,"checked":{"mode-light":false,"mode-grey":true}}}
)",
                   false),
              "");
}

TEST_F(ScriptedDesktop, TheTraceOfAPenIsAScriptThatDrawsIt) {
    CSessionPen pen;
    pen.SetDevice({.nPressure = 2047, .nAltitude = 900, .nUnits = 32});
    CPenTrace trace;
    EXPECT_EQ(trace.GetRate(), 0);
    for (int n = 0; n < 250; ++n) {
        TPenReport report;
        report.packet.x = (20 + n) * 32;
        report.packet.y = 90 * 32;
        report.packet.uPressure = n < 240 ? 2047 : 0;
        report.packet.nAltitude = 600;
        report.uTime = static_cast<uint32_t>(9000 + (n < 100 ? 0 : 5000) + n * 5);
        trace.Add(report);
    }
    EXPECT_EQ(trace.GetReports().size(), 200u);
    EXPECT_EQ(trace.GetRate(), 200);
    const std::string strScript = SetBrush("BrushRadius", 16) + trace.FormatScript(pen, {1900, 170}) +
                                  R"({"expect":{"frames":1,"size":{"width":1900,"height":170}}}
{"expect":{"history":{"undo":["ラスタブラシ"]}}}
{"expect":{"pixel":{"x":150,"y":90,"rgba":[0,0,0,255]}}}
{"expect":{"pixel":{"x":40,"y":90,"rgba":[0,0,0,0]}}}
)";
    EXPECT_EQ(Play(strScript, false), "");
}

} // namespace
