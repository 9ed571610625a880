// The panels' rules in a running session, over windows that exist only as state.
#include "core/Panels/Panels.h"
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/IniConfig.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/RasterBrush/ToolOptRasterBrush.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/TestPlatform.h"

#include <algorithm>

namespace {

/// Keeps what a view paints.
struct CPixels : IPaintTarget {
    void Blit(const uint8_t* pPixels, int nStride, CSize sz, const CRect&) override {
        m_strPixels.assign(reinterpret_cast<const char*>(pPixels), static_cast<size_t>(nStride * sz.cy));
    }
    std::string m_strPixels;
};

class Panels : public testing::Test {
protected:
    // One session; each step finds everything before it handled.
    void Play(const std::vector<std::function<void()>>& vSteps) {
        for (const auto& fn : vSteps) m_outside.AddStep([fn](CPlayer&) { fn(); });
        m_outside.Run([&](const TPlatform& platform) {
            CSessionScope scope(platform);
            CreateMainFrame();
            g_pMainFrame->OpenFrame(CreateCanvasFrame(MakePage({100, 80})));
            scope.Run();
        });
    }
    static CSessionPanelWindow& Window(int nPanel) {
        return dynamic_cast<CSessionPanelWindow&>(*g_pMainFrame->GetPanels().Find(nPanel)->GetWindow());
    }
    /// The visible control with a label or a text.
    static const TPanelControl& Control(int nPanel, const std::wstring& strName) {
        for (const TPanelControl& control : Window(nPanel).GetControls())
            if (control.bVisible && (control.strLabel == strName || control.strText == strName))
                return control;
        throw std::runtime_error("no such control");
    }
    static const TPanelControl& Control(int nPanel, TPanelControl::EKind kind) {
        return *std::find_if(Window(nPanel).GetControls().begin(), Window(nPanel).GetControls().end(),
                             [&](const TPanelControl& control) { return control.kind == kind; });
    }
    static void Send(int nPanel, EMessage id, int64_t wParam, int64_t lParam, const std::wstring& str = {}) {
        SendMessage({&Window(nPanel), id, wParam, lParam, str});
    }
    /// The user gives a control a value, a combo the row of a text.
    static void Change(int nPanel, const std::wstring& strName, int nValue) {
        Send(nPanel, EMessage::PanelChange, Control(nPanel, strName).nId, nValue);
    }
    static void Choose(int nPanel, const std::wstring& strName, const std::wstring& strRow) {
        const auto& vRows = Control(nPanel, strName).vRows;
        const auto it = std::find(vRows.begin(), vRows.end(), strRow);
        ASSERT_NE(it, vRows.end());
        Change(nPanel, strName, static_cast<int>(it - vRows.begin()));
    }
    static CCanvasFrame& Active() { return *g_wpActiveFrame.lock(); }
    static CRasterBrushBase& Tool() { return dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock()); }
    static std::string Paint(const TPanelControl& view, CSize sz = {200, 64}) {
        CPixels pixels;
        view.pView->OnPaint(pixels, {sz, 0xEFEFEF, 0, true, false});
        return pixels.m_strPixels;
    }
    std::wstring Setting(const wchar_t* pszSection, const wchar_t* pszKey) {
        CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
        return config.GetSection(pszSection)->GetString(pszKey, L"-");
    }

    CTestPlatform m_outside;
};

} // namespace

