#include "core/Panels/Panels.h"
#include "core/PanelViews/BrushView.h"
#include "core/PanelViews/PressCurveView.h"
#include "core/RasterBrush/ToolOptRasterBrush.h"
#include "session/seam/Glass.h"
#include "tests/support/PanelSession.h"

namespace {

class Panels : public CPanelSession {
protected:
    using CPanelSession::Control;
    static const TPanelControl& Control(int nPanel, const std::wstring& strName) {
        for (const TPanelControl& control : Window(nPanel).GetControls())
            if (control.bVisible && (control.strLabel == strName || control.strText == strName))
                return control;
        throw std::runtime_error("no such control");
    }
    static void Change(int nPanel, const std::wstring& strName, int nValue) {
        Send(nPanel, EMessage::PanelChange, Control(nPanel, strName).nId, nValue);
    }
    static void Choose(int nPanel, const std::vector<std::pair<std::wstring, std::wstring>>& vChoices) {
        for (const auto& [strName, strRow] : vChoices) {
            const auto& vRows = Control(nPanel, strName).vRows;
            const auto it = std::find(vRows.begin(), vRows.end(), strRow);
            ASSERT_NE(it, vRows.end());
            Change(nPanel, strName, static_cast<int>(it - vRows.begin()));
        }
    }
    static CRasterBrushBase& Tool() { return dynamic_cast<CRasterBrushBase&>(*g_wpActiveTool.lock()); }
    CIniConfig Config() { return {L"/settings/Vellumcraft/Vellumcraft.ini", m_outside.m_files}; }
    std::wstring Setting(const wchar_t* pszSection, const wchar_t* pszKey) {
        return Config().GetSection(pszSection)->GetString(pszKey, L"-");
    }
    std::wstring Strength() { return Setting(L"BrushParam\\RasterBrush", L"CurveStrength"); }
};

} // namespace

TEST_F(Panels, CommandsShowAndHideAndPlacesAreKept) {
    const CRect rc(50, 60, 350, 460);
    Play({[&] {
        for (const int nId : {12801, 12802, 12803, 12804, 12805, 12809, 12815})
            EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(nId) && g_pMainFrame->IsCommandChecked(nId)) << nId;
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_PANEL_BRUSH});
        EXPECT_FALSE(g_pMainFrame->IsCommandChecked(ID_PANEL_BRUSH));
        Window(ID_PANEL_PRESS).SetPlace({EPanelDock::Float, rc, true});
        Window(ID_PANEL_COLOR).SetPlace({EPanelDock::Float, CRect({90000, 0}, {300, 200}), true});
    }});
    EXPECT_EQ(Setting(L"Windows\\Brush", L"IsShow"), L"0");
    EXPECT_EQ(Setting(L"Windows\\Press", L"Width"), L"300");
    EXPECT_EQ(Setting(L"Windows\\Tool", L"Left"), L"-"); // nothing changed
    Play({[&] {
        EXPECT_FALSE(Window(ID_PANEL_BRUSH).IsShown());
        EXPECT_TRUE(Window(ID_PANEL_PRESS).GetPlace().dock == EPanelDock::Float);
        EXPECT_EQ(Window(ID_PANEL_PRESS).GetPlace().rc, rc);
        EXPECT_EQ(Window(ID_PANEL_COLOR).GetPlace().rc.right, 1920); // back onto the screen
    }});
}

TEST_F(Panels, ToolButtonsNameTheirKeysAndSwitch) {
    Play({[] {
              EXPECT_EQ(Control(ID_PANEL_TOOL, L"鉛筆").strTip, L"鉛筆  (P)");
              Change(ID_PANEL_TOOL, L"鉛筆", 1);
          },
          [] { EXPECT_EQ(Tool().GetToolId(), TOOL_PENCIL); }});
}

