#include "session/seam/SessionWindows.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/TestClient.h"

#include "TestPaths.h"

#include <fstream>

namespace {

struct Player : testing::Test, CScriptedSession {};

TEST_F(Player, StepsActAndTheirTracesAreSeen) {
    EXPECT_EQ(Play(R"(
{"view":{"width":640,"height":480}}
{"key":{"down":17}}
{"key":{"down":39}}
{"key":{"down":39}}
{"key":{"up":17}}
{"key":{"down":39}}
{"expect":{"view":{"angle":180}}}
{"command":"zoom-in"}
{"try":"view-rotate-right"}
{"command":12811}
{"expect":{"view":{"client":{"width":640,"height":480},"zoom":96,"angle":270,"flipH":true,"flipV":false,"extent":{"width":640,"height":580}}}}
{"expect":{"checked":{"12811":true,"12810":false},"enabled":{"edit-redo":false,"57643":true,"57604":false}}}
{"command":12800}
{"expect":{"frames":2,"view":{"zoom":48,"angle":0}}}
{"close":"frame"}
{"expect":{"frames":1,"view":{"zoom":96}}}
{"layer":{"opacity":127}}
{"expect":{"layers":[{"active":false},{"active":true,"opacity":127}],"pixel":{"x":1,"y":2,"rgba":[255,0,0,127]}}}
{"layer":{"select":[0],"name":"紙","visible":false}}
{"expect":{"layers":[{"active":true,"name":"紙","visible":false},{"active":false,"visible":true}]}}
{"layer":{"select":[1],"visible":false}}
{"expect":{"pixel":{"x":1,"y":2,"rgba":[0,0,0,0]},"modified":true}}
{"expect":{"history":{"undo":["レイヤー追加","レイヤー追加","不透明度変更","レイヤー名変更"]}}}
{"command":57643}
{"command":57643}
{"command":57643}
{"command":57643}
{"expect":{"layers":[],"history":{"undo":[],"redo":["レイヤー追加","レイヤー追加","不透明度変更","レイヤー名変更"],"first":"<< 初期状態 >>"}}}
{"command":57644}
{"expect":{"layers":[{"kind":"raster","opacity":255,"children":[]}],"history":{"undo":["レイヤー追加"]}}}
)"),
              "");
}

TEST_F(Player, WhatCannotBeDoneOrIsNotAsExpectedFails) {
    m_files.m_mapFiles[L"bad.vlm"] = "no project";
    const std::string strBad = "{\"open\":\"bad.vlm\"}\n";
    const std::pair<std::string, const char*> aCases[] = {
        {R"({"expect":{"size":{"width":200,"height":151}}})", "1: size.height: expected 151, found 150"},
        {"{\"mark\":\"a\"}\n{\"layer\":{\"opacity\":9}}\n{\"try\":57643}\n{\"try\":57644}\n{\"try\":57644}\n"
         "{\"try\":57643}\n{\"expect\":{\"mark\":\"a\"}}",
         ""},
        {"{\"mark\":\"a\"}\n{\"command\":13100}\n{\"expect\":{\"mark\":\"a\"}}",
         "3: mark.color: expected true, found false"},
        {R"({"expect":{"layers":[{},{"active":false}]}})", "1: layers[1].active: expected false, found true"},
        {R"({"expect":{"enabled":{"12812":false}}})", "1: enabled.12812: expected false, found true"},
        {R"({"expect":{"pixel":{"x":1,"y":2,"rgba":[255,0,0,254]}}})",
         "1: pixel (1, 2): expected [255,0,0,254], found [255,0,0,255]"},
        {R"({"expect":{"pixel":{"x":200,"y":0,"rgba":[0,0,0,0]}}})",
         "1: pixel: (200, 0) lies outside the canvas"},
        {R"({"layer":{"select":[0,0]}})", "1: there is no layer at that path"},
        {R"({"command":57664})", "1: CAboutDialog opened, but no answer was queued"},
        {"{\"answer\":{\"dialog\":\"CAboutDialog\",\"extra\":true}}\n{\"command\":57664}", ""},
        {"{\"close\":\"main\"}\n{\"answer\":{\"box\":\"no\"}}",
         "1: the box \"更新されています。保存しますか？\n\n名称未設定\" opened, but no answer was queued"},
        {"{\"answer\":{\"box\":\"no\"}}\n{\"close\":\"main\"}\n\n{\"wait\":5}",
         "4: the session had ended before this line"},
        {"{\"answer\":{\"cancel\":true}}\n{\"close\":\"frame\"}\n{\"expect\":{\"frames\":1}}", ""},
        // An error box must be expected at once.
        {strBad +
             R"({"expect":{"box":"データファイルが破損しています。\nFile: 'bad.vlm'\n\nバックアップがあれば、そちらを開いてください。"}})",
         ""},
        {strBad, "1: error box: データファイルが破損しています。\nFile: "
                 "'bad.vlm'\n\nバックアップがあれば、そちらを開いてください。"},
    };
    for (const auto& [strScript, pszFailure] : aCases)
        EXPECT_EQ(Play(strScript), *pszFailure ? std::string("s:") + pszFailure : "") << strScript;
    EXPECT_EQ(Play(R"({"dump":"d"})", false), "s:1: no document is open");
    m_files.m_bReadOnly = true;
    for (const char* psz :
         {R"({"set":{"section":"s","key":"k","value":0}})", R"({"screenshot":"a.png"})", R"({"dump":"d"})"})
        EXPECT_NE(Play(psz), "") << psz;
}

TEST_F(Player, TheSampleScriptPlays) {
    std::ifstream file(VELLUM_SOURCE "/docs/examples/first-look.jsonl");
    EXPECT_EQ(Play({std::istreambuf_iterator<char>(file), {}}), "");
    EXPECT_EQ(m_files.m_mapFiles.count(L"screenshot.png"), 1u);
}

TEST_F(Player, AWaitStopsAtEveryTimerAndNoWindowKeepsTheSessionOpen) {
    CSessionPlatform session(m_parts, ParseScript("{\"wait\":250}\n{\"wait\":60}", "s")), empty(m_parts);
    TLog vLog;
    CTestClient main("main", vLog), child("child", vLog);
    main.m_fnHandle = [](const TMessage&) { return true; }; // so that no Close destroys it
    IWindowFactory& windows = session.GetPlatform().windows;
    windows.CreateCanvasWindow(*windows.CreateMainWindow(main, {}), child, {})->SetTimer(7, 100);
    CMessageLoop().Run(session.GetPlatform().queue);
    EXPECT_EQ(child.Got(EMessage::Timer).size(), 3u);
    EXPECT_EQ(vLog, (TLog{"main close", "main close", "main destroy", "child destroy", "child final",
                          "main final"}));
    EXPECT_EQ(session.GetClock().GetTickCount(), 310u);
    CMessageLoop().Run(empty.GetPlatform().queue);
    EXPECT_EQ(session.GetFailure() + empty.GetFailure(), "");
}

TEST_F(Player, ALineThatNothingTakesFails) {
    const std::string strPen = "{\"pen\":{\"x\":80,\"y\":80,\"pressure\":0}}\n";
    const std::pair<std::string, const char*> aCases[] = {
        {R"({"packet":{"x":8000,"y":80,"pressure":9}})",
         "s:1: nothing takes the pen beside the view of 1000 by 700 pixels"},
        {R"({"packet":{"x":8000,"y":80,"pressure":9,"idle":true}})", ""},
        {R"({"packet":{"x":7992,"y":80,"pressure":9,"covered":true}})", ""},
        {strPen + R"({"pointer":{"x":80,"y":80}})",
         "s:2: nothing takes the mouse while the pen draws and within a second of it"},
        {strPen + R"({"pointer":{"x":80,"y":80,"idle":true}})", ""},
        {strPen + "{\"wait\":1000}\n" + R"({"mouse":{"message":"ldown","x":80,"y":80}})" + "\n" + strPen,
         "s:4: nothing takes the pen while the mouse draws"},
        // Without a tool that could draw no input is missed.
        {R"({"layer":{"visible":false}})"
         "\n"
         R"({"packet":{"x":8000,"y":80,"pressure":9}})",
         ""}};
    for (const auto& [strScript, pszFailure] : aCases) EXPECT_EQ(Play(strScript), pszFailure) << strScript;
}

} // namespace