TEST_F(Panels, CommandsShowAndHideAndPlacesAreKept) {
    const CRect rc(50, 60, 350, 460);
    Play({[&] {
        for (const int nId : {12803, 12804, 12805, 12809, 12815})
            EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(nId) && g_pMainFrame->IsCommandChecked(nId)) << nId;
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(12801) || g_pMainFrame->IsCommandEnabled(12802));
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_PANEL_BRUSH});
        EXPECT_FALSE(g_pMainFrame->IsCommandChecked(ID_PANEL_BRUSH));
        Window(ID_PANEL_PRESS).SetPlace({EPanelDock::Float, rc, true});
        Window(ID_PANEL_COLOR).SetPlace({EPanelDock::Float, CRect({90000, 0}, {300, 200}), true});
        TPanelPlace place = Window(ID_PANEL_TOOL_OPTION).GetPlace();
        place.bFront = true;
        Window(ID_PANEL_TOOL_OPTION).SetPlace(place);
    }});
    EXPECT_EQ(Setting(L"Windows\\Brush", L"IsShow"), L"0");
    EXPECT_EQ(Setting(L"Windows\\Press", L"Width"), L"300");
    EXPECT_EQ(Setting(L"Windows\\Tool", L"Left"), L"-"); // nothing changed
    Play({[&] {
        EXPECT_FALSE(Window(ID_PANEL_BRUSH).IsShown());
        EXPECT_TRUE(Window(ID_PANEL_PRESS).GetPlace().dock == EPanelDock::Float);
        EXPECT_EQ(Window(ID_PANEL_PRESS).GetPlace().rc, rc);
        EXPECT_TRUE(Window(ID_PANEL_TOOL_OPTION).GetPlace().bFront);
        EXPECT_EQ(Window(ID_PANEL_COLOR).GetPlace().rc.right, 1920); // back onto the screen
    }});
}

TEST_F(Panels, AChangedToolIsInTheStoreBeforeItIsMadeAgain) {
    Play({[&] {
              Choose(ID_PANEL_TOOL_OPTION, L"補完強度", L"12");
              Tool().GetFreehand().m_clrBrush = 0x123456;
              m_outside.m_files.m_nWrites = 0;
              g_pMainFrame->SwitchTool(TOOL_BRUSH);
              EXPECT_EQ(m_outside.m_files.m_nWrites, 1) << "one file for all of the tool's settings";
              EXPECT_EQ(Tool().GetParam().CurveStrength, 12);
              EXPECT_EQ(Tool().GetFreehand().m_clrBrush, 0x123456u);
              EXPECT_EQ(Setting(L"BrushParam\\RasterBrush", L"BrushRadius"), L"-") << "left alone";
              // Another program's value is not taken back by a tool that does not know it.
              CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
              config.GetSection(L"BrushParam")->GetSection(L"RasterBrush")->SetInt(L"BrushRadius", 30);
          },
          [&] {
              Choose(ID_PANEL_TOOL_OPTION, L"補完強度", L"3");
              g_pMainFrame->SwitchTool(TOOL_BRUSH);
              EXPECT_EQ(Tool().GetParam().BrushRadius, 30u);
              EXPECT_EQ(Tool().GetParam().CurveStrength, 3);
          }});
}

TEST_F(Panels, AKilledProgramKeepsWhatWasChangedASecondBefore) {
    m_outside.AddStep([&](CPlayer&) {
        m_outside.m_files.m_nWrites = 0;
        Choose(ID_PANEL_TOOL_OPTION, L"補完強度", L"12");
    });
    m_outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(m_outside.m_files.m_nWrites, 0) << "a dragged slider changes it again at once";
        Choose(ID_PANEL_TOOL_OPTION, L"補完強度", L"16");
        g_pMainFrame->GetPanels().OnStroke();
        player.Wait(1000);
    });
    m_outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(Setting(L"BrushParam\\RasterBrush", L"CurveStrength"), L"16");
        EXPECT_EQ(Setting(L"ColorList", L"ColorCount"), L"1");
        EXPECT_EQ(m_outside.m_files.m_nWrites, 2);
        CIniConfig config(L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files);
        config.GetSection(L"BrushParam")->GetSection(L"RasterBrush")->SetInt(L"CurveStrength", 5);
        config.GetSection(L"ColorList")->SetInt(L"ColorCount", 0);
        player.Wait(1000);
    });
    Play({[&] {
        EXPECT_EQ(Setting(L"BrushParam\\RasterBrush", L"CurveStrength"), L"5") << "another's later change";
        EXPECT_EQ(Setting(L"ColorList", L"ColorCount"), L"0");
    }});
}

