#include "core/RasterTransform/RasterTransform.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/RasterBuffer/PaintBounds.h"
#include "core/RasterMove/RasterMove.h"
#include "tests/support/PanelSession.h"
#include "tests/support/ToolSession.h"

#include <sstream>

namespace {

constexpr TColor RED = MakeColor(200, 0, 0);

// A red rectangle at (20, 10) to (60, 40), whose lower half is selected on demand.
class RasterTransform : public testing::Test, protected CToolSession {
protected:
    RasterTransform() : CToolSession(MakePage({200, 120})) {
        m_spLayer = boost::static_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
        const auto spTile = m_spLayer->GetRaster()->CreateBlock({0, 0});
        spTile->Fill(RED, 255);
        spTile->ClearOutside({20, 10, 60, 40});
        m_spLayer->GetRaster()->PasteBlock(*spTile, {0, 0});
    }
    void Select(const CRect& rc) {
        const auto spSelect = boost::make_shared<CSelectBuffer>(m_spCanvas->GetSize());
        const auto spTile = boost::static_pointer_cast<CAlphaBlock8>(FullSelectTile()->Clone());
        spTile->ClearOutside(rc);
        spSelect->GetMask().SetBlock({0, 0}, spTile);
        spSelect->UpdateOutline();
        m_spCanvas->SetSelect(spSelect);
    }
    void PlayTransform(const std::function<void()>& fn) { Play(TOOL_RASTER_TRANSFORM, fn); }
    static CRasterTransform& Tool() { return dynamic_cast<CRasterTransform&>(*g_wpActiveTool.lock()); }
    // The corners in pixels.
    static std::string Corners() {
        const auto quad = Tool().GetQuad();
        std::ostringstream text;
        for (size_t n = 0; quad && n < 4; ++n) text << (n ? " " : "") << (*quad)[n].x << ',' << (*quad)[n].y;
        return text.str();
    }
    void DragPixels(CPoint ptFrom, CPoint ptTo) {
        Drag({{ptFrom.x * 8, ptFrom.y * 8}, {ptTo.x * 8, ptTo.y * 8}});
    }
    // The picture's painted bounds on the layer's own pixels.
    CRect Painted() const { return PaintBoundsOf(*m_spLayer->GetRaster()); }
    size_t Steps() const { return Labels().size(); }

    boost::shared_ptr<CRasterLayerBuffer> m_spLayer;
};

} // namespace

TEST_F(RasterTransform, APreviewBecomesOneStepWithTheSameBytes) {
    PlayTransform([&] {
        const TBytes vFirst = Bytes();
        const auto vPicture = Picture();
        EXPECT_EQ(Corners(), "20,10 60,10 60,40 20,40");
        Click({20 * 8, 10 * 8});
        EXPECT_FALSE(Tool().IsOpen()) << "nothing was dragged";
        Tool().SetMode(TRANSFORM_FREE);
        DragPixels({60, 40}, {150, 100});
        DragPixels({20, 10}, {25, 13});
        EXPECT_EQ(Corners(), "25,13 60,10 150,100 20,40");
        DragPixels({150, 100}, {30, 20}); // would fold
        EXPECT_TRUE(IsQuadUsable(*Tool().GetQuad()));
        EXPECT_EQ(Bytes(), vFirst) << "a preview only";
        const auto vPreview = Picture();
        EXPECT_NE(vPreview, vPicture);
        Type(0x0D);
        EXPECT_FALSE(Tool().IsOpen());
        EXPECT_EQ(Picture(), vPreview);
        EXPECT_EQ(Labels(), std::vector<std::wstring>{L"ラスタ変形ツール"});
        const TBytes vLast = Bytes();
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vFirst);
        EXPECT_EQ(Picture(), vPicture);
        Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vLast);
        EXPECT_EQ(Picture(), vPreview);
    });
}

