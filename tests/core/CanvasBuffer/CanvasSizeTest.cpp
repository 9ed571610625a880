#include "core/CanvasFrame/CanvasScreen.h"
#include "tests/support/LayerPictures.h"

namespace {

constexpr CSize SIZE{200, 150};
constexpr TColor RED = 0x0000FF;
constexpr TColor BLUE = 0xFF0000;
constexpr uint32_t OPAQUE_RED = 0xFF000000u | RED;

// A red raster layer with a blue square in its last corner, hidden by a mask at one pixel, and a white
// square's path on a vector layer above it; a square is selected.
class CanvasSize : public testing::Test {
protected:
    CanvasSize() {
        const auto spRaster = CreateRasterLayer(m_spCanvas);
        Paint(*spRaster->GetRaster(), CRect({0, 0}, SIZE), RED);
        Paint(*spRaster->GetRaster(), {190, 140, 200, 150}, BLUE);
        const auto spMask = spRaster->GetMask().GetWritableBlock({0, 0});
        std::fill_n(spMask->GetPixelPtr({0, 0}), spMask->GetPlaneBytes(), uint8_t{255});
        *spMask->GetPixelPtr({20, 30}) = 0;
        spRaster->SetOpacity(254);
        const auto spVector = CreateVectorLayer(m_spCanvas);
        spVector->InsertPath(MakeRectPath({50, 50, 60, 60}));
        m_spCanvas->GetRoot().AddLayer(spRaster, -1, false);
        m_spCanvas->GetRoot().AddLayer(spVector, -1, false);
        const auto spSelect = boost::make_shared<CSelectBuffer>(SIZE);
        Paint(spSelect->GetMask(), {100, 100, 110, 110});
        spSelect->UpdateOutline();
        m_spCanvas->SetSelect(spSelect);
    }
    static void Paint(CRasterBuffer& plane, const CRect& rc, TColor color) {
        const auto spTile = plane.CreateBlock({0, 0})->CreateBlank(rc.Size());
        spTile->Fill(color, 255);
        plane.PasteBlock(*spTile, rc.TopLeft());
    }
    static void Paint(CAlphaBufferImpl<uint8_t>& mask, const CRect& rc) {
        for (int32_t y = rc.top; y < rc.bottom; ++y)
            for (int32_t x = rc.left; x < rc.right; ++x)
                *mask.GetWritableBlock({x, y})->GetPixelPtr({x % 96, y % 96}) = 255;
    }
    void Resize(CSize sz, CPoint ptMove) {
        ResizeCanvas(m_spCanvas, sz, ShiftChange(ptMove), L"画像サイズ変更");
    }
    CRasterLayerBuffer& Layer() const {
        return dynamic_cast<CRasterLayerBuffer&>(*m_spCanvas->GetRoot().GetChildren().front());
    }
    uint32_t Composed(CPoint pt) const {
        m_spCanvas->ComposeAll();
        return PixelAt(m_spCanvas->GetComposite(), pt);
    }
    void ExpectPictureAt(CPoint pt) const {
        EXPECT_EQ(Composed(pt + CPoint{1, 1}), 0xFE000000u | RED);
        EXPECT_EQ(Composed(pt + CPoint{20, 30}), 0u) << "the mask";
        EXPECT_EQ(Composed(pt + CPoint{100, 40}), 0xFE000000u | RED) << "no mask's tile is here";
        EXPECT_EQ(Composed(pt + CPoint{52, 57}), 0xFFFFFFFFu) << "the path";
        EXPECT_EQ(Composed(pt + CPoint{52, 62}), 0xFE000000u | RED);
        EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(pt + CPoint{100, 100}, {10, 10}));
        EXPECT_EQ(m_spCanvas->GetSelect()->GetCanvasSize(), m_spCanvas->GetSize());
        EXPECT_EQ(m_spCanvas->GetCounters().GetSize(), m_spCanvas->GetComposite().GetBufferSize());
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas(SIZE);
};

} // namespace