TEST_F(Panels, ToolButtonsFollowTheToolAndOptionsShowItsPane) {
    Play({[] {
              EXPECT_EQ(Control(ID_PANEL_TOOL, L"ラスタブラシ").nValue, 1);
              Change(ID_PANEL_TOOL, L"消しゴム", 1);
              EXPECT_EQ(Control(ID_PANEL_TOOL, L"消しゴム").nValue, 0); // not before the tool is there
          },
          [] {
              EXPECT_EQ(Tool().GetToolId(), TOOL_ERASER);
              EXPECT_EQ(Control(ID_PANEL_TOOL, L"消しゴム").nValue, 1);
              EXPECT_EQ(Control(ID_PANEL_TOOL, L"ラスタブラシ").nValue, 0);
              EXPECT_NO_THROW(Control(ID_PANEL_TOOL_OPTION, L"線の荒さ"));
              EXPECT_ANY_THROW(Control(ID_PANEL_TOOL_OPTION, L"紙の粗さ"));
              EXPECT_FALSE(Control(ID_PANEL_COLOR, L"R").bEnabled); // an eraser has no colour
              Change(ID_PANEL_TOOL, L"鉛筆", 1);
          },
          [] {
              EXPECT_ANY_THROW(Control(ID_PANEL_TOOL_OPTION, L"線の荒さ"));
              EXPECT_EQ(Control(ID_PANEL_TOOL_OPTION, L"傾き感度").nValue, 5); // off, the last row
              Choose(ID_PANEL_TOOL_OPTION, L"紙の粗さ", L"8");
              Choose(ID_PANEL_TOOL_OPTION, L"芯の硬さ", L"5 硬");
              Choose(ID_PANEL_TOOL_OPTION, L"テクスチャ", L"荒い");
              Change(ID_PANEL_TOOL_OPTION, L"ブレ効果強調", 1);
              const TBrushParam& param = Tool().GetParam();
              EXPECT_TRUE(param.PaperRoughness == 7 && param.PencilHardness == 4);
              EXPECT_TRUE(param.PencilTexture == 2 && param.AntiSplit);
          }});
}

TEST_F(Panels, OptionsGoStraightToTheToolAndComeBack) {
    constexpr int P = ID_PANEL_TOOL_OPTION;
    Play({[] {
              EXPECT_FALSE(Control(P, L"ブレ細かさ").bEnabled);
              Change(P, L"ぶれ", 1);
              EXPECT_TRUE(Control(P, L"ブレ細かさ").bEnabled);
              Choose(P, L"ブレ細かさ", L"8");
              Choose(P, L"ブレ(細線)", L"2");
              Choose(P, L"ブレ(太線)", L"3");
              Choose(P, L"補完強度", L"12");
              Choose(P, L"線の荒さ", L"50%");
              Choose(P, L"入りの長さ", L"短");
              Choose(P, L"抜きの長さ", L"長");
              Change(P, L"不透明度", 50);
              Change(P, L"太さ", 0);
              Change(P, L"α", 1);
              Change(P, L"倍率に合わせて補間", 1);
              TBrushParam param{8, 2, 3, true, 12};
              param.BrushAlpha = 128, param.Spray = 50;
              param.PressRadius = false, param.PressAlpha = true;
              EXPECT_EQ(Tool().GetParam(), param);
              EXPECT_EQ(Tool().GetFreehand(), (TFreehandParam{0, 2, 0, true}));
          },
          [] {
              EXPECT_EQ(Control(P, L"不透明度").nValue, 50);
              EXPECT_FALSE(Control(P, L"中").bEnabled);
              Change(P, L"ゆっくり描いても補間", 1);
              EXPECT_EQ(Tool().GetFreehand().m_uSlowSmooth, 4u);
              Change(P, L"強", 1);
              EXPECT_EQ(Tool().GetFreehand().m_uSlowSmooth, 12u);
              EXPECT_TRUE(Control(P, L"強").nValue && !Control(P, L"弱").nValue);
              Change(P, L"ゆっくり描いても補間", 0);
              EXPECT_EQ(Tool().GetFreehand().m_uSlowSmooth, 0u);
              // A value that no row has shows the first one and stays as it is.
              Tool().GetParam().CurveStrength = 5;
              g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
              EXPECT_EQ(Control(P, L"補完強度").nValue, 0);
              EXPECT_EQ(Tool().GetParam().CurveStrength, 5);
              Change(P, L"補完強度", 99); // no such row
              EXPECT_EQ(Tool().GetParam().CurveStrength, 5);
          }});
    EXPECT_EQ(FindOptRow({{L"a", 1}, {L"b", 2}, {L"c", 1}}, 1), 2); // from the last row on
}

