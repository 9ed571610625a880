// Blocks composed by several threads. The thread sanitizer sees the threads.
#include "core/RasterStroke/RasterBrushStroke.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/Planes.h"
#include "tests/support/RunningClock.h"

namespace {

// All that a tree looks like inside: pixels, thumbnails and flags of every layer.
void AppendState(CLayerBuffer& layer, std::vector<uint8_t>& vState) {
    const auto append = [&](const std::vector<uint8_t>& v) {
        vState.insert(vState.end(), v.begin(), v.end());
    };
    append(PixelsOf(*layer.GetDrawBuffer()));
    append(PixelsOf(*layer.GetPicture().GetThumbnail()));
    const CBoolMatrix& dirty = layer.GetDrawBuffer()->GetDirty();
    for (size_t i = 0; i < dirty.GetCount(); ++i) vState.push_back(dirty.At(i));
    for (const TLayerPtr& spChild : layer.GetChildren()) AppendState(*spChild, vState);
}

using ComposeBlocks_ = testing::TestWithParam<unsigned>;

} // namespace

// All blocks but the last row's, twice: sets, clips, paths that reach over many blocks, a stroke at twice the
// resolution.
TEST_P(ComposeBlocks_, ThreadsMakeTheSamePicture) {
    constexpr CSize SOME{700, 500};
    std::vector<uint8_t> avState[2];
    for (const size_t nThreads : {1, 2}) {
        std::mt19937 random(GetParam());
        const auto spCanvas = CreateCanvas(SOME);
        FillRandomTree(spCanvas, 25, random);
        const auto spLayer = MakeRandomLayer(spCanvas, random);
        spCanvas->GetRoot().AddLayer(spLayer, 0, false);
        CRunningClock clock(1);
        CStrokeRandom numbers;
        const auto spStroke =
            boost::make_shared<CRasterBrushStroke>(TStrokeSetup{.szCanvas = SOME,
                                                                .color = 0x0000FF,
                                                                .bDouble = true,
                                                                .param = {.BrushRadius = 20},
                                                                .clock = clock,
                                                                .random = numbers});
        for (int x = 20; x <= 650; x += 4) spStroke->AddCtlPoint({x * 8, 1520}, 1024, 90);
        spLayer->SetStroke(spStroke);
        std::vector<CPoint> vBlocks;
        spCanvas->GetComposite().ForEachBlockIn({0, 0, SOME.cx, 400},
                                                [&](CPoint pt) { vBlocks.push_back(pt); });
        for (int n = 0; n < 2; ++n) {
            for (int i = 0; i < 30; ++i) spCanvas->Update();
            spCanvas->FlushCanvasUpdates();
            std::vector<CPoint> vDone(vBlocks.size());
            ComposeBlocks(*spCanvas, vBlocks, nThreads, [&](CPoint pt) {
                EXPECT_FALSE(spCanvas->GetComposite().DirtyAt(pt));
                vDone[static_cast<size_t>(pt.y / 96 * 8 + pt.x / 96)] = pt;
            });
            EXPECT_EQ(vDone, vBlocks);
            AppendState(spCanvas->GetRoot(), avState[nThreads - 1]);
        }
    }
    EXPECT_TRUE(avState[0] == avState[1]);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ComposeBlocks_, testing::Range(1u, 5u));
