// Whole sessions in the filter program, played by scripts.
#include "core/AppModule/MessageQueue.h"
#include "session/seam/SessionWindows.h"
#include "session/seam/VirtualClock.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/TestClient.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

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
        {R"({"expect":{"mark":"b"}})", R"(1: nothing was marked as "b")"},
        {R"({"expect":{"layers":[{},{"active":false}]}})", "1: layers[1].active: expected false, found true"},
        {R"({"expect":{"history":{"redo":["x"]}}})", R"(1: history.redo: expected ["x"], found [])"},
        {R"({"expect":{"enabled":{"12812":false}}})", "1: enabled.12812: expected false, found true"},
        {R"({"expect":{"box":"x"}})", R"(1: box: expected "x", found null)"},
        {R"({"expect":{"pixel":{"x":1,"y":2,"rgba":[255,0,0,254]}}})",
         "1: pixel (1, 2): expected [255,0,0,254], found [255,0,0,255]"},
        {R"({"expect":{"pixel":{"x":200,"y":0,"rgba":[0,0,0,0]}}})",
         "1: pixel: (200, 0) lies outside the canvas"},
        {R"({"command":57600})", "1: command \"file-new\" is disabled"},
        {R"({"layer":{"select":[0,0]}})", "1: there is no layer at that path"},
        {R"({"command":57664})", "1: CAboutDialog opened, but no answer was queued"},
        {"{\"answer\":{\"dialog\":\"CAboutDialog\",\"extra\":true}}\n{\"command\":57664}", ""},
        {"{\"close\":\"main\"}\n{\"answer\":{\"box\":\"no\"}}",
         R"(1: the box "更新されています。保存しますか？" opened, but no answer was queued)"},
        {"{\"answer\":{\"box\":\"no\"}}\n{\"close\":\"main\"}\n\n{\"wait\":5}",
         "4: the session had ended before this line"},
        // A cancelled prompt keeps the frame open, but ends the session.
        {R"({"answer":{"cancel":true}})", ""},
        {"{\"answer\":{\"cancel\":true}}\n{\"close\":\"frame\"}\n{\"expect\":{\"frames\":1}}", ""},
        // An error box must be expected at once.
        {strBad +
             R"({"expect":{"box":"データファイルが破損しています。\n\nバックアップがあれば、そちらを開いてください。"}})",
         ""},
        {strBad,
         "1: error box: データファイルが破損しています。\n\nバックアップがあれば、そちらを開いてください。"},
        {strBad + R"({"expect":{"box":"x"}})",
         R"(2: box: expected "x", found "データファイルが破損しています。\n\nバックアップがあれば、そちらを開いてください。")"},
    };
    for (const auto& [strScript, pszFailure] : aCases)
        EXPECT_EQ(Play(strScript), *pszFailure ? std::string("s:") + pszFailure : "") << strScript;
    EXPECT_EQ(Play(R"({"dump":"d"})", false), "s:1: no document is open");
    m_files.m_bReadOnly = true;
    for (const char* psz :
         {R"({"set":{"section":"s","key":"k","value":0}})", R"({"screenshot":"a.png"})", R"({"dump":"d"})"})
        EXPECT_NE(Play(psz), "") << psz;
}

TEST_F(Player, TheSameScriptGivesTheSameFiles) {
    const std::string strScript = R"(
{"set":{"section":"BrushParam\\RasterBrush","key":"BrushRadius","value":16}}
{"wait":1700}
{"layer":{"opacity":200}}
{"dump":"d"}
{"screenshot":"shot.png"}
)";
    CScriptedSession other;
    EXPECT_EQ(Play(strScript) + other.Play(strScript), "");
    EXPECT_EQ(other.m_files.m_mapFiles, m_files.m_mapFiles);
    EXPECT_NE(m_files.m_mapFiles[L"/settings/Vellumcraft/Vellumcraft.ini"].find("BrushRadius=16"),
              std::string::npos);
    // The window shows the canvas on white with its dark surround, not the initial black.
    const auto spShot = m_codecs.Load(L"shot.png");
    TLockedBits bits;
    ASSERT_TRUE(spShot && spShot->LockBits({0, 0, 1000, 700}, ELockMode::Read, bits));
    EXPECT_EQ(bits.pData[350 * bits.nStride + 500 * 4], 255);
    EXPECT_NE(bits.pData[0], 0);
    spShot->UnlockBits();
    EXPECT_EQ(other.Play("{\"layer\":{\"opacity\":199}}\n{\"dump\":\"d\"}"), "");
    const auto pixelsOf = [](CScriptedSession& session) {
        return nlohmann::json::parse(session.m_files.m_mapFiles[L"d"])["pixels"];
    };
    EXPECT_NE(pixelsOf(other), pixelsOf(*this));
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

