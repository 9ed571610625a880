#include "core/RasterMove/CanvasClipboard.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/TestView.h"

namespace {

struct CProbe : CRasterBrush {
    using CRasterBrush::CRasterBrush;
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override {
        return m_spStroke = CRasterBrush::CreateStroke(canvas);
    }
    // The samples are enough to make the same points again.
    void FinishStroke(const boost::shared_ptr<CRasterStroke>& spStroke, const TStrokeInput& input) override {
        auto vPoints = ControlPointsOf(input, GetParam().CurveStrength);
        vPoints.push_back({0, 0, FINAL_PRESSURE, UPRIGHT});
        EXPECT_EQ(vPoints, spStroke->GetPoints());
        m_input = input;
        CRasterBrush::FinishStroke(spStroke, input);
    }
    boost::shared_ptr<CRasterStroke> m_spStroke;
    TStrokeInput m_input;
};

class Conditioning : public testing::Test, CScriptedSession {
protected:
    Conditioning() {
        m_spView->m_spCanvas = MakePage({200, 100});
        g_wpActiveView = m_spView;
        m_spTool->GetParam().CurveStrength = 4; // a window of 6
    }
    ~Conditioning() override { g_wpActiveView.reset(); }

    void Pen(uint32_t uPressure) { m_spTool->OnMouseMove(m_x += 80, 160, uPressure, 60, POINTER_TABLET); }
    // Rows of an event, its pressure and how often it counts; the fade-in has tests of its own.
    void Expect(const std::vector<std::array<int, 3>>& vPoints) {
        std::vector<TCtlPoint> vExpected;
        for (const auto& [nEvent, nPressure, nTimes] : vPoints)
            for (int n = 0; n < nTimes; ++n) {
                const auto uCount = static_cast<uint32_t>(vExpected.size());
                const auto uPressure = FadeInPressure(static_cast<uint32_t>(nPressure), uCount, 4);
                vExpected.push_back({nEvent * 80, 160, uPressure, 60});
            }
        vExpected.push_back({0, 0, FINAL_PRESSURE, 90});
        EXPECT_EQ(m_spTool->m_spStroke->GetPoints(), vExpected);
        EXPECT_EQ(m_spTool->GetState(), STATE_IDLE);
    }

    boost::shared_ptr<CTestView> m_spView = boost::make_shared<CTestView>();
    CSessionPlatform m_session{m_parts, {"s", {}}};
    CIniConfig m_config{L"/v.ini", m_files};
    CStrokeRandom m_random;
    CPenContact m_contact;
    CCanvasClipboard m_exchange{m_session.GetPlatform().clipboard};
    const TGlobalSwitches m_switches;
    TToolOutside m_outside{m_session.GetPlatform().clock,
                           m_session.GetPlatform().keys,
                           m_random,
                           m_config,
                           m_switches,
                           m_codecs,
                           m_contact,
                           m_exchange,
                           {},
                           [](EToolNotice) {}};
    boost::shared_ptr<CProbe> m_spTool = boost::make_shared<CProbe>(m_outside);
    int32_t m_x = 0;
};

} // namespace

TEST_F(Conditioning, TheWayAboveTheTabletBecomesTheEntryAndTheLiftsTheExit) {
    for (const uint32_t uPressure : {0, 0, 0, 0, 0, 800, 900, 0, 0, 0}) Pen(uPressure);
    // Half a window of the way, rising and counted 4, 3 and 2 times. The third lift ends the line; what the
    // smoothing still holds back is flushed out.
    Expect(
        {{3, 500, 4}, {4, 600, 3}, {5, 700, 2}, {6, 800, 1}, {7, 900, 1}, {8, 0, 1}, {9, 0, 1}, {10, 0, 9}});
}