TEST_F(Panels, TheFirstRowOfEveryOptionOutlivesTheProgram) {
    const auto forEachCombo = [](const std::function<void(const TPanelControl&)>& fn) {
        for (const int nTool : {TOOL_BRUSH, TOOL_PENCIL}) {
            g_pMainFrame->SwitchTool(nTool);
            g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
            const auto vControls = Window(ID_PANEL_TOOL_OPTION).GetControls();
            for (const TPanelControl& control : vControls)
                if (control.bVisible && control.kind == TPanelControl::EKind::Combo) fn(control);
        }
    };
    Play({[&] {
        forEachCombo([](auto& c) { Send(ID_PANEL_TOOL_OPTION, EMessage::PanelChange, c.nId, 0); });
    }});
    Play({[&] { forEachCombo([](auto& c) { EXPECT_EQ(c.nValue, 0) << ToUtf8(c.strLabel); }); }});
}

TEST_F(Panels, PanesRefuseToolsOfOthersAndOutliveTheirs) {
    Play({[] {
        CToolOptRasterBrush brush;
        CToolOptRasterPencil pencil;
        EXPECT_THROW(brush.RefreshView({}), internal_error);
        EXPECT_THROW(pencil.RefreshView(g_wpActiveTool.lock()), internal_error);
        brush.RefreshView(g_wpActiveTool.lock());
        TPanelControl check;
        for (const TPanelControl& control : brush.GetControls())
            if (control.strText == L"ぶれ") check = control;
        g_pMainFrame->SwitchTool(TOOL_ERASER);
        check.nValue = 1;
        brush.OnControl(check); // its tool is gone
        EXPECT_FALSE(Tool().GetParam().WaveEnable);
    }});
}

TEST_F(Panels, BrushSizesAreAListAndASlider) {
    constexpr int P = ID_PANEL_BRUSH;
    const auto rows = [] { return Control(P, TPanelControl::EKind::List).vRows; };
    Play({[&] {
        const int nList = Control(P, TPanelControl::EKind::List).nId;
        EXPECT_EQ(rows(), (std::vector<std::wstring>{L"1", L"2", L"4", L"8", L"16"}));
        Send(P, EMessage::PanelChange, nList, 4);
        EXPECT_EQ(Tool().GetParam().BrushRadius, 16u);
        Change(P, L"サイズ", 5);
        EXPECT_EQ(Control(P, TPanelControl::EKind::List).nValue, -1);
        Change(P, L"追加", 0);
        EXPECT_EQ(rows(), (std::vector<std::wstring>{L"1", L"2", L"4", L"5", L"8", L"16"}));
        Send(P, EMessage::PanelChange, nList, 0);
        Change(P, L"削除", 0);
        Choose(P, L"硬さ", L"75%");
        EXPECT_EQ(Tool().GetParam().BlurLevel, 75);
        // Every step of the slider changes the size, and both ends can be reached.
        const auto& vStops = Control(P, L"サイズ").vStops;
        EXPECT_TRUE(std::adjacent_find(vStops.begin(), vStops.end(), std::greater_equal<>()) == vStops.end());
        EXPECT_TRUE(vStops.front() == 1 && vStops.back() == static_cast<int>(MAX_BRUSH_RADIUS));
    }});
    EXPECT_EQ(Setting(L"BrushList", L"BrushCount"), L"5");
    EXPECT_EQ(Setting(L"BrushList", L"3"), L"5");
    Play({[&] {
        EXPECT_EQ(rows(), (std::vector<std::wstring>{L"2", L"4", L"5", L"8", L"16"}));
        g_wpActiveTool.reset();
        g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
        EXPECT_NO_THROW(Control(P, L"ツールが選択されていないか無効なツールです。"));
        EXPECT_FALSE(Control(P, TPanelControl::EKind::List).bVisible);
    }});
}

