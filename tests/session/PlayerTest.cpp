// Whole sessions in the filter delivery, played by scripts.
#include "core/AppModule/MessageQueue.h"
#include "core/Base/Text.h"
#include "session/SessionWindows.h"
#include "session/VirtualClock.h"
#include "tests/session/ScriptedSession.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace {

class Player : public testing::Test {
protected:
    nlohmann::json State(const wchar_t* pszPath = L"d") {
        return nlohmann::json::parse(m_session.m_files.m_mapFiles[pszPath]);
    }

    CScriptedSession m_session;
};

TEST_F(Player, CommandsChangeTheViewAndLeaveTheirTraces) {
    EXPECT_EQ(m_session.Play(R"(
{"view":{"width":640,"height":480}}
{"expect":{"view":{"client":{"width":640,"height":480},"extent":{"width":640,"height":480},"zoom":48}}}
{"command":12820}
{"command":12812}
{"command":12811}
{"expect":{"view":{"zoom":96,"angle":90,"flipH":true,"flipV":false,"extent":{"width":640,"height":580}}}}
{"expect":{"checked":{"12811":true,"12810":false},"enabled":{"57644":false,"57643":true,"57604":false},"frames":1}}
{"command":12800}
{"expect":{"frames":2,"view":{"zoom":48,"angle":0}}}
{"close":"frame"}
{"expect":{"frames":1,"view":{"zoom":96}}}
{"command":57643}
{"command":57643}
{"expect":{"layers":[],"history":{"undo":[],"redo":["レイヤー追加","レイヤー追加"],"first":"<< 初期状態 >>"}}}
{"command":57644}
{"expect":{"layers":[{"name":"below","kind":"raster","opacity":255,"children":[]}],"history":{"undo":["レイヤー追加"]}}}
)"),
              "");
}

TEST_F(Player, AWrongExpectationFailsWithBothValues) {
    const auto failureOf = [&](const std::string& strExpect) {
        const std::string strFailure = m_session.Play("\n{\"expect\":" + strExpect + "}\n{\"wait\":1}");
        return strFailure.substr(0, 5) == "s:2: " ? strFailure.substr(5)
                                                  : "no failure of line 2: " + strFailure;
    };
    EXPECT_EQ(failureOf(R"({"size":{"width":200,"height":151}})"), "size.height: expected 151, found 150");
    EXPECT_EQ(failureOf(R"({"title":"x"})"), "title: expected \"x\", found \"名称未設定\"");
    EXPECT_EQ(failureOf(R"({"modified":false})"), "modified: expected false, found true");
    EXPECT_EQ(failureOf(R"({"layers":[{},{"active":false}]})"),
              "layers[1].active: expected false, found true");
    EXPECT_EQ(failureOf(R"({"history":{"redo":["x"]}})"), "history.redo: expected [\"x\"], found []");
    EXPECT_EQ(failureOf(R"({"frames":2})"), "frames: expected 2, found 1");
    EXPECT_EQ(failureOf(R"({"enabled":{"12812":false}})"), "enabled.12812: expected false, found true");
    EXPECT_EQ(failureOf(R"({"checked":{"12810":true}})"), "checked.12810: expected true, found false");
    EXPECT_EQ(failureOf(R"({"box":"x"})"), "box: expected \"x\", found null");
    EXPECT_EQ(failureOf(R"({"pixel":{"x":1,"y":2,"rgba":[255,0,0,254]}})"),
              "pixel (1, 2): expected [255,0,0,254], found [255,0,0,255]");
    EXPECT_EQ(failureOf(R"({"pixel":{"x":200,"y":0,"rgba":[0,0,0,0]}})"),
              "pixel: (200, 0) lies outside the canvas");
    EXPECT_EQ(failureOf(R"({"pixels":"0"})").substr(0, 28), "pixels: expected \"0\", found ");
    EXPECT_EQ(m_session.Play(R"({"expect":{"pixel":{"x":1,"y":2,"rgba":[255,0,0,255]}}})"), "");
}

