#include "core/CanvasFrame/Tablet.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "session/seam/SessionPen.h"
#include "tests/support/TestPlatform.h"
#include "tests/support/TestTool.h"

namespace {

struct CFailingTool : CTestTool {
    explicit CFailingTool(const TToolOutside& outside) : CTestTool(outside) { m_state = STATE_TABLET; }
    static bool Fail() { throw std::bad_alloc(); }
    using CTools::OnMouseMove;
    bool OnMouseMove(int32_t, int32_t, uint32_t, uint32_t) override { return m_fnTold ? m_fnTold() : Fail(); }
    bool OnProximityLeave() override { return Fail(); }
    bool OnProximityEnter() override { return Fail(); }
    bool OnMouseLeave() override { return m_fnTold ? m_fnTold() : Fail(); }
    bool OnKeyDown(int) override { return m_fnTold ? m_fnTold() : Fail(); }
    bool OnKeyUp(int) override { return Fail(); }
    bool Cancel() override { return m_fnTold ? m_fnTold() : Fail(); }
    void DrawOverlay(COverlay&, const TOverlayMapper&) const override { ++m_nMeasured; }
    ECursor GetCursor(CPoint) const override { return m_cursor; }
    ECursor m_cursor = ECursor::Arrow;
    std::function<bool()> m_fnTold; ///< done instead of failing
    mutable int m_nMeasured = 0;    ///< how often its overlay was asked for
    using CTools::GetCanvas;
    using CTools::GetLayer;
};

class FrameGuard : public testing::Test {
protected:
    void Play(const std::function<void(CPlayer&)>& fn) {
        m_outside.AddStep(fn);
        m_outside.Play([&] {
            m_spCanvas = MakePage({100, 100});
            auto& layer = dynamic_cast<CRasterLayerBuffer&>(*m_spCanvas->GetActiveLayer());
            layer.GetRaster()->GetWritableBlock({0, 0})->Fill(MakeColor(9, 8, 7), 255);
            CTestPlatform::Open(m_spCanvas);
        });
        m_spCanvas.reset();
    }
    static CSessionCanvasWindow& Window() {
        return dynamic_cast<CSessionCanvasWindow&>(*g_wpActiveFrame.lock()->GetWindow());
    }
    // The blue of what the window shows of canvas pixel (40, 40).
    static int Shown() {
        return *Window().GetGlass().GetPixel(g_wpActiveFrame.lock()->GetView().ToWindow(CPoint{40, 40}));
    }
    static void Send(EMessage id, int64_t wParam = 0, int64_t lParam = 0) {
        SendMessage({&Window(), id, wParam, lParam});
    }

    CTestPlatform m_outside;
    CToolMaker m_tools;
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
};

} // namespace

TEST_F(FrameGuard, InputGoesOnBehindAToolThatFails) {
    Play([&](CPlayer& player) {
        const auto spTool = m_tools.Use<CFailingTool>();
        const auto packets = [&](int32_t x) {
            const CPoint pt = Window().GetClientOrigin();
            player.GetStage().pen.Push({.uCursor = 1, .x = (pt.x + x) * 8, .y = pt.y * 8, .nAltitude = 900});
        };
        packets(1);
        packets(2);
        const std::function<void()> CASES[] = {
            [] { Send(EMessage::PenPacket); }, [] { Send(EMessage::KeyDown, 'A'); },
            [] { Send(EMessage::CaptureChanged); }, [] { Send(EMessage::MdiActivate, 1); }};
        for (size_t i = 0; i < std::size(CASES); ++i) {
            spTool->m_cursor = i % 2 ? ECursor::Cross : ECursor::Hand;
            Window().SetCursor(ECursor::Arrow);
            CASES[i]();
            EXPECT_EQ(Window().GetCursor(), spTool->m_cursor) << i;
        }
        EXPECT_TRUE(Window().HasCapture()) << "the tool is at work";
        Send(EMessage::MouseLeave);
        Send(EMessage::PenProximity, 1, 2);
        EXPECT_EQ(g_wpActiveTool.lock()->GetToolId(), TOOL_ERASER);
    });
    EXPECT_EQ(m_outside.m_vShown.size(), 8u) << "one of the packets each, two of the activation";
}

