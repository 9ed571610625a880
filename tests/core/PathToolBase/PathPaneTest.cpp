// The path tool's pane, its commands and the pointer's shapes in a running session.
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Decimal.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/PathToolBase/ToolOptPathTool.h"
#include "core/PathWidthTool/PathWidthTool.h"
#include "session/seam/Glass.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/PanelSession.h"

namespace {

enum EControl { CLOSED = 1202, WIDTH = 1204, BEGIN_FLAT = 1208, WAVE = 1212, TARGET = 20 };

class PathPane : public CPanelSession {
protected:
    // Adds a vector layer with a selected stroke.
    void Open() {
        m_spLayer = CreateVectorLayer(Active().GetCanvas());
        Canvas().GetRoot().AddLayer(m_spLayer, -1, false);
        Canvas().GetRoot().SetActiveChild(m_spLayer);
        m_spLayer->InsertPath(m_spStroke);
        g_pMainFrame->SwitchTool(TOOL_PATH);
    }
    static const TPanelControl& At(int nId) {
        return *std::ranges::find(Window(ID_PANEL_TOOL_OPTION).GetControls(), nId, &TPanelControl::nId);
    }
    static void Set(int nId, int nValue, const std::wstring& str = {}) {
        Send(ID_PANEL_TOOL_OPTION, EMessage::PanelChange, nId, nValue, str);
    }
    static TPathParam& Param() { return dynamic_cast<CPathTool&>(*g_wpActiveTool.lock()).GetParam(); }

    boost::shared_ptr<CVectorLayerBuffer> m_spLayer;
    const boost::shared_ptr<COpenPathObject> m_spStroke = MakeStroke();
};

} // namespace

TEST_F(PathPane, EachBlockSetsItsOwnValues) {
    const TBytes vBytes = BytesOf(*m_spStroke);
    Play({[&] { Open(); },
          [&] {
              EXPECT_FALSE(At(WIDTH + TARGET).bEnabled || At(WAVE + TARGET).bEnabled);
              EXPECT_EQ(At(WIDTH).strText, L"1.00");
              Set(WIDTH, 0, L" 2.6 ");
              EXPECT_EQ(At(WIDTH).strText, L"2.63");
              Set(WIDTH, 0, L"2,6");
              EXPECT_EQ(At(WIDTH).strText, L"2.63");
              m_spLayer->SelectPath(m_spStroke);
              g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
              for (const int nId : {CLOSED, BEGIN_FLAT, WAVE}) Set(nId, 1);
              Set(WAVE + 1, 6);
              Set(WAVE + 2, 8);
              EXPECT_EQ(Param(), (TPathParam{21, TERM_FLAT, TERM_SHARP, false, true, 128, 20}));
              EXPECT_EQ(BytesOf(*m_spStroke), vBytes);
          },
          [&] {
              const auto& deqUndo = Canvas().GetHistory().GetUndoList();
              EXPECT_TRUE(At(BEGIN_FLAT + TARGET - 1).nValue && !At(BEGIN_FLAT + TARGET).nValue);
              EXPECT_TRUE(At(BEGIN_FLAT + TARGET + 3).nValue && !At(WAVE + TARGET + 1).bEnabled);
              Set(WIDTH + TARGET, 0, L"5");
              Set(WIDTH + TARGET, 0, L"x");
              EXPECT_EQ(At(WIDTH + TARGET).strText, L"5.00");
              EXPECT_TRUE(deqUndo.empty()) << "nothing has changed";
              for (const wchar_t* psz : {L"4.5", L"4", L"6"}) Set(WIDTH + TARGET, 0, psz); // one step
              Set(BEGIN_FLAT + TARGET + 1, 1);
              Set(WIDTH + TARGET, 0, L"7");
              Set(WAVE + TARGET, 1);
              const COpenPathStream& stream = m_spStroke->GetStream();
              EXPECT_TRUE(stream.GetWidth() == 56 && stream.HasWave());
              EXPECT_EQ(stream.GetTerm(false)->GetType(), TERM_SHARP);
              EXPECT_EQ(dynamic_cast<COpenPathRoundTerm&>(*stream.GetTerm(true)).GetGrow()[0], 0x18003u);
              EXPECT_EQ(deqUndo.size(), 4u);
              while (!deqUndo.empty()) {
                  EXPECT_EQ(deqUndo.front()->GetName(), L"パスの変更");
                  Canvas().GetHistory().Undo();
              }
              EXPECT_EQ(BytesOf(*m_spStroke), vBytes);
              EXPECT_EQ(Param().uDefaultWidth, 21u);
              Set(WIDTH + TARGET, 0, L"4.5");
          },
          [&] { Canvas().GetHistory().Undo(); },
          [&] { EXPECT_EQ(At(WIDTH + TARGET).strText, L"5.00") << "the pane follows an undo"; }});
    EXPECT_THROW(CToolOptPathTool().RefreshView({}), internal_error);
}