// Outlives the windows that use it.
struct TBusyParts {
    CMessageQueue m_ownQueue;
    CVirtualClock m_ownClock;
};

// Real windows of a small screen, which get pointer input while the script plays.
struct CBusyWindows : TBusyParts, CSessionWindows, IEventPump {
    CBusyWindows() : CSessionWindows(m_ownQueue, m_ownClock) { m_ownQueue.SetPump(this); }
    bool Pump(bool bWait) override {
        EXPECT_FALSE(bWait);
        Paint();
        if (CSessionCanvasWindow* pActive = GetActive(); pActive && ++m_nEvents % 8 == 0) {
            for (const EMessage id : {EMessage::MouseMove, EMessage::LButtonDown, EMessage::CaptureChanged,
                                      EMessage::MouseLeave, EMessage::LButtonUp, EMessage::PenPacket})
                m_ownQueue.Post({pActive, id, MOUSE_LEFT, PackPoint(m_nEvents, 60)});
            m_ownQueue.Post({pActive, EMessage::KeyDown, VK_Escape});
            m_ownQueue.Post({GetMain(), EMessage::Command, 12812});
            pActive->SetRect({m_nEvents, 90, m_nEvents + 200, 160});
            pActive->SetCovered(true);
            m_ownQueue.Post({pActive, EMessage::MdiActivate, 0});
        }
        return true;
    }
    int m_nEvents = 0;
};

TEST_F(Player, RealWindowsOnlyShowWhatIsPlayed) {
    std::string strScript = "{\"tool\":2}\n";
    const auto packet = [&](int n, int nPressure) {
        strScript +=
            ScriptLine("packet", {{"x", 3000 + n * 30}, {"y", 2000 + n * n * 3}, {"pressure", nPressure}});
    };
    for (int n = 0; n < 30; ++n) packet(n, n < 20 ? 700 : 0);
    strScript += R"({"wait":1200}
{"pointer":{"message":"ldown","x":400,"y":300}}
{"pointer":{"x":560,"y":380,"left":true}}
{"pointer":{"message":"lup","x":560,"y":380}}
{"wait":700}
{"dump":"state.json"}
)";
    EXPECT_EQ(Play(strScript), "");
    const std::string strAlone = m_files.m_mapFiles[L"state.json"];
    EXPECT_NE(strAlone.find("\"undo\""), std::string::npos);
    CBusyWindows windows;
    m_parts.pWindows = &windows;
    m_parts.pQueue = &windows.m_ownQueue;
    m_parts.fnScreenshot = [&](const std::wstring& strPath) {
        EXPECT_EQ(strPath, L"real.png");
        // The window's state in the middle of the session.
        const CSessionMainWindow& main = *windows.GetMain();
        EXPECT_EQ(main.GetStatusText(1), L"Scale: 100%");
        EXPECT_EQ(main.GetZoomItems().at(static_cast<size_t>(main.GetZoomItem())), L"等角");
        EXPECT_TRUE(main.GetToolBarLooks().Find(57643)->bEnabled);
        EXPECT_FALSE(main.GetToolBarLooks().Find(57644)->bEnabled);
        EXPECT_EQ(main.GetActiveChild()->GetTitle(), L"名称未設定");
        EXPECT_EQ(main.GetActiveChild()->GetScroll().szExtent, (CSize{1000, 700}));
        return main.GetActiveChild()->GetGlass().GetPixel({9, 9})[0] != 0; // painted
    };
    EXPECT_EQ(Play(strScript + "{\"screenshot\":\"real.png\"}\n"), "");
    EXPECT_EQ(m_files.m_mapFiles[L"state.json"], strAlone);
    EXPECT_GT(windows.m_nEvents, 100);
    EXPECT_EQ(windows.GetMain(), nullptr);
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
        {strPen + R"({"mouse":{"x":80,"y":80}})",
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