TEST_F(Player, StepsThatCannotBeDoneFail) {
    EXPECT_EQ(m_session.Play("{\"command\":57600}"), "s:1: command 57600 is disabled");
    EXPECT_EQ(m_session.Play("{\"save\":\"a.vlm\"}"), "s:1: command 57604 is disabled");
    EXPECT_EQ(m_session.Play("{\"layer\":{\"select\":[0,0]}}"), "s:1: there is no layer at that path");
    EXPECT_EQ(m_session.Play("{\"dump\":\"d\"}", {}), "s:1: no document is open");
    EXPECT_EQ(m_session.Play("{\"close\":\"main\"}\n{\"answer\":{\"box\":\"no\"}}"),
              "s:1: the box \"更新されています。保存しますか？\" opened, but no answer was queued");
    EXPECT_EQ(m_session.Play("{\"answer\":{\"box\":\"no\"}}\n{\"close\":\"main\"}\n\n{\"wait\":5}"),
              "s:4: the session had ended before this line");
    EXPECT_EQ(m_session.Play("{\"command\":57664}"), "s:1: CAboutDialog opened, but no answer was queued");
    EXPECT_EQ(
        m_session.Play("{\"answer\":{\"dialog\":\"CAboutDialog\",\"extra\":true}}\n{\"command\":57664}"), "");
    m_session.m_files.m_bReadOnly = true;
    EXPECT_EQ(m_session.Play("{\"set\":{\"section\":\"Tablet\",\"key\":\"MouseCoord\",\"value\":0}}"),
              "s:1: the setting Tablet, MouseCoord cannot be written");
    EXPECT_EQ(m_session.Play("{\"screenshot\":\"a.png\"}"), "s:1: the screenshot a.png cannot be taken");
    EXPECT_EQ(m_session.Play("{\"dump\":\"d\"}"), "s:1: d cannot be written");
}

TEST_F(Player, AnErrorBoxHasToBeExpectedAtOnce) {
    m_session.m_files.m_mapFiles[L"bad.vlm"] = "no project";
    const std::string strText = "データファイルが破損しています。";
    EXPECT_EQ(
        m_session.Play("{\"open\":\"bad.vlm\"}\n{\"expect\":{\"box\":\"" + strText + "\"}}\n{\"wait\":1}"),
        "");
    EXPECT_EQ(m_session.Play("\n{\"open\":\"bad.vlm\"}\n{\"wait\":1}"), "s:2: error box: " + strText);
    EXPECT_EQ(m_session.Play("{\"open\":\"bad.vlm\"}"), "s:1: error box: " + strText);
    EXPECT_EQ(m_session.Play("{\"open\":\"bad.vlm\"}\n{\"expect\":{\"frames\":1}}\n{\"wait\":1}"),
              "s:1: error box: " + strText);
    EXPECT_EQ(m_session.Play("{\"open\":\"bad.vlm\"}\n{\"expect\":{\"box\":\"x\"}}"),
              "s:2: box: expected \"x\", found \"" + strText + "\"");
    ASSERT_EQ(m_session.m_vShown.size(), 2u); // the save prompt on the way out
    EXPECT_EQ(m_session.m_vShown[0].strText, FromUtf8(strText));
}

TEST_F(Player, KeysReachTheShortcutsAndAreHeld) {
    EXPECT_EQ(m_session.Play(R"(
{"key":{"down":39}}
{"key":{"up":39}}
{"expect":{"view":{"angle":0}}}
{"key":{"down":17}}
{"key":{"down":39}}
{"key":{"down":39}}
{"key":{"up":17}}
{"key":{"down":39}}
{"expect":{"view":{"angle":180}}}
{"key":{"down":36}}
{"expect":{"view":{"angle":0}}}
{"command":12812}
{"key":{"down":36}}
{"expect":{"view":{"angle":90}}}
)"),
              "");
}

TEST_F(Player, LayersAreSelectedAndChanged) {
    EXPECT_EQ(m_session.Play(R"(
{"layer":{"opacity":127}}
{"expect":{"layers":[{"active":false},{"active":true,"opacity":127}],"pixel":{"x":1,"y":2,"rgba":[255,0,0,127]}}}
{"layer":{"select":[0],"name":"紙","visible":false}}
{"expect":{"layers":[{"active":true,"name":"紙","visible":false},{"active":false,"visible":true}]}}
{"layer":{"select":[1],"visible":false}}
{"expect":{"pixel":{"x":1,"y":2,"rgba":[0,0,0,0]},"modified":true}}
)"),
              "");
}

TEST_F(Player, TheSameScriptGivesTheSameDump) {
    const std::string strScript = R"(
{"set":{"section":"BrushParam\\RasterBrush","key":"BrushRadius","value":16}}
{"command":12813}
{"wait":1700}
{"layer":{"opacity":200}}
{"dump":"d"}
{"screenshot":"shot.png"}
)";
    ASSERT_EQ(m_session.Play(strScript), "");
    CScriptedSession other;
    ASSERT_EQ(other.Play(strScript), "");
    EXPECT_EQ(other.m_files.m_mapFiles, m_session.m_files.m_mapFiles);
    EXPECT_NE(m_session.m_files.m_mapFiles[L"/settings/Vellumcraft/Vellumcraft.ini"].find("BrushRadius=16"),
              std::string::npos);
    const nlohmann::json state = State();
    EXPECT_EQ(state["pixels"].get<std::string>().size(), 16u);
    EXPECT_EQ(state["view"]["angle"], 270);
    // The window shows the canvas on white with its dark surround, not the black that nobody painted.
    const auto spShot = m_session.m_codecs.Load(L"shot.png");
    ASSERT_TRUE(spShot);
    TLockedBits bits;
    ASSERT_TRUE(spShot->LockBits({0, 0, 1000, 700}, ELockMode::Read, bits));
    EXPECT_EQ(bits.pData[350 * bits.nStride + 500 * 4], 255);
    EXPECT_NE(bits.pData[0], 0);
    spShot->UnlockBits();
    ASSERT_EQ(m_session.Play("{\"layer\":{\"opacity\":199}}\n{\"dump\":\"d\"}"), "");
    EXPECT_NE(State()["pixels"], state["pixels"]);
}

