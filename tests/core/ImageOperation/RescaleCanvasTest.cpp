#include "core/ImageOperation/RescaleCanvas.h"
#include "core/ImageOperation/RescalePlane.h"
#include "tests/support/LayerPictures.h"

namespace {

// All of a plane by one call.
std::vector<uint8_t> Rescaled(CRasterBuffer& plane, CSize szTo, ERescaleMode mode) {
    const auto spWhole = plane.ExtractBlock(CRect({0, 0}, szTo), false, nullptr); // every pixel is replaced
    const size_t nPlane = spWhole->GetPlaneBytes();
    std::vector<uint8_t*> apTo(spWhole->GetBytes() / nPlane);
    for (size_t n = 0; n < apTo.size(); ++n) apTo[n] = spWhole->GetPixelPtr({0, 0}) + n * nPlane;
    RescaleRect(plane, CRescaleMap(plane.GetSize(), szTo, mode), CRect({0, 0}, szTo), apTo.data(), szTo.cx);
    return {spWhole->GetPixelPtr({0, 0}), spWhole->GetPixelPtr({0, 0}) + spWhole->GetBytes()};
}

std::vector<uint8_t> BytesOf(CRasterBuffer& plane) {
    const auto spWhole = plane.ExtractBlock(plane.GetRect(), false, nullptr);
    return {spWhole->GetPixelPtr({0, 0}), spWhole->GetPixelPtr({0, 0}) + spWhole->GetBytes()};
}

CRasterLayerBuffer& FirstLayer(CCanvasBuffer& canvas) {
    return dynamic_cast<CRasterLayerBuffer&>(*canvas.GetRoot().GetChildren().front());
}

} // namespace

TEST(RescaleCanvas, TilesAndTheSelectionAreTheWholePlanesBytes) {
    for (const bool bColor : {true, false})
        for (const auto& [szFrom, szTo, mode] :
             {std::tuple(CSize{300, 200}, CSize{330, 411}, ERescaleMode::Bicubic),
              {{300, 200}, {150, 100}, ERescaleMode::Bilinear},
              {{300, 200}, {210, 140}, ERescaleMode::Bicubic},
              {{2500, 1600}, {50, 40}, ERescaleMode::Bicubic}, // a tile's source is taken in parts
              {{300, 200}, {3, 700}, ERescaleMode::Nearest}}) {
            const auto spCanvas = CreateCanvas(szFrom, bColor);
            std::mt19937 random(3);
            for (int n = 0; n < 2; ++n)
                spCanvas->GetRoot().AddLayer(MakeRandomLayer(spCanvas, random), -1, false);
            CRasterLayerBuffer& layer = FirstLayer(*spCanvas);
            layer.SetOpacity(99);
            const auto vWanted = Rescaled(*layer.GetRaster(), szTo, mode);
            const auto spSelect = boost::make_shared<CSelectBuffer>(szFrom);
            spSelect->SelectAll();
            for (int32_t x = 0; x < 90; ++x)
                *spSelect->GetMask().GetWritableBlock({x, 5})->GetPixelPtr({x, 5}) =
                    static_cast<uint8_t>(2 * x);
            spSelect->UpdateOutline();
            spCanvas->SetSelect(spSelect);
            const auto vMask = Rescaled(spSelect->GetMask(), szTo, mode);
            EXPECT_TRUE(RescaleCanvas(spCanvas, szTo, mode));
            CRasterLayerBuffer& done = FirstLayer(*spCanvas);
            EXPECT_TRUE(BytesOf(*done.GetRaster()) == vWanted) << szTo.cx;
            EXPECT_EQ(done.GetOpacity(), 99);
            EXPECT_TRUE(BytesOf(spCanvas->GetSelect()->GetMask()) == vMask) << szTo.cx;
            EXPECT_EQ(spCanvas->GetSelect()->GetBound(), CRect({0, 0}, szTo));
            EXPECT_FALSE(RescaleCanvas(spCanvas, szTo, mode)) << "the same size";
            EXPECT_EQ(spCanvas->GetHistory().GetUndoList().size(), 1u);
            EXPECT_EQ(spCanvas->GetHistory().GetUndoList().front()->GetName(), L"解像度変更");
        }
}