TEST_F(FrameGuard, TheOverlayIsInvalidatedOnceForEachEventOfAFailingToolToo) {
    Play([&](CPlayer&) {
        const auto spTool = m_tools.Use<CFailingTool>();
        int nKey = 'A';
        const auto measured = [&](EMessage id, int64_t wParam = 0) {
            const int nBefore = spTool->m_nMeasured;
            Send(id, wParam);
            return spTool->m_nMeasured - nBefore;
        };
        for (const auto& fn : {std::function<bool()>(), {[] { return false; }}, {[] { return true; }}}) {
            spTool->m_fnTold = fn;
            EXPECT_EQ(measured(EMessage::KeyDown, nKey++), 1);
            EXPECT_EQ(measured(EMessage::CaptureChanged), 1);
            EXPECT_EQ(measured(EMessage::MouseLeave), 1);
            spTool->SetState(STATE_IDLE);
            EXPECT_EQ(measured(EMessage::MouseMove), 1);
            spTool->SetState(STATE_TABLET);
        }
    });
}

TEST_F(FrameGuard, ALeaveWhileTheHandIsArmedIsToldAfterwards) {
    Play([&](CPlayer&) {
        const auto spTool = m_tools.Use<CFailingTool>();
        int nTold = 0;
        spTool->SetState(STATE_IDLE);
        spTool->m_fnTold = [&] { return ++nTold > 0; };
        Send(EMessage::KeyDown, VK_Space);
        Send(EMessage::MouseMove);
        EXPECT_EQ(nTold, 0) << "the hand is armed";
        Send(EMessage::MouseLeave);
        EXPECT_EQ(nTold, 0);
        Send(EMessage::KeyUp, VK_Space);
        EXPECT_EQ(nTold, 1);
        Send(EMessage::KeyUp, VK_Space);
        EXPECT_EQ(nTold, 1);
    });
}

TEST_F(FrameGuard, OtherViewsWaitForTheTimer) {
    Play([&](CPlayer&) {
        auto& other = Window();
        const auto spOther = g_wpActiveFrame.lock();
        g_pMainFrame->OpenFrame(CreateCanvasFrame(m_spCanvas));
        const auto spTool = m_tools.Use<CFailingTool>();
        spTool->SetState(STATE_IDLE);
        spTool->m_fnTold = [&] {
            return m_spCanvas->GetRoot().GetChildren().front()->SetVisible(false), true;
        };
        const auto shown = [](CSessionCanvasWindow& window, const CCanvasFrame& frame) {
            window.Paint();
            return static_cast<int>(*window.GetGlass().GetPixel(frame.GetView().ToWindow(CPoint{40, 40})));
        };
        CCanvasFrame& active = *g_wpActiveFrame.lock();
        EXPECT_TRUE(shown(other, *spOther) == 7 && shown(Window(), active) == 7);
        active.GetInput().Dispatch(*spTool, EMessage::MouseMove, {8, 8}, 0, 90, POINTER_TABLET);
        EXPECT_EQ(shown(Window(), active), 255);
        EXPECT_EQ(shown(other, *spOther), 7) << "a pen's sample repaints the view that it is drawn in alone";
        Send(EMessage::Timer, 16);
        EXPECT_EQ(shown(other, *spOther), 255);
    });
}