TEST_F(PathPane, OutlinesAndHandlesAreShownAtOnce) {
    const auto shown = [](int nCommand) {
        const auto& window = dynamic_cast<CSessionCanvasWindow&>(*Active().GetWindow());
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nCommand});
        const_cast<CSessionCanvasWindow&>(window).Paint();
        int nMarked = 0;
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 100; ++x)
                nMarked += window.GetGlass().GetPixel(Active().GetView().ToWindow(CPoint{x, y}))[2] != 255;
        return nMarked;
    };
    Play({[&] { Open(); },
          [&] {
              for (const int nId : {ID_VIEW_OUTLINE, ID_VIEW_ALL_ANCHORS}) {
                  EXPECT_TRUE(g_pMainFrame->IsCommandChecked(nId));
                  const int nWithout = shown(nId);
                  EXPECT_FALSE(g_pMainFrame->IsCommandChecked(nId));
                  EXPECT_GT(shown(nId), nWithout + 20) << nId;
              }
              g_pMainFrame->SwitchTool(TOOL_PATH_WIDTH); // which drags no handles of anchors
              EXPECT_EQ(shown(ID_VIEW_ALL_ANCHORS), shown(ID_VIEW_ALL_ANCHORS));
          }});
}

TEST(PathPointer, ThePointerSaysWhatAPressDoes) {
    const auto pointer = [](const char* pszMessage, int x) {
        return ScriptLine("pointer", {{"message", pszMessage}, {"x", x}, {"y", 50}, {"left", false}});
    };
    const auto cursor = [](const char* psz) { return ScriptLine("expect", {{"cursor", psz}}); };
    std::string str = ScriptLine("view", {{"width", 200}, {"height", 150}}) +
                      ScriptLine("command", "layer-new-vector") + Tool(TOOL_PATH) + pointer("move", 50) +
                      cursor("arrow") + ScriptLine("key", {{"down", VK_Control}}) + cursor("cross");
    for (const int x : {50, 150}) str += pointer("ldown", x) + pointer("lup", x);
    str += cursor("add") + ScriptLine("key", {{"up", VK_Control}}) + cursor("move");
    str += pointer("move", 100) + cursor("add") + pointer("move", 50);
    str += ScriptLine("key", {{"down", VK_Shift}}) + cursor("remove");
    str += ScriptLine("key", {{"up", VK_Shift}}) + cursor("move");
    // Without an event of the pointer: the view or the path goes from under it.
    str += ScriptLine("command", "zoom-in") + cursor("arrow") + ScriptLine("command", "zoom-out") +
           cursor("move") + ScriptLine("command", "edit-undo") + cursor("arrow");
    CScriptedSession session;
    EXPECT_EQ(session.Play(str + LEAVE_UNSAVED), "");
    EXPECT_EQ(session.Play(Tool(TOOL_PATH) + cursor("cross") + LEAVE_UNSAVED),
              "s:2: cursor: expected \"cross\", found \"forbidden\"");
}

TEST(Decimal, PartsAreShownInHundredthsAndReadBack) {
    for (int n = 0; n < 9000; ++n) ASSERT_EQ(ParseParts(FormatParts(n, 8), 8), n);
    EXPECT_EQ(FormatParts(1, 8) + FormatParts(8003, 8), L"0.131000.38");
    EXPECT_EQ(ParseParts(L" .06 ", 8), 0);
    EXPECT_EQ(ParseParts(L".0625", 8), 1);
    for (const wchar_t* psz : {L"", L".", L"1 2", L"-1", L"1,5", L"1.2.3", L"99999999999999999999"})
        EXPECT_FALSE(ParseParts(psz, 8));
}
