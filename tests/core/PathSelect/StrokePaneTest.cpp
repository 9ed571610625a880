// The stroke selection tool's pane in a running session.
#include "core/AppModule/PrivateMessages.h"
#include "core/IniConfig/IniConfig.h"
#include "core/PathFit/InkCorrection.h"
#include "core/PathSelect/ToolOptStrokeSelect.h"
#include "core/RasterStroke/PressureCurve.h"
#include "tests/support/PanelSession.h"
#include "tests/support/Paths.h"

namespace {

enum EControl {
    RECT = 1401,
    LASSO,
    TOUCHED,
    WIDTHS,
    WIDTH = 1414,
    BEGIN_ROUND = 1417,
    WAVE = 1422,
    WAVE_STEP,
    SMOOTHING = 1430,
    TOLERANCE
};

class StrokePane : public CPanelSession {
protected:
    void Open() {
        m_spLayer = CreateVectorLayer(Active().GetCanvas());
        Canvas().GetRoot().AddLayer(m_spLayer, -1, false);
        Canvas().GetRoot().SetActiveChild(m_spLayer);
        for (const auto& spStroke : m_aspStrokes) m_spLayer->InsertPath(spStroke);
        m_aspStrokes[1]->GetStream().SetWidth(24);
        m_aspStrokes[1]->Update();
        g_pMainFrame->SwitchTool(TOOL_STROKE_SELECT);
    }
    void Select(const TStrokes& vPaths) {
        m_spLayer->SelectPaths(vPaths);
        g_pMainFrame->GetPanels().Refresh(WM_REFRESH_TOOL);
    }
    static const TPanelControl& At(int nId) {
        return *std::ranges::find(Window(ID_PANEL_TOOL_OPTION).GetControls(), nId, &TPanelControl::nId);
    }
    static void Set(int nId, int nValue, const std::wstring& str = {}) {
        Send(ID_PANEL_TOOL_OPTION, EMessage::PanelChange, nId, nValue, str);
    }
    std::vector<uint32_t> Widths() const {
        return {m_aspStrokes[0]->GetStream().GetWidth(), m_aspStrokes[1]->GetStream().GetWidth()};
    }
    static size_t CountSteps() { return Canvas().GetHistory().GetUndoList().size(); }

    boost::shared_ptr<CVectorLayerBuffer> m_spLayer;
    const std::array<boost::shared_ptr<COpenPathObject>, 2> m_aspStrokes{MakeStroke(), MakeEvenStroke()};
};

} // namespace