TEST_F(FrameGuard, PacketsAreReadOnTheirDevicesAxes) {
    struct CPen : CSessionPen {
        TPenAxis GetPressureAxis() override { return {100, 1100}; }
    };
    Play([](CPlayer&) {
        CPen pen;
        pen.SetDevice({0, 90, 4});
        const CTablet coarse(pen, true);
        EXPECT_TRUE(coarse.GetCoordScale() == 4 && coarse.GetAltitudeMax() == 90);
        pen.SetDevice({0, 900, 20});
        CTablet tablet(pen, true);
        EXPECT_TRUE(tablet.GetCoordScale() == 8 && tablet.GetPressRange() == 980);
        // Left of the screen's edge, where pixels are rounded down too; 20 of 1000 are the threshold.
        const auto low = *tablet.Decode({.x = -1, .uPressure = 120, .nAltitude = -600}, Window(), true);
        const auto firm = *tablet.Decode({.x = -1, .uPressure = 121, .nAltitude = 600}, Window(), true);
        EXPECT_TRUE(low.bLow && low.uPressure == 0 && !firm.bLow && firm.uPressure == 1);
        EXPECT_EQ(low.pt.x, -1 - 8 * Window().GetClientOrigin().x);
        EXPECT_TRUE(low.uAltitude == 600 && firm.uAltitude == 600);
    });
}

TEST_F(FrameGuard, AnOperationKeepsTheCanvasAndTheLayerItBeganOn) {
    Play([&](CPlayer&) {
        const auto spTool = m_tools.Use<CFailingTool>();
        const TLayerPtr spLayer = m_spCanvas->GetRoot().GetChildren().front();
        m_spCanvas->SelectLayer(spLayer);
        const auto enabled = [](int nId) { return g_pMainFrame->IsCommandEnabled(nId); };
        spTool->SetState(STATE_IDLE);
        EXPECT_TRUE(enabled(ID_IMAGE_SIZE) && enabled(ID_IMAGE_RESOLUTION));
        spTool->SetState(STATE_TABLET);
        EXPECT_FALSE(enabled(ID_IMAGE_SIZE) || enabled(ID_IMAGE_RESOLUTION));
        m_spCanvas->GetRoot().AddLayer(CreateRasterLayer(m_spCanvas), -1, false);
        m_spCanvas->SelectLayer(m_spCanvas->GetRoot().GetChildren().back());
        EXPECT_EQ(spTool->GetLayer(), spLayer);
        const auto spFrame = CreateCanvasFrame(CreateCanvas({50, 50}));
        g_pMainFrame->OpenFrame(spFrame);
        EXPECT_EQ(spTool->GetCanvas(), m_spCanvas);
        spTool->SetState(STATE_IDLE);
        EXPECT_EQ(spTool->GetCanvas(), spFrame->GetCanvas());
        EXPECT_THROW(spTool->SetState(STATE_MOUSE), internal_error) << "it has no layer";
    });
}

TEST_F(FrameGuard, WhatAToolChangedIsShownByTheNextPaint) {
    Play([&](CPlayer&) {
        const auto spTool = m_tools.Use<CFailingTool>();
        spTool->SetState(STATE_IDLE);
        const auto spLayer =
            boost::dynamic_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetRoot().GetChildren().front());
        const auto moved = [&](const std::function<bool()>& fn) {
            spTool->m_fnTold = fn;
            Send(EMessage::MouseMove);
            Window().Paint();
            return Shown();
        };
        // A stroke that waited is shown with all that it has drawn meanwhile.
        const TStrokeSetup setup{.szCanvas = {100, 100},
                                 .color = 0xC80000,
                                 .param = {.BrushRadius = 20},
                                 .clock = g_AppModule.GetPlatform().clock,
                                 .random = m_tools.m_random};
        const auto spStroke = boost::make_shared<CRasterBrushStroke>(setup);
        for (const int x : {160, 320, 480}) spStroke->AddCtlPoint({x, 320}, 1024, 90);
        spStroke->AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
        spLayer->SetStroke(spStroke);
        spLayer->QueueStroke();
        EXPECT_NEAR(moved([] { return false; }), 0xC8, 1);
        EXPECT_EQ(moved([&] { return spLayer->SetVisible(false), true; }), 255);
    });
}