TEST_F(RasterTransform, EndsByTheRulesOfItsReasons) {
    PlayTransform([&] {
        const TBytes vFirst = Bytes();
        const auto vPicture = Picture();
        const auto open = [&] {
            g_pMainFrame->SwitchTool(TOOL_RASTER_TRANSFORM);
            DragPixels({40, 20}, {50, 20});
            EXPECT_TRUE(Tool().IsOpen());
        };
        const auto expectGone = [&](const char* pszWhy) {
            EXPECT_EQ(Steps(), 0u) << pszWhy;
            EXPECT_EQ(Picture(), vPicture) << pszWhy;
            EXPECT_FALSE(m_spCanvas->GetHistory().IsUnfinished()) << pszWhy;
        };
        open(), Type(VK_Escape), expectGone("escape");
        open(), Command(ID_EDIT_UNDO), expectGone("undo");
        open(), g_pMainFrame->SwitchTool(TOOL_BRUSH), expectGone("another tool");
        open(), Tool().CancelPreview(), expectGone("the pane's button");
        open(), DragPixels({50, 20}, {40, 20}), Type(0x0D), expectGone("back where it was");
        open(), Press({400, 160}), Move({800, 160}), Tool().Cancel();
        EXPECT_EQ(Corners(), "30,10 70,10 70,40 30,40") << "the drag alone is taken back";
        Press({400, 160}), Move({800, 160}), Command(ID_EDIT_UNDO), expectGone("undo in a drag");
        Release({800, 160});
        open();
        {
            const CPreviewOut previewOut;
            EXPECT_EQ(Picture(), vPicture) << "left out of files";
            EXPECT_EQ(Bytes(), vFirst);
        }
        EXPECT_NE(Picture(), vPicture) << "and shown again";
        EXPECT_STREQ(Tool().GetCloseQuestion(), L"変形を決定しますか？");
        Press({400, 160});
        for (const auto& fn : {+[] { Tool().Accept(); }, +[] { Tool().CancelPreview(); },
                               +[] { Tool().ChangeFixed(EFixedTransform::TurnHalf); }})
            try {
                fn();
                ADD_FAILURE() << "refused in a drag";
            } catch (const std::exception& e) {
                EXPECT_NE(DescribeException(e).find(L"!IsWorking()"), std::wstring::npos);
            }
        Release({400, 160});
        Command(ID_LAYER_NEW_RASTER);
        EXPECT_EQ(Steps(), 2u) << "accepted before the tree changes";
        EXPECT_EQ(Painted(), CRect(30, 10, 70, 40));
    });
}

TEST_F(RasterTransform, KeysMoveByPixelsInTheWindowsDirection) {
    PlayTransform([&] {
        Type(VK_Right), Type(VK_Right), Type(VK_Down);
        EXPECT_EQ(Corners(), "22,11 62,11 62,41 22,41");
        Key(VK_Shift, true), Type(VK_Left), Type(VK_Up), Key(VK_Shift, false);
        EXPECT_EQ(Corners(), "12,1 52,1 52,31 12,31");
        Command(ID_VIEW_ROTATE_RIGHT);
        Type(VK_Right);
        EXPECT_EQ(Corners(), "12,0 52,0 52,30 12,30");
        Command(ID_VIEW_FLIP_V);
        Type(VK_Right);
        EXPECT_EQ(Corners(), "12,1 52,1 52,31 12,31");
        Type(0x0D);
        EXPECT_EQ(Painted(), CRect(12, 1, 52, 31));
        m_bPen = true;
        DragPixels({30, 10}, {150, 10});
        Type(0x0D);
        EXPECT_EQ(Painted(), CRect(132, 1, 172, 31));
        EXPECT_FALSE(m_spLayer->GetRaster()->HasBlock({0, 0})) << "no tile without a pixel";
    });
}

