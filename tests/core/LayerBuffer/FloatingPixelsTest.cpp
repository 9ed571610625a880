#include "core/Base/Text.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "core/LayerBuffer/StrokeHistory.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"

#include <random>

namespace {

constexpr CSize PAGE{300, 220};

// Random coverage inside a rectangle: whole tiles, edges and soft pixels.
boost::shared_ptr<CSelectBuffer> MakeSelect(const CRect& rc, std::mt19937& random) {
    const auto spSelect = boost::make_shared<CSelectBuffer>(PAGE);
    spSelect->GetMask().ForEachBlock([&](CPoint pt) {
        if (CRect(pt, DEFAULT_BLOCKSIZE).Intersect(rc) == CRect(pt, DEFAULT_BLOCKSIZE))
            return spSelect->GetMask().ShareBlockImpl(pt, FullSelectTile());
        const auto spTile = boost::static_pointer_cast<CAlphaBlock8>(spSelect->GetMask().GetBlock(pt, true));
        for (int32_t y = 0; y < 96; ++y)
            for (int32_t x = 0; x < 96; ++x)
                if (rc.Contains(pt + CPoint{x, y}))
                    *spTile->GetPixelPtr({x, y}) = static_cast<uint8_t>(random());
    });
    spSelect->UpdateOutline();
    return spSelect;
}

class FloatingPixels : public testing::TestWithParam<bool> {
protected:
    FloatingPixels() {
        m_spCanvas = CreateCanvas(PAGE, GetParam());
        m_spLayer = MakeRandomLayer(m_spCanvas, m_random);
        Raster().ForEachBlock([&](CPoint pt) {
            if (Raster().HasBlock(pt))
                Raster().GetWritableBlock(pt)->ClearOutside(CRect({-pt.x, -pt.y}, PAGE));
        });
        m_spCanvas->GetRoot().AddLayer(m_spLayer, -1, false);
        m_spCanvas->SelectLayer(m_spLayer);
        m_spCanvas->SetSelect(MakeSelect({20, 40, 250, 201}, m_random));
    }
    CRasterBuffer& Raster() { return *m_spLayer->GetRaster(); }
    void Float(const boost::shared_ptr<CFloatingPixels>& spFloat) {
        m_spCanvas->SetFloatState({spFloat, m_spLayer, spFloat->CreateSelect(PAGE)});
    }

    std::mt19937 m_random{17};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer;
};

} // namespace

TEST_P(FloatingPixels, AreTheBytesBeforeTheCutWhereTheyWereCutFrom) {
    const auto vBefore = PixelsOf(Raster());
    const auto vMask = ValuesOf<uint8_t>(m_spCanvas->GetSelect()->GetMask());
    m_spCanvas->ComposeAll();
    const auto vPicture = PixelsOf(m_spCanvas->GetComposite());
    auto spFloat = TakePixels(Raster(), m_spCanvas->GetSelect().get(), true);
    EXPECT_NE(PixelsOf(Raster()), vBefore);
    // Away over every edge and back: shown as before, the selection too, and merged as before.
    for (const CPoint pt : {CPoint{-1000, 7}, {5, 4000}, {250, -90}, {1, 1}}) {
        Float(spFloat->MoveTo(pt));
        m_spCanvas->ComposeAll();
        EXPECT_NE(PixelsOf(m_spCanvas->GetComposite()), vPicture);
    }
    Float(spFloat);
    m_spCanvas->ComposeAll();
    EXPECT_EQ(PixelsOf(m_spCanvas->GetComposite()), vPicture);
    EXPECT_EQ(ValuesOf<uint8_t>(m_spCanvas->GetSelect()->GetMask()), vMask);
    const CFloatDrop drop(m_spCanvas);
    EXPECT_TRUE(drop.HasDropped() && !m_spLayer->GetFloat());
    EXPECT_EQ(PixelsOf(Raster()), vBefore);
}

TEST_P(FloatingPixels, TakeTheSmallerOfAlphaAndMask) {
    Raster().ForEachBlock([&](CPoint pt) { Raster().SetBlock(pt, {}); });
    const auto spTile = Raster().GetWritableBlock({96, 96});
    const CPoint pt{10, 20};
    spTile->Fill(MakeColor(10, 20, 30), 255);
    std::vector<uint8_t> vAlpha = spTile->CopyAlpha();
    vAlpha[20 * 96 + 10] = 200;
    spTile->RestoreAlpha(vAlpha);
    const auto spSelect = boost::make_shared<CSelectBuffer>(PAGE);
    *spSelect->GetMask().GetBlock({96, 96}, true)->GetPixelPtr(pt) = 150;
    spSelect->UpdateOutline();
    const auto spFloat = TakePixels(Raster(), spSelect.get(), true);
    EXPECT_EQ(spFloat->GetRect(), CRect(96, 96, 192, 192));
    EXPECT_EQ(spFloat->GetPlane().GetBlock({0, 0}, false)->GetPixelAlpha(pt), 150);
    EXPECT_EQ(Raster().GetBlock({96, 96}, false)->GetPixelAlpha(pt), 50);
    // Elsewhere it covers as paint does, and nothing comes over the canvas's edge.
    Float(spFloat->MoveTo({-106, -115}));
    Float(spFloat->MoveTo({-10, -19})); // its pixel at (0, 1)
    const auto spSettled = LoadFromBytes(SaveToBytes(*m_spCanvas));
    CRasterBuffer& saved = *dynamic_cast<CRasterLayerBuffer&>(*spSettled->GetActiveLayer()).GetRaster();
    EXPECT_EQ(saved.GetBlock({0, 0}, false)->GetPixelAlpha({0, 1}), 150);
    EXPECT_EQ(saved.GetBlock({0, 0}, false)->GetPixelAlpha({0, 0}), 0);
    EXPECT_FALSE(Raster().HasBlock({0, 0})) << "saving leaves it afloat";
    EXPECT_EQ(m_spCanvas->GetSelect()->GetBound(), CRect(0, 1, 1, 2));
    Float(spFloat->MoveTo({297, 95})); // under the edge: its pixel at (307, 115)
    EXPECT_EQ(m_spCanvas->GetSelect(), nullptr);
    CFloatDrop drop(m_spCanvas);
    EXPECT_EQ(Raster().GetBlock({288, 96}, true)->GetPixelAlpha({19, 19}), 0);
}