TEST_F(Panels, ThePreviewIsWhatTheBrushDraws) {
    Play({[] {
        const TPanelControl view = Control(ID_PANEL_BRUSH, TPanelControl::EKind::View);
        const auto paint = [&] {
            g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
            return Paint(view);
        };
        const std::string strThin = paint();
        EXPECT_NE(strThin, std::string(strThin.size(), '\xFF')); // there is a line, on white
        EXPECT_EQ(strThin.substr(0, 90), std::string(90, '\xFF'));
        std::vector<std::string> vSeen{strThin};
        const auto differs = [&](auto fnChange) {
            fnChange(Tool());
            vSeen.push_back(paint());
            return std::count(vSeen.begin(), vSeen.end(), vSeen.back()) == 1;
        };
        EXPECT_TRUE(differs([](auto& tool) { tool.GetParam().BrushRadius = 24; }));
        EXPECT_TRUE(differs([](auto& tool) { tool.GetParam().BlurLevel = 100; }));
        EXPECT_TRUE(differs([](auto& tool) { tool.GetParam().MinRadiusRate = 60; }));
        EXPECT_TRUE(differs([](auto& tool) { tool.GetFreehand().m_clrBrush = 0xFF; }));
        EXPECT_TRUE(differs([](auto& tool) { tool.GetParam().BrushAlpha = 90; }));
        Tool().GetParam().BrushRadius = MAX_BRUSH_RADIUS;
        EXPECT_EQ(paint().substr(0, 90), std::string(90, '\xFF')); // the largest leaves a margin too
        g_pMainFrame->SwitchTool(TOOL_PENCIL);
        Tool().GetParam().BrushRadius = 24;
        EXPECT_TRUE(differs([](auto& tool) { tool.GetParam().PencilHardness = 4; })); // grains
        EXPECT_TRUE(differs([](auto& tool) { tool.GetParam().PaperRoughness = 5; }));
        g_pMainFrame->SwitchTool(TOOL_ERASER);
        EXPECT_EQ(paint().substr(0, 8), "\x50\x50\x50\xFF\x50\x50\x50\xFF");
    }});
}

TEST_F(Panels, ColoursAreChosenExchangedAndRemembered) {
    constexpr int P = ID_PANEL_COLOR;
    const auto hex = [] { return Control(P, TPanelControl::EKind::Text); };
    const auto color = [] { return Tool().GetFreehand().m_clrBrush; };
    Play({[&] {
              Send(P, EMessage::PanelChange, hex().nId, 0, L"#ff8000");
              EXPECT_EQ(color(), MakeColor(255, 128, 0));
              EXPECT_EQ(Control(P, L"H").nValue, 30);
              Send(P, EMessage::PanelChange, hex().nId, 0, L"orange");
              EXPECT_EQ(hex().strText, L"#FF8000"); // put back
              // The hue outlives black, where every hue is the same.
              Change(P, L"V", 0);
              EXPECT_EQ(color(), 0u);
              Change(P, L"V", 100);
              EXPECT_EQ(color(), MakeColor(255, 128, 0));
              Change(P, L"B", 255);
              EXPECT_EQ(color(), MakeColor(255, 128, 255));
              Change(P, L"入れ替え", 0);
              EXPECT_EQ(color(), 0xFFFFFFu);
              // What the tool does by itself shows at the next message.
              Tool().OnKeyDown('X');
          },
          [&] {
              EXPECT_EQ(hex().strText, L"#FF80FF");
              Tool().OnLButtonDown(80, 80, 0); // it is drawn with, however shortly
              Tool().OnLButtonUp(80, 80, 0);
          },
          [] { Active().GetCanvas()->GetHistory().SetModified(false); }});
    EXPECT_EQ(Setting(L"ColorList", L"ColorCount"), L"1");
    EXPECT_EQ(Setting(L"ColorList", L"1"), std::to_wstring(MakeColor(255, 128, 255)));
}