TEST(RescaleCanvas, OnlyTilesWithSomethingInThemAreMade) {
    const auto spCanvas = MakePage({1000, 400});
    CRasterLayerBuffer& layer = FirstLayer(*spCanvas);
    layer.GetRaster()->GetWritableBlock({96, 0})->Fill(0xFF, 255);
    layer.GetRaster()->GetWritableBlock({480, 0})->Fill(0xFF, 0);
    const auto spMask = layer.GetMask().GetWritableBlock({192, 192});
    std::fill_n(spMask->GetPixelPtr({0, 0}), spMask->GetPlaneBytes(), uint8_t{255});
    const auto spSelect = boost::make_shared<CSelectBuffer>(CSize{1000, 400});
    spSelect->SelectAll();
    spCanvas->SetSelect(spSelect);
    RescaleCanvas(spCanvas, {2000, 800}, ERescaleMode::Bilinear);
    const auto tiles = [](const CRasterBuffer& plane) {
        std::string str;
        plane.ForEachBlock([&](CPoint pt) {
            if (plane.HasBlock(pt)) str += std::to_string(pt.x / 96) + "," + std::to_string(pt.y / 96) + " ";
        });
        return str;
    };
    CRasterLayerBuffer& done = FirstLayer(*spCanvas);
    EXPECT_EQ(tiles(*done.GetRaster()), "1,0 2,0 3,0 4,0 1,1 2,1 3,1 4,1 1,2 2,2 3,2 4,2 ");
    EXPECT_EQ(tiles(done.GetMask()), "");
    EXPECT_EQ(spCanvas->GetSelect()->GetMask().FindBlock({960, 96}), FullSelectTile().get());
}

TEST(RescaleCanvas, PathsGoToTheNearestEighthAndTheirWidthsToTheMean) {
    const TLayerChange change = RescaleChange({300, 200}, {450, 100}, ERescaleMode::Nearest);
    EXPECT_EQ(change.fnPoint({1, 1}), (CPoint{2, 1})) << "halves away from zero";
    EXPECT_EQ(change.fnPoint({-1, -1}), (CPoint{-2, -1}));
    EXPECT_EQ(change.fnPoint({-5, 6}), (CPoint{-8, 3}));
    EXPECT_EQ(RescaleChange({3, 3}, {12000, 1}, ERescaleMode::Nearest).fnPoint({800'000'000, 4}),
              (CPoint{INT32_MAX, 1}));
    const auto spCanvas = CreateCanvas({300, 200});
    const auto spLayer = CreateVectorLayer(spCanvas);
    const auto spPath = boost::make_shared<COpenPathObject>();
    AddAnchor(spPath->GetStream(), {81, 160}, {}, {32, -9});
    AddAnchor(spPath->GetStream(), {1600, 400});
    spPath->GetStream().SetWidth(100);
    spPath->GetStream().SetWave(true, {30, 1});
    spPath->Update();
    spLayer->InsertPath(spPath);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    RescaleCanvas(spCanvas, {450, 100}, ERescaleMode::Bicubic);
    const auto& layer = dynamic_cast<CVectorLayerBuffer&>(*spCanvas->GetRoot().GetChildren().front());
    const auto& stream = dynamic_cast<COpenPathObject&>(*layer.GetPaths().front()).GetStream();
    EXPECT_EQ(stream.GetControlPoint(0)->GetAnchor()[STATE_COMMITTED], (CPoint{122, 80}));
    EXPECT_EQ(stream.GetControlPoint(0)->GetFore(STATE_COMMITTED), (CPoint{170 - 122, 76 - 80}));
    EXPECT_EQ(stream.GetControlPoint(1)->GetAnchor()[STATE_COMMITTED], (CPoint{2400, 200}));
    EXPECT_EQ(stream.GetWidth(), 87u) << "100 times the root of 1.5 / 2";
    EXPECT_EQ(stream.GetWave().uStep, 26u);
    EXPECT_EQ(stream.GetWave().uWidth, 1u);
    EXPECT_EQ(spPath->GetStream().GetWidth(), 100u) << "undo's";
}