TEST_F(RasterTransform, TakesTheSelectionAlong) {
    Select({20, 25, 60, 40});
    *m_spCanvas->GetSelect()->GetMask().GetWritableBlock({0, 0})->GetPixelPtr({20, 25}) = 100;
    PlayTransform([&] {
        const TBytes vFirst = Bytes();
        EXPECT_EQ(Corners(), "20,25 60,25 60,40 20,40");
        Tool().ChangeFixed(EFixedTransform::TurnRight); // to (32, 13)
        EXPECT_EQ(Corners(), "47,13 47,53 32,53 32,13");
        DragPixels({40, 30}, {140, 30});
        const auto vPreview = Picture();
        Tool().Accept();
        EXPECT_EQ(Picture(), vPreview);
        EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(132, 13, 147, 53));
        const auto at = [&](CPoint pt) { return PixelAt(*m_spLayer->GetRaster(), pt); };
        EXPECT_EQ(at({20, 24}), RED | 0xFF000000) << "what was not selected stays";
        EXPECT_EQ(at({21, 25}) >> 24, 0u);
        EXPECT_EQ(at({20, 25}) >> 24, 155u) << "what a soft edge leaves";
        EXPECT_EQ(at({146, 13}) >> 24, 100u);
        EXPECT_EQ(m_spCanvas->GetSelect()->GetMaskTile({96, 0})->GetPixelAlpha({50, 13}), 100);
        EXPECT_EQ(at({132, 52}), RED | 0xFF000000);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vFirst);
        EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(20, 25, 60, 40));
    });
}

TEST_F(RasterTransform, WorksOnFloatingPixelsAlsoBeyondTheCanvas) {
    Select({20, 25, 60, 40});
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        Key(VK_Control, true); // a copy, to x from -20 to 20
        DragPixels({30, 30}, {-10, 30});
        Key(VK_Control, false);
        g_pMainFrame->SwitchTool(TOOL_RASTER_TRANSFORM);
        const auto vFloating = Picture();
        EXPECT_EQ(Corners(), "-20,25 20,25 20,40 -20,40");
        Press({8, 8 * 30});
        EXPECT_EQ(Picture(), vFloating) << "the float shows before anything is dragged";
        Move({8 * 101, 8 * 60});
        Release({8 * 101, 8 * 60});
        const auto vPreview = Picture();
        Tool().Accept();
        EXPECT_EQ(Picture(), vPreview);
        EXPECT_EQ(Painted(), CRect(20, 10, 120, 70)) << "nothing beyond the canvas was lost";
        EXPECT_EQ(PixelAt(*m_spLayer->GetRaster(), {30, 30}), RED | 0xFF000000) << "the copied ones stay";
        EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(80, 55, 120, 70));
        EXPECT_EQ(m_spLayer->GetFloat(), nullptr);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Picture(), vFloating);
        EXPECT_NE(m_spLayer->GetFloat(), nullptr);
        Command(ID_EDIT_UNDO);
        EXPECT_EQ(Bytes(), vFirst);
        Command(ID_EDIT_REDO), Command(ID_EDIT_REDO);
        EXPECT_EQ(Picture(), vPreview);
    });
}

TEST_F(RasterTransform, HandlesKeepTheirSizeAtEveryScale) {
    PlayTransform([&] {
        const auto handle = [&](int32_t nDpi) {
            COverlay overlay(nDpi);
            // At 400 percent; only the outermost handles reach beyond the corners.
            Tool().DrawOverlay(overlay, TOverlayMapper(
                                            [](CPoint pt) {
                                                return CPoint{pt.x / 2, pt.y / 2};
                                            },
                                            nDpi));
            return overlay.GetBounds();
        };
        EXPECT_EQ(handle(96), CRect(76, 36, 245, 165));
        EXPECT_EQ(handle(192), CRect(72, 32, 250, 170));
        Command(ID_ZOOM_IN);
        // A press takes a corner within eight pixels of the window.
        const CPoint ptCorner = g_wpActiveView.lock()->ToClient({60 * 8, 40 * 8});
        const auto drag = [&](int32_t nAside) {
            const CPoint pt = g_wpActiveView.lock()->ToCanvas(ptCorner + CPoint{nAside, 0});
            Drag({pt, pt + CPoint{160, 0}});
        };
        drag(7);
        EXPECT_EQ(Corners(), "20,10 80,10 80,40 20,40");
        Tool().CancelPreview();
        drag(-12);
        EXPECT_EQ(Corners(), "40,10 80,10 80,40 40,40") << "inside";
    });
}

