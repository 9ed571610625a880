#include "core/LayerBuffer/StrokeHistory.h"
#include "tests/support/LayerPictures.h"

namespace {

constexpr CSize SIZE{960, 480};
constexpr size_t TILE_BYTES = size_t{4} * 96 * 96;
constexpr TColor RED = 0x0000FF;
constexpr TColor BLUE = 0xFF0000;

class UndoMemory : public testing::Test {
protected:
    UndoMemory() {
        Raster().ForEachBlock([&](CPoint pt) { Raster().GetWritableBlock(pt)->Fill(RED, 255); });
        m_spCanvas->ComposeAll();
    }

    CRasterLayerBuffer& Layer() const {
        return dynamic_cast<CRasterLayerBuffer&>(*m_spCanvas->GetActiveLayer());
    }
    CRasterBuffer& Raster() const { return *Layer().GetRaster(); }
    size_t NewestBytes() const { return m_spCanvas->GetHistory().GetUndoList().front()->GetBytes(); }
    void ToggleDisplay() {
        ChangeColorMode(m_spCanvas, !m_spCanvas->IsColor(), true);
        m_spCanvas->ComposeAll();
    }
    void Paint(CPoint pt) {
        const auto spBefore = Raster().ShallowCopy();
        Raster().GetWritableBlock(pt)->Fill(BLUE, 255);
        m_spCanvas->GetHistory().Register(
            boost::make_shared<CCommitStrokeBufferHistory>(L"ブラシ", *spBefore, Layer().GetRaster()));
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = MakePage(SIZE);
};

} // namespace

TEST_F(UndoMemory, AToggleOfTheDisplayCostsNothingUntilSomethingIsDrawn) {
    const boost::weak_ptr<CRasterBlockBuffer> wpPicture = m_spCanvas->GetComposite().GetBlock({0, 0}, false);
    const auto spTile = Raster().GetBlock({96, 96}, false);
    for (int n = 0; n < 5; ++n) {
        ToggleDisplay();
        EXPECT_EQ(NewestBytes(), 0u);
        EXPECT_EQ(Raster().GetBlock({96, 96}, false), spTile);
    }
    EXPECT_TRUE(wpPicture.expired()) << "a picture that can be painted anew was kept";
    Paint({96, 96});
    EXPECT_EQ(NewestBytes(), TILE_BYTES);
    ToggleDisplay();
    EXPECT_EQ(NewestBytes(), 0u);
    EXPECT_EQ(PixelAt(Raster(), {96, 96}), 0xFF000000u | BLUE);
    while (m_spCanvas->GetHistory().CanUndo()) m_spCanvas->GetHistory().Undo();
    EXPECT_EQ(PixelAt(Raster(), {96, 96}), 0xFF000000u | RED);
    m_spCanvas->ComposeAll();
    EXPECT_EQ(PixelAt(m_spCanvas->GetComposite(), {96, 96}), 0xFF000000u | RED);
    while (m_spCanvas->GetHistory().CanRedo()) m_spCanvas->GetHistory().Redo();
    EXPECT_EQ(PixelAt(Raster(), {96, 96}), 0xFF000000u | BLUE);
    ChangeColorMode(m_spCanvas, false, false);
    EXPECT_EQ(NewestBytes(), 50 * TILE_BYTES) << "grey pixels share nothing";
}

TEST_F(UndoMemory, MasksSurviveAFullBackup) {
    *Layer().GetMask().GetWritableBlock({0, 0})->GetPixelPtr({5, 5}) = 100;
    ToggleDisplay();
    EXPECT_EQ(Layer().GetMask().FindBlock({0, 0})->GetPixelAlpha({5, 5}), 100);
    m_spCanvas->GetRoot().GetPicture().MarkAllDirty();
    m_spCanvas->ComposeAll();
    EXPECT_EQ(m_spCanvas->GetComposite().GetBlock({0, 0}, false)->GetPixelAlpha({5, 5}), 100);
    EXPECT_EQ(m_spCanvas->GetComposite().GetBlock({0, 0}, false)->GetPixelAlpha({6, 5}), 0);
    *Layer().GetMask().GetWritableBlock({0, 0})->GetPixelPtr({5, 5}) = 7;
    m_spCanvas->GetHistory().Undo();
    EXPECT_EQ(Layer().GetMask().FindBlock({0, 0})->GetPixelAlpha({5, 5}), 100);
}

TEST_F(UndoMemory, LayersInNoTreeKeepNoPictures) {
    CLayerBuffer& root = m_spCanvas->GetRoot();
    const TLayerPtr spBase = root.GetChildren().front();
    const auto spVector = CreateVectorLayer(m_spCanvas);
    spVector->InsertPath(MakeRectPath(CRect(0, 0, 300, 300)));
    const auto spUpper = CreateRasterLayer(m_spCanvas);
    spUpper->GetRaster()->GetWritableBlock({0, 0})->Fill(BLUE, 255);
    spUpper->AddLayer(spVector, -1, false); // so that its picture is not its own tile
    root.AddLayer(spUpper, -1);
    m_spCanvas->ComposeAll();
    const auto bytes = [](const CLayerBuffer& layer) { return layer.GetDrawBuffer()->GetBytes(nullptr); };
    EXPECT_EQ(NewestBytes(), 0u) << "the layer is in the tree";
    root.RemoveLayer(spUpper);
    EXPECT_EQ(bytes(*spUpper) + bytes(*spVector), 0u);
    EXPECT_GE(NewestBytes(), TILE_BYTES);
    EXPECT_LT(NewestBytes(), TILE_BYTES + 10000);
    m_spCanvas->GetHistory().Undo();
    EXPECT_EQ(NewestBytes(), 0u);
    m_spCanvas->ComposeAll();
    EXPECT_EQ(PixelAt(m_spCanvas->GetComposite(), {9, 9}), 0xFFFFFFFFu)
        << "the path's white on the blue tile";
}
