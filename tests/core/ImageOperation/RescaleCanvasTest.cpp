#include "core/ImageOperation/RescaleCanvas.h"
#include "core/ImageOperation/RescalePlane.h"
#include "tests/support/LayerPictures.h"

namespace {

std::vector<uint8_t> BytesOf(const CRasterBlockBuffer& tile) {
    return {tile.GetPixelPtr({0, 0}), tile.GetPixelPtr({0, 0}) + tile.GetBytes()};
}

std::vector<uint8_t> BytesOf(CRasterBuffer& plane) {
    return BytesOf(*plane.ExtractBlock(plane.GetRect(), false, nullptr));
}

// All of a plane by one call.
std::vector<uint8_t> Rescaled(CRasterBuffer& plane, CSize szTo, ERescaleMode mode) {
    const auto spWhole = plane.ExtractBlock(CRect({0, 0}, szTo), false, nullptr);
    spWhole->Clear();
    const size_t nPlane = spWhole->GetPlaneBytes();
    std::vector<uint8_t*> apTo(spWhole->GetBytes() / nPlane);
    for (size_t n = 0; n < apTo.size(); ++n) apTo[n] = spWhole->GetPixelPtr({0, 0}) + n * nPlane;
    RescaleRect(plane, CRescaleMap(plane.GetSize(), szTo, mode), CRect({0, 0}, szTo), apTo.data(), szTo.cx);
    return BytesOf(*spWhole);
}

CRasterLayerBuffer& FirstLayer(CCanvasBuffer& canvas) {
    return dynamic_cast<CRasterLayerBuffer&>(*canvas.GetRoot().GetChildren().front());
}

// A canvas on which all is selected, with a raster layer.
boost::shared_ptr<CCanvasBuffer> MakeSelected(CSize sz, bool bColor) {
    const auto spCanvas = CreateCanvas(sz, bColor);
    std::mt19937 random(3);
    spCanvas->GetRoot().AddLayer(MakeRandomLayer(spCanvas, random), -1, false);
    const auto spSelect = boost::make_shared<CSelectBuffer>(sz);
    spSelect->SelectAll();
    spCanvas->SetSelect(spSelect);
    return spCanvas;
}

} // namespace

TEST(RescaleCanvas, TilesAndTheSelectionAreTheWholePlanesBytes) {
    for (const bool bColor : {true, false})
        for (const auto& [szFrom, szTo, mode] :
             {std::tuple(CSize{300, 200}, CSize{330, 411}, ERescaleMode::Bicubic),
              {{300, 200}, {150, 100}, ERescaleMode::Bilinear},
              {{2500, 1600}, {50, 40}, ERescaleMode::Bicubic}, // a tile's source is taken in parts
              {{300, 200}, {3, 700}, ERescaleMode::Nearest}}) {
            const auto spCanvas = MakeSelected(szFrom, bColor);
            FirstLayer(*spCanvas).SetOpacity(99);
            CAlphaBufferImpl<uint8_t>& mask = spCanvas->GetSelect()->GetMask();
            for (int32_t x = 0; x < 90; ++x)
                *mask.GetWritableBlock({x, 5})->GetPixelPtr({x, 5}) = static_cast<uint8_t>(2 * x);
            const auto vWanted = Rescaled(*FirstLayer(*spCanvas).GetRaster(), szTo, mode);
            const auto vMask = Rescaled(mask, szTo, mode);
            EXPECT_TRUE(RescaleCanvas(spCanvas, szTo, mode));
            EXPECT_TRUE(BytesOf(*FirstLayer(*spCanvas).GetRaster()) == vWanted) << szTo.cx;
            EXPECT_EQ(FirstLayer(*spCanvas).GetOpacity(), 99);
            EXPECT_TRUE(BytesOf(spCanvas->GetSelect()->GetMask()) == vMask) << szTo.cx;
            EXPECT_EQ(spCanvas->GetSelect()->GetBound(), CRect({0, 0}, szTo));
            EXPECT_FALSE(RescaleCanvas(spCanvas, szTo, mode)) << "the same size";
            EXPECT_EQ(spCanvas->GetHistory().GetUndoList().size(), 1u);
            EXPECT_EQ(spCanvas->GetHistory().GetUndoList().front()->GetName(), L"解像度変更");
        }
}

TEST(RescaleCanvas, OnlyTilesWithSomethingInThemAreMade) {
    const auto spCanvas = MakeSelected({1000, 400}, true);
    CRasterLayerBuffer& layer = FirstLayer(*spCanvas);
    layer.GetRaster()->Clear();
    layer.GetRaster()->GetWritableBlock({96, 0})->Fill(0xFF, 255);
    layer.GetRaster()->GetWritableBlock({480, 0})->Fill(0xFF, 0);
    layer.GetMask().SetBlock({192, 192}, FullSelectTile()->Clone());
    RescaleCanvas(spCanvas, {2000, 800}, ERescaleMode::Bilinear);
    const auto tiles = [](const CRasterBuffer& plane) {
        std::string str;
        plane.ForEachBlock([&](CPoint pt) {
            if (plane.HasBlock(pt)) str += std::to_string(pt.x / 96) + "," + std::to_string(pt.y / 96) + " ";
        });
        return str;
    };
    EXPECT_EQ(tiles(*FirstLayer(*spCanvas).GetRaster()), "1,0 2,0 3,0 4,0 1,1 2,1 3,1 4,1 1,2 2,2 3,2 4,2 ");
    EXPECT_EQ(tiles(FirstLayer(*spCanvas).GetMask()), "");
    EXPECT_EQ(spCanvas->GetSelect()->GetMask().FindBlock({960, 96}), FullSelectTile().get());
}

TEST(RescaleCanvas, PathsGoToTheNearestEighthAndTheirWidthsToTheMean) {
    const TLayerChange change = RescaleChange({300, 200}, {450, 100}, ERescaleMode::Nearest);
    EXPECT_EQ(change.fnPoint({1, 1}), (CPoint{2, 1})) << "halves away from zero";
    EXPECT_EQ(change.fnPoint({-1, -1}), (CPoint{-2, -1}));
    EXPECT_EQ(RescaleChange({3, 3}, {12000, 1}, ERescaleMode::Nearest).fnPoint({800'000'000, 4}),
              (CPoint{INT32_MAX, 1}));
    COpenPathObject path;
    COpenPathStream& stream = path.GetStream();
    const auto spPoint = AddAnchor(stream, {81, 160}, {}, {32, -9});
    AddAnchor(stream, {1600, 400});
    stream.SetWidth(100);
    stream.SetWave(true, {30, 1});
    path.Transform(change.fnPoint, change.dWidth);
    EXPECT_EQ(spPoint->GetAnchor()[STATE_COMMITTED], (CPoint{122, 80}));
    EXPECT_EQ(spPoint->GetFore(STATE_COMMITTED), (CPoint{170 - 122, 76 - 80})) << "its end is mapped";
    EXPECT_EQ(stream.GetWidth(), 87u) << "100 times the root of 1.5 / 2";
    EXPECT_EQ(stream.GetWave().uStep, 26u);
    EXPECT_EQ(stream.GetWave().uWidth, 1u);
}