TEST_F(RasterTransform, ThePreviewHidesTheOutlineOfTheOldPlace) {
    Select({30, 20, 80, 90});
    PlayTransform([&] {
        g_pMainFrame->SwitchTool(CRasterMove::TOOL_ID); // draws nothing over the canvas itself
        const auto inkAtLeftEdge = [] {
            CCanvasFrame& frame = *g_wpActiveFrame.lock();
            frame.InvalidateAll();
            auto& window = dynamic_cast<CSessionCanvasWindow&>(*frame.GetWindow());
            window.Paint();
            int nInk = 0;
            for (int32_t y = 50; y < 80; ++y)
                for (int32_t x = 29; x < 31; ++x)
                    nInk += *window.GetGlass().GetPixel(frame.GetView().ToWindow(CPoint{x, y})) == 0;
            return nInk;
        };
        EXPECT_GE(inkAtLeftEdge(), 10);
        g_pMainFrame->SwitchTool(TOOL_RASTER_TRANSFORM);
        DragPixels({50, 50}, {150, 50});
        EXPECT_EQ(inkAtLeftEdge(), 0);
        Tool().Accept();
        EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(130, 20, 180, 90));
    });
}

class TransformPane : public CPanelSession {};

TEST_F(TransformPane, ItsControlsChangeTheTool) {
    const auto control = [](int nId) -> const TPanelControl& {
        return *std::ranges::find(Window(ID_PANEL_TOOL_OPTION).GetControls(), nId, &TPanelControl::nId);
    };
    const auto send = [](int nId) { Send(ID_PANEL_TOOL_OPTION, EMessage::PanelChange, nId, 1); };
    const auto tool = []() -> CRasterTransform& {
        return dynamic_cast<CRasterTransform&>(*g_wpActiveTool.lock());
    };
    const auto raster = [] {
        return boost::static_pointer_cast<CRasterLayerBuffer>(Canvas().GetActiveLayer())->GetRaster();
    };
    Play({[&] {
              raster()->GetBlock({0, 0}, true)->Fill(RED, 255);
              raster()->GetBlock({0, 0}, false)->ClearOutside({10, 10, 40, 20});
              g_pMainFrame->SwitchTool(TOOL_RASTER_TRANSFORM);
          },
          [&] {
              EXPECT_EQ(control(1321).nValue, 1);
              EXPECT_FALSE(control(1330).bEnabled || control(1331).bEnabled);
              send(1324);
              EXPECT_EQ(tool().GetMode(), TRANSFORM_FREE);
              send(1325); // to (20, 0)
              EXPECT_EQ(tool().GetQuad()->front(), (TPosition{30, 0}));
          },
          [&] {
              EXPECT_TRUE(control(1330).bEnabled && control(1324).nValue);
              send(1327);
              EXPECT_FALSE(tool().IsOpen()) << "turned back";
              for (const auto& [nId, pt] :
                   {std::pair{1326, TPosition{40, 20}}, {1329, {40, 10}}, {1328, {10, 10}}}) {
                  send(nId);
                  EXPECT_EQ(tool().GetQuad()->front(), pt) << nId;
              }
              send(1325), send(1330);
              EXPECT_EQ(PaintBoundsOf(*raster()), CRect(20, 0, 30, 30));
              send(1326), send(1331);
              EXPECT_EQ(Canvas().GetHistory().GetUndoList().size(), 1u);
              g_pMainFrame->SwitchTool(TOOL_BRUSH);
              g_pMainFrame->SwitchTool(TOOL_RASTER_TRANSFORM);
              EXPECT_EQ(tool().GetMode(), TRANSFORM_FREE) << "kept by the settings";
              Canvas().GetHistory().SetModified(false);
          }});
}