TEST_F(Player, TheSampleScriptPlays) {
    std::ifstream file(VELLUM_SOURCE "/docs/examples/first-look.jsonl");
    const std::string strScript{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(m_session.Play(strScript), "");
    EXPECT_EQ(m_session.m_files.m_mapFiles.count(L"screenshot.png"), 1u);
}

/// A bare client that counts its timer messages and may refuse to close.
struct CStubborn : IWindowClient {
    bool OnMessage(const TMessage& msg) override {
        if (msg.id == EMessage::Timer) vTicks.push_back(pClock->GetTickCount());
        nClose += msg.id == EMessage::Close;
        return msg.id == EMessage::Timer || (msg.id == EMessage::Close && bRefuses);
    }
    void OnPaint(IPaintTarget&, const CRect&) override {}
    void OnFinalMessage() override { bGone = true; }

    IClock* pClock = nullptr;
    std::vector<uint32_t> vTicks;
    int nClose = 0;
    bool bRefuses = false;
    bool bGone = false;
};

TEST_F(Player, AWaitRunsTimersAtTheirOwnTimes) {
    CSessionPlatform session(m_session.m_parts, ParseScript("{\"wait\":250}\n{\"wait\":60}", "s"));
    CStubborn main, child;
    child.pClock = &session.GetClock();
    const TPlatform& platform = session.GetPlatform();
    IMainWindow* pMain = platform.windows.CreateMainWindow(main, {});
    platform.windows.CreateCanvasWindow(*pMain, child, {})->SetTimer(7, 100);
    CMessageLoop().Run(platform.queue);
    EXPECT_EQ(child.vTicks, (std::vector<uint32_t>{100, 200, 300}));
    EXPECT_EQ(session.GetClock().GetTickCount(), 310u);
    EXPECT_EQ(session.GetFailure(), "");
    EXPECT_TRUE(child.bGone);
}

TEST_F(Player, AWindowThatRefusesToCloseEndsAllTheSame) {
    CSessionPlatform session(m_session.m_parts);
    CStubborn main;
    main.bRefuses = true;
    session.GetPlatform().windows.CreateMainWindow(main, {});
    CMessageLoop().Run(session.GetPlatform().queue);
    EXPECT_EQ(main.nClose, 2);
    EXPECT_TRUE(main.bGone);
    // Nor does a session without any window hang.
    CSessionPlatform empty(m_session.m_parts);
    CMessageLoop().Run(empty.GetPlatform().queue);
    EXPECT_EQ(empty.GetFailure(), "");
}

TEST_F(Player, ACancelledPromptDoesNotKeepTheSessionOpen) {
    EXPECT_EQ(m_session.Play("{\"answer\":{\"cancel\":true}}"), "");
    EXPECT_EQ(m_session.m_vShown.size(), 2u);
    EXPECT_EQ(
        m_session.Play("{\"answer\":{\"cancel\":true}}\n{\"close\":\"frame\"}\n{\"expect\":{\"frames\":1}}"),
        "");
}

TEST_F(Player, PlaysInWindowsOfAnotherWindowSystem) {
    struct CEvents : IEventPump {
        explicit CEvents(CSessionWindows& windows) : m_windows(windows) {}
        bool Pump(bool bWait) override {
            EXPECT_FALSE(bWait);
            m_windows.Paint();
            return true;
        }
        CSessionWindows& m_windows;
    };
    CMessageQueue queue;
    CVirtualClock wallClock;
    CSessionWindows windows(queue, wallClock);
    CEvents events(windows);
    std::wstring strShot;
    TSessionParts& parts = m_session.m_parts;
    parts.pWindows = &windows;
    parts.pPump = &events;
    parts.pQueue = &queue;
    parts.fnScreenshot = [&](const std::wstring& strPath) {
        strShot = strPath;
        return windows.GetActive() && windows.GetActive()->GetGlass().GetPixel({500, 350})[0] == 255;
    };
    EXPECT_EQ(m_session.Play(R"(
{"command":12812}
{"wait":5000}
{"screenshot":"real.png"}
{"expect":{"view":{"angle":90}}}
)"),
              "");
    EXPECT_EQ(strShot, L"real.png");
    EXPECT_EQ(windows.GetMain(), nullptr);
}

} // namespace