TEST_F(CanvasSize, MarginsMoveEverythingAndUndoBringsItBack) {
    ExpectPictureAt({0, 0});
    Resize({320, 250}, {7, 96});
    EXPECT_EQ(m_spCanvas->GetSize(), (CSize{320, 250}));
    ExpectPictureAt({7, 96});
    EXPECT_EQ(Composed({198, 240}), 0xFE000000u | BLUE);
    for (const CPoint pt : {CPoint{6, 100}, CPoint{100, 95}, CPoint{207, 240}, CPoint{200, 246}})
        EXPECT_EQ(Composed(pt), 0u) << pt.x << "," << pt.y;
    const auto spTile = Layer().GetRaster()->GetBlock({96, 192}, false);
    EXPECT_EQ(spTile->GetPosition(), (CPoint{96, 192}));
    EXPECT_EQ(spTile->GetOwner(), Layer().GetRaster().get());
    Paint(*Layer().GetRaster(), {0, 0, 320, 250}, RED);
    EXPECT_EQ(Composed({300, 10}), 0xFE000000u | RED) << "what is new is not masked";
    CHistoryStream& history = m_spCanvas->GetHistory();
    EXPECT_EQ(history.GetUndoList().front()->GetName(), L"画像サイズ変更");
    history.Undo();
    EXPECT_EQ(m_spCanvas->GetSize(), SIZE);
    ExpectPictureAt({0, 0});
    history.Redo();
    ExpectPictureAt({7, 96});
    EXPECT_EQ(Layer().GetName(), m_spCanvas->GetRoot().GetChildren().front()->GetName());
}

TEST_F(CanvasSize, WhatIsCutOffIsSeenNoMoreAndComesBackByUndo) {
    Resize({150, 120}, {0, 0});
    ExpectPictureAt({0, 0});
    for (const CPoint pt : {CPoint{150, 0}, CPoint{149, 120}, CPoint{191, 191}})
        EXPECT_EQ(PixelAt(*Layer().GetRaster(), pt), 0u);
    Resize({105, 60}, {0, -45});
    EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(100, 55, 105, 60));
    Resize({200, 150}, {-100, -60});
    EXPECT_FALSE(m_spCanvas->GetSelect()) << "nothing of it is left";
    EXPECT_EQ(Composed({190, 140}), 0u);
    for (int n = 0; n < 3; ++n) m_spCanvas->GetHistory().Undo();
    ExpectPictureAt({0, 0});
    EXPECT_EQ(Composed({190, 140}), 0xFE000000u | BLUE);
    for (const CSize sz : {CSize{0, 10}, CSize{10, 12001}}) EXPECT_ANY_THROW(Resize(sz, {0, 0}));
    EXPECT_EQ(m_spCanvas->GetSize(), SIZE);
}

TEST_F(CanvasSize, AViewTakesItOverThoughTheGridIsTheSame) {
    CCanvasView view;
    CCanvasScreen screen;
    const auto look = [&](CPoint ptScroll) {
        view.SetCanvasSize(m_spCanvas->GetSize());
        view.Apply({48}, {150, 120});
        view.ScrollTo(ptScroll);
        screen.Refresh(*m_spCanvas, view);
        CCanvasScreen fresh;
        fresh.Refresh(*m_spCanvas, view);
        const auto bytes = [](const CCanvasScreen& any) {
            const uint8_t* p = any.GetBuffer()->GetPixelPtr({0, 0});
            return std::vector<uint8_t>(p, p + any.GetBuffer()->GetStride() * any.GetBuffer()->GetSize().cy);
        };
        EXPECT_EQ(bytes(screen), bytes(fresh));
        return view.GetOrigin();
    };
    const CPoint ptOrigin = look({200, 180});
    Resize({195, 146}, {0, 0}); // as many blocks as before
    EXPECT_EQ(look({200, 180}), ptOrigin) << "the same place, so that nothing else makes the view paint anew";
    m_spCanvas->GetHistory().Undo();
    EXPECT_EQ(look({200, 180}), ptOrigin);
}

