#include "core/ImageOperation/PixelOperation.h"
#include "core/ImageOperation/LevelHistogram.h"
#include "core/LayerBuffer/FloatHistory.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"

#include <random>

namespace {

constexpr CSize PAGE{300, 220};

/// A layer of random tiles, and a selection with soft pixels that leaves the first column of blocks out.
class PixelOperations : public testing::TestWithParam<bool> {
protected:
    PixelOperations() {
        m_spCanvas = CreateCanvas(PAGE, GetParam());
        m_spLayer = MakeRandomLayer(m_spCanvas, m_random);
        for (const CPoint pt : {CPoint{0, 0}, {96, 96}, {288, 192}}) Raster().GetBlock(pt, true);
        for (const CPoint pt : {CPoint{0, 0}, {96, 96}})
            *Raster().GetWritableBlock(pt)->GetPixelPtr({7, 8}) = 200;
        Raster().SetBlock({192, 0}, {});
        m_spCanvas->GetRoot().AddLayer(m_spLayer, -1, false);
        m_spCanvas->SelectLayer(m_spLayer);
        m_spSelect = boost::make_shared<CSelectBuffer>(PAGE);
        m_spSelect->GetMask().ForEachBlock([&](CPoint pt) {
            if (pt.x == 0) return;
            const auto spTile = m_spSelect->GetMask().GetBlock(pt, true);
            for (size_t i = 0; i < spTile->GetPlaneBytes(); ++i)
                spTile->GetPixelPtr({0, 0})[i] = static_cast<uint8_t>(m_random());
        });
        m_spSelect->UpdateOutline();
        m_spCanvas->SetSelect(m_spSelect);
    }
    CRasterBuffer& Raster() { return *m_spLayer->GetRaster(); }

    std::mt19937 m_random{23};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas;
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer;
    boost::shared_ptr<CSelectBuffer> m_spSelect;
};

} // namespace

TEST_P(PixelOperations, ChangeTheChosenChannelsByTheSelectionAndOneUndoGivesThemBack) {
    const TLevelTable table = MakeLevelTable({90, 160, 1});
    const uint32_t uChannels = GetParam() ? 10 : 2; // blue and red of red, green, blue, alpha; grey
    const auto spBefore = Raster().ShallowCopy();
    const auto vFile = SaveToBytes(*m_spCanvas);
    ASSERT_TRUE(ChangePixels(m_spLayer, LevelOperation(table, uChannels), L"レベル補正"));
    EXPECT_EQ(Raster().GetBlock({0, 0}, false), spBefore->GetBlock({0, 0}, false)) << "nothing selected";
    EXPECT_FALSE(Raster().HasBlock({192, 0})) << "a missing tile stays missing";
    size_t nChanged = 0;
    Raster().ForEachBlock([&](CPoint pt) {
        if (!Raster().HasBlock(pt) || pt.x == 0) return;
        const auto spOld = spBefore->GetBlock(pt, false), spNew = Raster().GetBlock(pt, false);
        const uint8_t* pMask = m_spSelect->GetMaskTile(pt)->GetPixelPtr({0, 0});
        const size_t nPlane = spOld->GetPlaneBytes();
        for (size_t i = 0; i < spOld->GetBytes(); ++i) {
            const bool bChanges = i / nPlane == 0 || (GetParam() && i / nPlane == 2);
            const int nOld = spOld->GetPixelPtr({0, 0})[i];
            const int nWanted =
                bChanges ? nOld + (table[size_t(nOld)] - nOld) * pMask[i % nPlane] / 255 : nOld;
            ASSERT_EQ(spNew->GetPixelPtr({0, 0})[i], nWanted) << i << " at " << pt.x << ", " << pt.y;
            nChanged += nOld != nWanted;
        }
    });
    EXPECT_GT(nChanged, 1000u);
    CHistoryStream& history = m_spCanvas->GetHistory();
    ASSERT_EQ(history.GetUndoList().size(), 1u);
    EXPECT_EQ(history.GetUndoList().front()->GetName(), L"レベル補正");
    const auto vAfter = SaveToBytes(*m_spCanvas);
    history.Undo();
    EXPECT_EQ(SaveToBytes(*m_spCanvas), vFile);
    history.Redo();
    EXPECT_EQ(SaveToBytes(*m_spCanvas), vAfter);
}

TEST_P(PixelOperations, WithoutAnEffectLeaveTilesHistoryAndFloat) {
    const auto spFloat = TakePixels(Raster(), m_spSelect.get(), true)->MoveTo({100, 5});
    m_spCanvas->SetFloatState({spFloat, m_spLayer, m_spSelect});
    {
        const CFloatDrop drop(m_spCanvas);
        EXPECT_FALSE(ChangePixels(m_spLayer, LevelOperation(MakeLevelTable({}), 15), L"レベル補正"));
    }
    EXPECT_EQ(m_spLayer->GetFloat(), spFloat);
    EXPECT_FALSE(m_spCanvas->GetHistory().CanUndo());
}

TEST_P(PixelOperations, CountEveryOpaqueSelectedPixelOfTheCanvasOnce) {
    const uint32_t uChannels = GetParam() ? 14 : 2;
    TLevelCounts aWanted{};
    for (int32_t y = 0; y < PAGE.cy; ++y)
        for (int32_t x = 96; x < PAGE.cx; ++x) {
            const CPoint ptBlock{x / 96 * 96, y / 96 * 96}, pt = CPoint{x, y} - ptBlock;
            const auto spTile = Raster().GetBlock(ptBlock, false);
            if (!spTile || !spTile->GetPixelAlpha(pt) || !*m_spSelect->GetMaskTile(ptBlock)->GetPixelPtr(pt))
                continue;
            const TColor clr = spTile->GetPixelColor(pt); // a grey tile's has its level three times
            ++aWanted[std::max({RedOf(clr), GreenOf(clr), BlueOf(clr)})];
        }
    EXPECT_EQ(CountPicture(Raster(), m_spSelect.get(), uChannels), aWanted);
    TLevelCounts aCounts{5, 661, 0, 2000};
    LimitCounts(aCounts, PAGE);
    EXPECT_EQ(aCounts, (TLevelCounts{5, 660, 0, 660}));
    LimitCounts(aCounts, {9, 9});
    EXPECT_EQ(aCounts, (TLevelCounts{1, 1, 0, 1}));
}

INSTANTIATE_TEST_SUITE_P(ColourAndGrey, PixelOperations, testing::Bool());