TEST_F(StrokePane, CommonValuesAreShownAndSetForAll) {
    const auto shape = boost::make_shared<CClosedPathObject>();
    Play({[&] { Open(); },
          [&] {
              EXPECT_FALSE(At(WIDTH).bEnabled);
              Select({shape});
              EXPECT_FALSE(At(WIDTH).bEnabled) << "it has no width";
              Select({m_aspStrokes[1]});
              EXPECT_EQ(At(WIDTH).strText, L"3.00");
              Select({m_aspStrokes[0], m_aspStrokes[1], shape});
              EXPECT_TRUE(At(WIDTH).bEnabled && At(WIDTH).strText.empty());
              EXPECT_TRUE(At(BEGIN_ROUND).nValue) << "both begin round";
              EXPECT_FALSE(At(BEGIN_ROUND + 3).nValue) << "one ends flat";
              EXPECT_TRUE(At(WAVE_STEP).nValue == 2 && !At(WAVE_STEP).bEnabled);
          },
          [&] {
              Set(WIDTH, 0, L"x");
              EXPECT_EQ(CountSteps(), 0u);
              Set(WIDTH, 0, L"150%");
              EXPECT_EQ(Widths(), (std::vector<uint32_t>{60, 36}));
              Set(WIDTH, 0, L" 10 ％");
              EXPECT_EQ(Widths(), (std::vector<uint32_t>{6, 4}));
              for (const wchar_t* psz : {L"4", L"4.5"}) Set(WIDTH, 0, psz);
              EXPECT_EQ(Widths(), (std::vector<uint32_t>{36, 36}));
              EXPECT_EQ(At(WIDTH).strText, L"4.50");
              EXPECT_EQ(CountSteps(), 1u) << "typed one after the other";
              EXPECT_EQ(m_aspStrokes[0]->GetStream().GetWidthPoints().size(), 2u);
              Set(WAVE, 1);
              Set(WAVE_STEP, 6);
              EXPECT_EQ(m_aspStrokes[1]->GetStream().GetWave().uStep, 128u);
              EXPECT_TRUE(At(WAVE).nValue && At(WAVE_STEP).bEnabled);
              Set(BEGIN_ROUND + 3, 1);
              EXPECT_EQ(CountSteps(), 4u);
              EXPECT_EQ(m_aspStrokes[0]->GetStream().GetTerm(false)->GetType(), TERM_ROUND);
              for (int n = 0; n < 4; ++n) Canvas().GetHistory().Undo();
              EXPECT_EQ(Widths(), (std::vector<uint32_t>{40, 24}));
              EXPECT_EQ(m_aspStrokes[0]->GetStream().GetTerm(false)->GetType(), TERM_FLAT);
              EXPECT_FALSE(m_aspStrokes[1]->GetStream().HasWave());
              Canvas().GetHistory().SetModified(false);
          }});
}

TEST_F(StrokePane, PenStrokesAreCorrected) {
    TInkSamples samples;
    for (int n = 0; n < 60; ++n)
        samples.input.vPoints.push_back({400 + 20 * n, 400 + n % 3 * 30, FULL_PRESSURE, UPRIGHT});
    const auto spInk = MakeInk(samples);
    const size_t nAnchors = spInk->GetStream().ControlPointCount();
    Play({[&] { Open(); },
          [&] {
              Select({m_aspStrokes[0]});
              EXPECT_FALSE(At(SMOOTHING).bEnabled || At(TOLERANCE).bEnabled) << "not drawn by the pen";
              m_spLayer->InsertPath(spInk);
              Select({m_aspStrokes[0], spInk});
              EXPECT_TRUE(At(SMOOTHING).strText == L"2" && At(TOLERANCE).strText == L"0.35");
          },
          [&] {
              for (const wchar_t* psz : {L"x", L"6", L"12"}) Set(SMOOTHING, 0, psz);
              Set(TOLERANCE, 0, L"1.5");
              EXPECT_TRUE(At(SMOOTHING).strText == L"12" && At(TOLERANCE).strText == L"1.50");
              EXPECT_LT(spInk->GetStream().ControlPointCount(), nAnchors / 2);
              EXPECT_EQ(CountSteps(), 1u);
              Canvas().GetHistory().Undo();
              EXPECT_EQ(spInk->GetStream().ControlPointCount(), nAnchors);
              EXPECT_EQ(spInk->GetStream().GetSamples()->uTolerance, 35u);
              Canvas().GetHistory().SetModified(false);
          }});
}

TEST_F(StrokePane, SwitchesAreKept) {
    Play({[&] { Open(); },
          [&] {
              EXPECT_TRUE(At(RECT).nValue && !At(TOUCHED).nValue && At(WIDTHS).nValue);
              Set(LASSO, 1);
              Set(TOUCHED, 1);
              Set(WIDTHS, 0);
              g_pMainFrame->SwitchTool(4);
              g_pMainFrame->SwitchTool(TOOL_STROKE_SELECT);
              const auto& param = dynamic_cast<CStrokeSelect&>(*g_wpActiveTool.lock()).GetParam();
              EXPECT_EQ(param, (TStrokeSelectParam{STROKE_LASSO, true, false}));
          },
          [&] { EXPECT_TRUE(At(LASSO).nValue && At(TOUCHED).nValue && !At(WIDTHS).nValue); }});
}