TEST_F(Panels, SettingsAreStoredASecondAfterTheLastChangeOrBeforeTheToolIsMadeAgain) {
    constexpr int P = ID_PANEL_TOOL_OPTION;
    m_outside.AddStep([&](CPlayer&) {
        m_outside.m_files.m_nWrites = 0;
        Choose(P, {{L"補完強度", L"12"}});
    });
    m_outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(m_outside.m_files.m_nWrites, 0) << "a dragged slider changes it again at once";
        Choose(P, {{L"補完強度", L"16"}});
        g_pMainFrame->GetPanels().OnStroke();
        player.Wait(1000);
    });
    m_outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(Strength() + Setting(L"ColorList", L"ColorCount"), L"161");
        EXPECT_EQ(m_outside.m_files.m_nWrites, 2);
        Config().GetSection(L"BrushParam")->GetSection(L"RasterBrush")->SetInt(L"CurveStrength", 5);
        player.Wait(1000);
    });
    Play({[&] {
              EXPECT_EQ(Strength(), L"5") << "another's later change";
              Choose(P, {{L"補完強度", L"12"}});
              Tool().GetFreehand().m_clrBrush = 0x123456;
              m_outside.m_files.m_nWrites = 0;
              g_pMainFrame->SwitchTool(TOOL_BRUSH);
              EXPECT_EQ(m_outside.m_files.m_nWrites, 1) << "one file for all of the tool's settings";
              EXPECT_TRUE(Tool().GetParam().CurveStrength == 12 &&
                          Tool().GetFreehand().m_clrBrush == 0x123456);
              Config().GetSection(L"BrushParam")->GetSection(L"RasterBrush")->SetInt(L"BrushRadius", 30);
          },
          [&] {
              Choose(P, {{L"補完強度", L"3"}});
              g_pMainFrame->SwitchTool(TOOL_BRUSH);
              EXPECT_TRUE(Tool().GetParam().BrushRadius == 30 && Tool().GetParam().CurveStrength == 3);
          }});
}