TEST_P(FloatingPixels, ShareWholeTilesAndCountThemOnce) {
    Raster().ForEachBlock([&](CPoint pt) { Raster().GetWritableBlock(pt)->Clear(); });
    const auto spTile = Raster().GetBlock({96, 96}, false);
    const auto spAll = boost::make_shared<CSelectBuffer>(PAGE);
    spAll->SelectAll();
    spAll->UpdateOutline();
    m_spCanvas->SetSelect(spAll);
    const auto spRasterBefore = Raster().ShallowCopy();
    const TFloatState before = m_spCanvas->GetFloatState();
    const auto spFloat = TakePixels(Raster(), m_spCanvas->GetSelect().get(), true);
    EXPECT_FALSE(Raster().HasBlock({96, 96}));
    EXPECT_EQ(spFloat->GetPlane().GetBlock(CPoint{96, 96} - spFloat->GetOffset(), false), spTile);
    Float(spFloat);
    const auto spStep = boost::make_shared<CRasterMoveHistory>(L"移動", m_spCanvas, before,
                                                               spRasterBefore.get(), m_spLayer->GetRaster());
    spStep->Measure();
    EXPECT_LT(spStep->GetBytes(), spTile->GetBytes());
    spStep->Undo();
    spStep->Measure();
    EXPECT_EQ(Raster().GetBlock({96, 96}, false), spTile);
    EXPECT_FALSE(m_spLayer->GetFloat());
}

// A merge is a part of the step that caused it, and of none when nothing was registered.
TEST_P(FloatingPixels, AreMergedByWhatChangesTheLayerAndFloatAgainAfterOneUndo) {
    const auto spFloat = TakePixels(Raster(), m_spCanvas->GetSelect().get(), true)->MoveTo({3, 5});
    Float(spFloat);
    const auto vCut = PixelsOf(Raster());
    const auto vFile = SaveToBytes(*m_spCanvas);
    { const CFloatDrop drop(m_spCanvas); }
    EXPECT_EQ(m_spLayer->GetFloat(), spFloat);
    EXPECT_EQ(PixelsOf(Raster()), vCut);
    EXPECT_FALSE(m_spCanvas->GetHistory().CanUndo());

    const auto spOther = CreateRasterLayer(m_spCanvas);
    const std::pair<const wchar_t*, std::function<void()>> STEPS[] = {
        {L"選択解除", [&] { ChangeSelection(m_spCanvas, {}, L"選択解除"); }},
        {L"レイヤー追加", [&] { m_spCanvas->GetRoot().AddLayer(spOther, -1); }},
        {L"レイヤー削除", [&] { m_spCanvas->GetRoot().RemoveLayer(m_spLayer); }},
        {L"カラーモード変更", [&] { ChangeColorMode(m_spCanvas, !GetParam(), !GetParam()); }},
        {L"画像サイズ",
         [&] {
             ResizeCanvas(m_spCanvas, {200, 200}, ShiftChange({1, 0}), L"画像サイズ");
         }},
    };
    CHistoryStream& history = m_spCanvas->GetHistory();
    for (const auto& [pszName, fn] : STEPS) {
        fn();
        EXPECT_FALSE(m_spCanvas->GetFloatState().spFloat) << ToUtf8(pszName);
        ASSERT_EQ(history.GetUndoList().size(), 1u) << ToUtf8(pszName);
        EXPECT_EQ(history.GetUndoList().front()->GetName(), pszName);
        const auto vAfter = SaveToBytes(*m_spCanvas);
        history.Undo();
        EXPECT_EQ(m_spLayer->GetFloat(), spFloat) << ToUtf8(pszName);
        EXPECT_EQ(PixelsOf(Raster()), vCut) << ToUtf8(pszName);
        EXPECT_EQ(SaveToBytes(*m_spCanvas), vFile) << ToUtf8(pszName);
        history.Redo();
        EXPECT_EQ(SaveToBytes(*m_spCanvas), vAfter) << ToUtf8(pszName);
        history.Undo();
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FloatingPixels, testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Color" : "Grey"; });
