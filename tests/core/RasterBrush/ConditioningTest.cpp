// What a freehand tool makes of a pen's events: the control points that its stroke gets.
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/Tools/PenContact.h"
#include "session/seam/VirtualClock.h"
#include "tests/session/ScriptedSession.h"
#include "tests/support/LayerPictures.h"

#include <gtest/gtest.h>

#include <set>

namespace {

/// Keeps the stroke that it draws.
struct CProbe : CRasterBrush {
    using CRasterBrush::CRasterBrush;
    boost::shared_ptr<CRasterStroke> CreateStroke(const CCanvasBuffer& canvas) override {
        return m_spStroke = CRasterBrush::CreateStroke(canvas);
    }
    boost::shared_ptr<CRasterStroke> m_spStroke;
};

struct CView : IActiveView {
    const boost::shared_ptr<CCanvasBuffer>& GetCanvas() const override { return m_spCanvas; }
    uint16_t GetZoom() const override { return 48; }
    CPoint ToClient(CPoint pt) const override { return {pt.x / 8, pt.y / 8}; }
    CPoint ToCanvas(CPoint pt) const override { return {pt.x * 8, pt.y * 8}; }
    void RequestRedraw() override {}
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = MakePage({200, 100});
};

class Conditioning : public testing::Test, CScriptedSession {
protected:
    Conditioning() {
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

    boost::shared_ptr<CView> m_spView = boost::make_shared<CView>();
    CSessionPlatform m_session{m_parts, {"s", {}}};
    CIniConfig m_config{L"/v.ini", m_files};
    CStrokeRandom m_random;
    CPenContact m_contact;
    TToolOutside m_outside{m_session.GetPlatform().clock,
                           m_session.GetPlatform().keys,
                           m_random,
                           m_config,
                           m_codecs,
                           m_contact,
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

TEST_F(Conditioning, ASilenceHasEndedTheStrokeAlsoWhereItsTimerIsLate) {
    const auto event = [&](int32_t x, uint32_t uPressure) {
        m_spTool->Dispatch(EMessage::MouseMove, x, 160, uPressure, 60, POINTER_TABLET);
    };
    for (const int32_t x : {80, 160, 240}) event(x, 800);
    event(320, 0);
    const auto spFirst = m_spTool->m_spStroke;
    EXPECT_EQ(m_spTool->GetState(), STATE_TABLET);
    m_session.GetClock().Advance(300);
    event(900, 800);
    EXPECT_EQ(spFirst->GetPoints().back().pressure, FINAL_PRESSURE);
    EXPECT_NE(m_spTool->m_spStroke, spFirst);
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

TEST_F(Conditioning, AltShowsThePickIconAroundThePointer) {
    const TOverlayMapper mapper = [](CPoint pt) { return CPoint{pt.x / 4, pt.y / 4}; };
    m_spTool->OnKeyDown(VK_Alt);
    EXPECT_TRUE(m_spTool->GetOverlayRect(mapper).IsEmpty()) << "nobody knows where";
    m_spTool->OnMouseMove(80, 120, 0, 90, 0);
    EXPECT_EQ(m_spTool->GetOverlayRect(mapper), CRect(12, 22, 29, 39));
    CGDIBuffer target({40, 50});
    target.FillGrey({0, 0, 40, 50}, 128);
    COverlay overlay(target, {0, 0, 40, 50});
    m_spTool->DrawOverlay(overlay, mapper);
    CRect rc;
    std::set<int> setTones;
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 40; ++x) {
            const uint8_t* p = target.GetPixelPtr({x, y});
            if (*p == 128) continue;
            rc = rc.Union(CRect(CPoint{x, y}, CSize{1, 1}));
            setTones.insert({p[0], p[1], p[2]});
        }
    EXPECT_EQ(rc, CRect(13, 22, 28, 38)) << "16 by 16, the first column empty";
    EXPECT_EQ(setTones, (std::set{0, 255})) << "to be seen on every ground";
    EXPECT_EQ(*target.GetPixelPtr({20, 30}), 128) << "the pixel itself stays free";
    m_spTool->OnKeyUp(VK_Alt);
    EXPECT_FALSE(m_spTool->GetOverlayRect(mapper) == CRect(12, 22, 29, 39));
}

TEST_F(Conditioning, WithoutAWayTheFirstPointsCountUntilTheWindowIsFull) {
    m_spTool->GetFreehand().m_uStrokeOut = 0;
    for (const uint32_t uPressure : {800, 820, 840, 860, 880, 900, 920, 0}) Pen(uPressure);
    std::vector<std::array<int, 3>> vPoints;
    for (int n = 1; n < 8; ++n) vPoints.push_back({n, 780 + 20 * n, std::max(7 - n, 1)});
    vPoints.push_back({8, 0, 9});
    Expect(vPoints);
}