TEST_F(CanvasSize, PlanesOfAllRasterLayersGoAndComeBackInOneOrder) {
    const auto spChild = CreateRasterLayer(m_spCanvas);
    Paint(*spChild->GetRaster(), {0, 0, 9, 9}, BLUE);
    Layer().AddLayer(spChild, -1, false);
    TPlaneList lstPlanes;
    m_spCanvas->GetRoot().PushBackup(lstPlanes);
    ASSERT_EQ(lstPlanes.size(), 2u);
    const auto paint = [](CRasterLayerBuffer& layer) { Paint(*layer.GetRaster(), {0, 0, 9, 9}, 0x00FF00); };
    paint(Layer());
    paint(*spChild);
    for (int n = 0; n < 2; ++n) {
        auto itPlane = lstPlanes.begin();
        m_spCanvas->ComposeAll();
        m_spCanvas->GetRoot().SwapBackup(lstPlanes, itPlane);
        m_spCanvas->FlushCanvasUpdates();
        EXPECT_TRUE(m_spCanvas->GetComposite().DirtyAt({0, 0}));
        EXPECT_FALSE(m_spCanvas->GetComposite().DirtyAt({96, 0})) << "both planes have this tile";
        EXPECT_TRUE(itPlane == lstPlanes.end());
        EXPECT_EQ(PixelAt(*Layer().GetRaster(), {8, 8}), n ? 0xFF00FF00u : OPAQUE_RED);
        EXPECT_EQ(PixelAt(*spChild->GetRaster(), {8, 8}), 0xFF000000u | (n ? 0x00FF00u : BLUE));
    }
}

template <class Action>
std::string ChangedBlocks(CCanvasBuffer& canvas, Action action) {
    canvas.ComposeAll();
    const UpdateCounterMatrix before = canvas.GetCounters();
    action();
    canvas.FlushCanvasUpdates();
    std::string str;
    for (int32_t y = 0; y < before.GetSize().cy; ++y)
        for (int32_t x = 0; x < before.GetSize().cx; ++x)
            if (canvas.GetCounters().At(x, y) != before.At(x, y))
                str += std::to_string(x) + "," + std::to_string(y) + " ";
    return str;
}

TEST(ChangedBlocks, AreThoseInWhichSomethingIsOrWas) {
    constexpr CSize SHEET{500, 300};
    const auto spCanvas = MakePage(SHEET);
    auto& layer = dynamic_cast<CRasterLayerBuffer&>(*spCanvas->GetActiveLayer());
    layer.GetRaster()->GetWritableBlock({96, 96})->Fill(RED, 255);
    EXPECT_EQ(ChangedBlocks(*spCanvas, [&] { ChangeColorMode(spCanvas, false, true); }), "1,1 ");
    EXPECT_EQ(ChangedBlocks(*spCanvas, [&] { ChangeColorMode(spCanvas, true, false); }), "1,1 ");
    EXPECT_EQ(ChangedBlocks(*spCanvas, [&] { spCanvas->GetHistory().Undo(); }), "1,1 ");
    ResizeCanvas(spCanvas, SHEET, ShiftChange({96, 0}), L"移動");
    EXPECT_EQ(ChangedBlocks(*spCanvas, [&] { spCanvas->GetHistory().Undo(); }), "1,1 2,1 ");
    const auto spLoaded = boost::make_shared<CCanvasBuffer>();
    CDeserializer top(spCanvas->Serialize());
    spLoaded->Deserialize(top, L"");
    spLoaded->FlushCanvasUpdates();
    EXPECT_TRUE(spLoaded->GetComposite().DirtyAt({96, 96}));
    EXPECT_FALSE(spLoaded->GetComposite().DirtyAt({0, 0}) || spLoaded->GetComposite().DirtyAt({192, 96}));
    EXPECT_EQ(PixelAt(*spLoaded->Flatten(), {100, 100}), OPAQUE_RED);
}

TEST_F(CanvasSize, ALayersContentIsOneTileAndItsCopyItsOwn) {
    const auto spFlat = Layer().CreateFlatBlock();
    EXPECT_EQ(spFlat->GetSize(), SIZE);
    EXPECT_EQ(spFlat->GetPixelColor({199, 149}), BLUE);
    const auto spCopy = boost::static_pointer_cast<CRasterLayerBuffer>(Layer().CreateFullCopy(m_spCanvas));
    EXPECT_EQ(spCopy->GetOpacity(), 254);
    EXPECT_EQ(spCopy->GetMask().FindBlock({0, 0})->GetPixelAlpha({20, 30}), 0);
    EXPECT_EQ(spCopy->GetBytes(&Layer()), 0u);
    Paint(*spCopy->GetRaster(), {0, 0, 9, 9}, BLUE);
    EXPECT_EQ(PixelAt(*Layer().GetRaster(), {8, 8}), OPAQUE_RED);
}