TEST_F(Conditioning, ALineCanBeMadeAgainFromItsSamples) {
    std::mt19937 random(9);
    const auto any = [&](uint32_t u) { return random() % u; };
    for (int n = 0; n < 60; ++n) {
        m_spTool->GetParam().CurveStrength = static_cast<uint8_t>(any(9));
        m_spTool->GetFreehand().m_uStrokeIn = any(3);
        m_spTool->GetFreehand().m_uStrokeOut = any(3);
        const bool bLeaves = any(3) == 0;
        for (uint32_t i = any(6); i > 0; --i) Pen(0);
        for (uint32_t i = 2 + any(20); i > 0; --i) Pen(1 + any(1024));
        for (int i = 0; i < 40 && !bLeaves; ++i) Pen(0);
        m_spTool->OnProximityLeave();
        EXPECT_EQ(m_spTool->m_input.bLifted, !bLeaves) << n;
        m_spTool->OnLButtonDown(m_x, 160, 0);
        for (uint32_t i = any(5); i > 0; --i) m_spTool->OnMouseMove(m_x += 90, 160, 1024, 90, 0);
        m_spTool->OnLButtonUp(m_x, 160, 0);
        EXPECT_FALSE(m_spTool->m_input.bPen) << n;
    }
    // Another window over the same samples: the first one counts three times, the others once.
    const TStrokeInput input{.vPoints = {{8, 0, 100, 90}, {16, 0, 200, 90}, {24, 0, 300, 90}}, .uEntry = 0};
    const auto vPoints = ControlPointsOf(input, 1);
    ASSERT_EQ(vPoints.size(), 7u);
    EXPECT_EQ(vPoints[2], (TCtlPoint{8, 0, FadeInPressure(100, 2, 1), 90}));
    EXPECT_EQ(vPoints[3].x, 16);
    EXPECT_EQ(vPoints[6], (TCtlPoint{24, 0, 300, 90}));
}

TEST_F(Conditioning, ATapIsItsHighestPressureWithTheAltitudeThatCameFirst) {
    Pen(0);
    const auto inPlace = [&](int32_t x, uint32_t uPressure, uint32_t uAltitude) {
        m_spTool->OnMouseMove(x, 160, uPressure, uAltitude, POINTER_TABLET);
    };
    inPlace(200, 300, 60);
    for (const uint32_t uAltitude : {50, 40}) inPlace(203, 700, uAltitude); // too near to be a point
    inPlace(201, 500, 30);
    inPlace(201, 0, 20);
    const std::vector<TCtlPoint> vExpected{{200, 160, 700, 50}, {0, 0, FINAL_PRESSURE, 90}};
    EXPECT_EQ(m_spTool->m_spStroke->GetPoints(), vExpected);
    EXPECT_EQ(m_spTool->GetState(), STATE_IDLE);
}

TEST_F(Conditioning, TakingAColourCompletesTheStrokesUnderIt) {
    m_spTool->GetFreehand().m_clrBrush = 0x2040FF;
    m_spTool->OnLButtonDown(160, 160, 0);
    m_spTool->OnMouseMove(800, 160, 1024, 90, 0);
    m_spTool->OnLButtonUp(800, 160, 0);
    ASSERT_TRUE(m_spView->m_spCanvas->HasPendingWork());
    m_spTool->GetFreehand().m_clrBrush = 0;
    m_spTool->OnKeyDown(VK_Alt);
    EXPECT_TRUE(m_spTool->OnLButtonDown(480, 160, 0)) << "what was completed is to be shown";
    EXPECT_EQ(m_spTool->GetFreehand().m_clrBrush, 0x2040FFu);
    EXPECT_FALSE(m_spView->m_spCanvas->HasPendingWork());
    EXPECT_FALSE(m_spTool->OnLButtonDown(480, 160, 0));
}

TEST_F(Conditioning, WithoutAWayTheFirstPointsCountUntilTheWindowIsFull) {
    m_spTool->GetFreehand().m_uStrokeOut = 0;
    for (const uint32_t uPressure : {800, 820, 840, 860, 880, 900, 920, 0}) Pen(uPressure);
    std::vector<std::array<int, 3>> vPoints;
    for (int n = 1; n < 8; ++n) vPoints.push_back({n, 780 + 20 * n, std::max(7 - n, 1)});
    vPoints.push_back({8, 0, 9});
    Expect(vPoints);
}