TEST_F(Panels, OptionsGoStraightToTheToolAndComeBack) {
    constexpr int P = ID_PANEL_TOOL_OPTION;
    Play({[] {
              EXPECT_FALSE(Control(P, L"ブレ細かさ").bEnabled);
              Change(P, L"ぶれ", 1);
              Choose(P, {{L"ブレ細かさ", L"8"},
                         {L"ブレ(細線)", L"2"},
                         {L"ブレ(太線)", L"3"},
                         {L"補完強度", L"12"},
                         {L"線の荒さ", L"50%"},
                         {L"入りの長さ", L"短"},
                         {L"抜きの長さ", L"長"}});
              for (const auto& [psz, n] :
                   {std::pair{L"不透明度", 50}, {L"太さ", 0}, {L"α", 1}, {L"倍率に合わせて補間", 1}})
                  Change(P, psz, n);
              TBrushParam param{8, 2, 3, true, 12};
              param.BrushAlpha = 128, param.Spray = 50;
              param.PressRadius = false, param.PressAlpha = true;
              EXPECT_EQ(Tool().GetParam(), param);
              EXPECT_EQ(Tool().GetFreehand(), (TFreehandParam{0, 2, 0, true}));
          },
          [] {
              EXPECT_EQ(Control(P, L"不透明度").nValue, 50);
              EXPECT_FALSE(Control(P, L"中").bEnabled);
              const auto slow = [](const wchar_t* psz, int n) {
                  Change(P, psz, n);
                  return Tool().GetFreehand().m_uSlowSmooth;
              };
              EXPECT_EQ(slow(L"ゆっくり描いても補間", 1), 4u);
              EXPECT_EQ(slow(L"強", 1), 12u);
              EXPECT_TRUE(Control(P, L"強").nValue && !Control(P, L"弱").nValue);
              EXPECT_EQ(slow(L"ゆっくり描いても補間", 0), 0u);
              Tool().GetParam().CurveStrength = 5;
              g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
              EXPECT_EQ(Control(P, L"補完強度").nValue, 0);
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

TEST_F(Panels, BrushSizesAreAListAndASlider) {
    constexpr int P = ID_PANEL_BRUSH;
    const auto rows = [] {
        std::wstring str;
        for (const auto& strRow : Control(P, TPanelControl::EKind::List).vRows) str += strRow + L" ";
        return str;
    };
    Play({[&] {
        const int nList = Control(P, TPanelControl::EKind::List).nId;
        EXPECT_EQ(rows(), L"1 2 4 8 16 ");
        Send(P, EMessage::PanelChange, nList, 4);
        EXPECT_EQ(Tool().GetParam().BrushRadius, 16u);
        Change(P, L"サイズ", 5);
        EXPECT_EQ(Control(P, TPanelControl::EKind::List).nValue, -1);
        Change(P, L"サイズを追加", 0);
        EXPECT_EQ(rows(), L"1 2 4 5 8 16 ");
        Send(P, EMessage::PanelChange, nList, 0);
        Change(P, L"サイズを削除", 0);
        Choose(P, {{L"硬さ", L"75%"}});
        EXPECT_EQ(Tool().GetParam().BlurLevel, 75);
        const auto& vStops = Control(P, L"サイズ").vStops;
        EXPECT_TRUE(std::adjacent_find(vStops.begin(), vStops.end(), std::greater_equal<>()) == vStops.end());
        EXPECT_TRUE(vStops.front() == 1 && vStops.back() == static_cast<int>(MAX_BRUSH_RADIUS));
    }});
    EXPECT_EQ(Setting(L"BrushList", L"BrushCount") + Setting(L"BrushList", L"3"), L"55");
    Play({[&] { EXPECT_EQ(rows(), L"2 4 5 8 16 "); }});
}

TEST_F(Panels, ColoursAreChosenExchangedAndRemembered) {
    constexpr int P = ID_PANEL_COLOR;
    const auto hex = [] { return Control(P, TPanelControl::EKind::Text); };
    const auto color = [] { return Tool().GetFreehand().m_clrBrush; };
    Play({[&] {
              Send(P, EMessage::PanelChange, hex().nId, 0, L"#ff8000");
              EXPECT_EQ(color(), MakeColor(255, 128, 0));
              EXPECT_THROW(Control(P, L"H"), std::runtime_error) << "the circle is shown";
              Change(P, L"スライダー", 1);
              EXPECT_EQ(Control(P, L"H").nValue, 30);
              Send(P, EMessage::PanelChange, hex().nId, 0, L"orange");
              EXPECT_EQ(hex().strText, L"#FF8000"); // put back
              for (const auto& [pszName, nValue, expected] : {std::tuple{L"V", 0, TColor{0}},
                                                              {L"V", 100, MakeColor(255, 128, 0)},
                                                              {L"B", 255, MakeColor(255, 128, 255)},
                                                              {L"入れ替え", 0, 0xFFFFFFu}}) {
                  Change(P, pszName, nValue);
                  EXPECT_EQ(color(), expected) << nValue;
              }
              Tool().OnKeyDown('X');
          },
          [&] {
              EXPECT_EQ(hex().strText, L"#FF80FF");
              EXPECT_FALSE(Control(P, TPanelControl::EKind::View).bVisible);
              Tool().OnLButtonDown(80, 80, 0); // it is drawn with, however shortly
              Tool().OnLButtonUp(80, 80, 0);
          },
          [] { Active().GetCanvas()->GetHistory().SetModified(false); }});
    EXPECT_EQ(Setting(L"ColorList", L"ColorCount") + Setting(L"ColorList", L"1") +
                  Setting(L"ColorList", L"Sliders"),
              L"1" + std::to_wstring(MakeColor(255, 128, 255)) + L"1");
}

TEST_F(Panels, PreviewAndCurveAreReadableOnEveryGround) {
    Play({[&] {
        constexpr CSize SZ{200, 80};
        CGlass glass;
        glass.Resize(SZ);
        const auto shown = [&](CPoint pt) {
            const uint8_t* p = glass.GetPixel(pt);
            return MakeColor(p[2], p[1], p[0]);
        };
        CBrushView brush(m_pStage->platform.clock, m_pStage->platform.codecs);
        CPressCurveView curve;
        for (const TColor clrInk : {TColor{0}, TColor{0xFFFFFF}, TColor{0x2020E0}})
            for (const bool bDark : {false, true}) {
                const TColor clrBase = bDark ? 0x2A2A2A : 0xFFFFFF, clrText = bDark ? 0xE4E4E4 : 0;
                const TPanelPaint paint{.sz = SZ, .clrText = clrText, .dScale = 3, .clrBase = clrBase};
                Tool().GetFreehand().m_clrBrush = clrInk;
                Tool().GetParam().BrushRadius = 16;
                brush.SetTool(&Tool());
                brush.OnPaint(glass, paint);
                const TColor clrNear = bDark ? 0 : 0xFFFFFF; // hardly seen there
                EXPECT_EQ(shown({2, 2}), clrBase);
                EXPECT_EQ(shown({100, 40}), clrInk == clrNear ? clrText : clrInk) << clrInk << bDark;
                curve.OnPaint(glass, paint);
                EXPECT_EQ(shown({70, 10}), clrBase);
                EXPECT_EQ(shown({100, 40}), clrText);
            }
    }});
}
