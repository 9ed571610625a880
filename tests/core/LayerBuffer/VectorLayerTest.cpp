#include "core/RasterStroke/RasterBrushStroke.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/RunningClock.h"

namespace {

constexpr CSize SIZE{500, 400};

struct TPage {
    boost::shared_ptr<CCanvasBuffer> spCanvas = CreateCanvas(SIZE);
    boost::shared_ptr<CVectorLayerBuffer> spLayer = CreateVectorLayer(spCanvas);
    TPage() { spCanvas->GetRoot().AddLayer(spLayer, -1, false); }

    std::vector<uint8_t> Picture() {
        spCanvas->ComposeAll();
        return PixelsOf(spCanvas->GetComposite());
    }
};

// A shape that counts how often it is rasterized.
struct TCountedStream : CClosedPathStream {
    void RasterizePath(CPathFill& fill, CSize sz, CAlphaBlock8& tile, size_t state) const override {
        ++nCount;
        CClosedPathStream::RasterizePath(fill, sz, tile, state);
    }
    mutable int nCount = 0;
};
struct TCountedPath : CPathObjectImpl<TCountedStream> {};

void DragAnchor(CPathObject& path, CPoint by) {
    const auto spPoint = path.GetStream().GetControlPoint(0);
    {
        const auto spValue = spPoint->DragAnchorPoint(false);
        (*spValue)[STATE_LIVE] = (*spValue)[STATE_COMMITTED] + by;
    }
    path.UpdateDrag();
}

} // namespace

TEST(VectorLayer, ADraggedPathIsShownAsItWillBeAndAlone) {
    std::mt19937 random(3);
    for (int n = 0; n < 6; ++n) {
        TPage page;
        const auto spCounted = boost::make_shared<TCountedPath>();
        for (const CPoint pt : {CPoint{0, 0}, {4000, 100}, {3000, 3200}})
            AddAnchor(spCounted->GetStream(), pt);
        spCounted->Update();
        page.spLayer->InsertPath(spCounted);
        for (int k = 0; k < 3; ++k) page.spLayer->InsertPath(MakeRandomPath(SIZE, random));
        const auto spPath = *std::next(page.spLayer->GetPaths().begin(), 1 + n % 3);
        const auto vBefore = page.Picture();
        const TBytes vBytes = BytesOf(*spPath);
        page.spLayer->SetLivePath(spPath);
        EXPECT_EQ(page.Picture(), vBefore);
        DragAnchor(*spPath, {900, 700});
        page.Picture();
        const int nCount = spCounted->GetStream().nCount;
        for (const CPoint by : {CPoint{850, 720}, {910, 690}, {900, 700}}) {
            DragAnchor(*spPath, by);
            page.Picture();
        }
        EXPECT_EQ(spCounted->GetStream().nCount, nCount);
        EXPECT_EQ(BytesOf(*spPath), vBytes);
        // Another path may change meanwhile.
        DragAnchor(*spCounted, {-300, 40});
        spCounted->CommitDrag();
        const auto vShown = page.Picture();
        EXPECT_NE(vShown, vBefore);
        spPath->CommitDrag();
        EXPECT_EQ(page.Picture(), vShown);
        page.spLayer->SetLivePath({});
        page.spLayer->DropCaches();
        EXPECT_EQ(page.Picture(), vShown);
        // A cancelled drag leaves nothing.
        page.spLayer->SetLivePath(spPath);
        DragAnchor(*spPath, {-500, 1300});
        page.Picture();
        spPath->CancelDrag();
        EXPECT_EQ(page.Picture(), vShown);
    }
}

TEST(VectorLayer, APathThatComesIsPaintedAloneOverTheOthers) {
    TPage page;
    std::mt19937 random(11);
    const auto spCounted = boost::make_shared<TCountedPath>();
    for (const CPoint pt : {CPoint{0, 0}, {4000, 100}, {3000, 3200}}) AddAnchor(spCounted->GetStream(), pt);
    spCounted->Update();
    page.spLayer->InsertPath(spCounted);
    page.Picture();
    const int nCount = spCounted->GetStream().nCount;
    for (int n = 0; n < 5; ++n) {
        page.spLayer->InsertPath(MakeRandomPath(SIZE, random), n % 2 ? 0 : -1);
        if (n != 3) page.Picture();
    }
    EXPECT_EQ(spCounted->GetStream().nCount, nCount);
    // The picture equals that of a layer painted anew, after any changes between two paintings.
    for (int n = 0; n < 40; ++n) {
        for (uint32_t i = random() % (n == 20 ? 100 : 4); i > 0; --i) {
            const auto spPath = MakeRandomPath({200, 200}, random);
            page.spLayer->InsertPath(spPath);
            if (random() % 3 == 0) spPath->Transform([](CPoint pt) { return CPoint{pt.x + 300, pt.y}; });
            if (random() % 3 == 0) page.spLayer->RemovePath(spPath);
        }
        if (n % 4 == 1) page.spLayer->RemovePath(page.spLayer->GetPaths().back());
        page.spLayer->SetLivePath(n % 5 == 2 ? spCounted : boost::shared_ptr<TCountedPath>());
        const auto vShown = page.Picture();
        page.spLayer->DropCaches();
        ASSERT_EQ(page.Picture(), vShown) << n;
    }
}

TEST(VectorLayer, AStrokeShowsOverThePathsWithoutATraceOfIt) {
    TPage page;
    std::mt19937 random(12);
    page.spLayer->SetLayerColor(0);
    for (int k = 0; k < 3; ++k) page.spLayer->InsertPath(MakeRandomPath(SIZE, random));
    const auto vBefore = page.Picture();
    CRunningClock clock(0);
    CStrokeRandom strokeRandom;
    const auto spStroke =
        boost::make_shared<CRasterBrushStroke>(TStrokeSetup{.szCanvas = SIZE,
                                                            .color = 0x0000FF,
                                                            .param = {.BrushRadius = 16, .BlurLevel = 100},
                                                            .clock = clock,
                                                            .random = strokeRandom});
    page.spLayer->SetStroke(spStroke);
    for (int32_t n = 0; n < 30; ++n) spStroke->AddCtlPoint({800 + n * 40, 1604}, 1024, 90);
    do {
        EXPECT_TRUE(page.spCanvas->Update());
        page.Picture();
    } while (page.spLayer->IsBehind());
    const auto colorAt = [&](CPoint pt) {
        const auto spTile = page.spCanvas->GetComposite().GetBlock(pt, false);
        return spTile->GetPixelColor(pt - spTile->GetPosition());
    };
    EXPECT_EQ(colorAt({160, 200}), 0x0000FFu);
    EXPECT_NE(colorAt({160, 190}), 0x0000FFu);
    page.spLayer->SetStroke({});
    EXPECT_EQ(page.Picture(), vBefore);
}

TEST(VectorLayer, ALargeLivePathIsFilledInHalvesAsItIsWhole) {
    TPage page;
    std::mt19937 random(5);
    for (int k = 0; k < 5; ++k) page.spLayer->InsertPath(MakeRandomPath(SIZE, random));
    const auto spPath = boost::make_shared<CClosedPathObject>();
    for (const CPoint pt : {CPoint{0, 0}, {4000, 100}, {3000, 3200}}) AddAnchor(spPath->GetStream(), pt);
    spPath->Update();
    page.spLayer->InsertPath(spPath);
    const auto vBefore = page.Picture();
    page.spLayer->SetLivePath(spPath);
    DragAnchor(*spPath, {1100, 900});
    const auto vShown = page.Picture();
    EXPECT_NE(vShown, vBefore);
    spPath->CommitDrag();
    page.spLayer->DropCaches();
    EXPECT_EQ(page.Picture(), vShown);
}

TEST(VectorLayer, PathsAreFoundByTheirReach) {
    TPage page;
    CVectorLayerBuffer& layer = *page.spLayer;
    std::mt19937 random(8);
    EXPECT_TRUE(layer.GetPathsReach().IsEmpty());
    for (int n = 0; n < 300; ++n) {
        const auto nPaths = layer.GetPaths().size();
        const auto any = [&] {
            return *std::next(layer.GetPaths().begin(), static_cast<int>(random() % nPaths));
        };
        layer.TakeReachChange();
        if (n < 40 || random() % 3 == 0) {
            const auto spPath = MakeRandomPath({200, 200}, random);
            layer.InsertPath(spPath, static_cast<int>(random() % (nPaths + 1)));
            EXPECT_EQ(layer.TakeReachChange(), spPath->GetReach());
        } else if (random() % 2) {
            const auto spPath = any();
            const auto it = std::find(layer.GetPaths().begin(), layer.GetPaths().end(), spPath);
            const auto idx = static_cast<int>(std::distance(layer.GetPaths().begin(), it));
            layer.SelectPath(spPath);
            EXPECT_EQ(layer.RemovePath(spPath), idx);
            EXPECT_EQ(layer.RemovePath(spPath), -1);
            EXPECT_FALSE(layer.GetSelectedPath() || layer.HasPath(*spPath));
        } else {
            const auto spPath = any();
            const CRect rcBefore = spPath->GetReach();
            spPath->Transform([&](CPoint pt) { return CPoint{pt.x + 100, pt.y / 2}; });
            EXPECT_EQ(layer.TakeReachChange(), rcBefore.Union(spPath->GetReach()));
        }
        const CPoint pt{static_cast<int32_t>(random() % 1600), static_cast<int32_t>(random() % 1600)};
        const CRect rc(pt, CSize{static_cast<int32_t>(1 + random() % 90), 20});
        std::vector<boost::shared_ptr<CPathObject>> vExpected;
        CRect rcAll;
        for (const auto& spPath : layer.GetPaths()) {
            if (!spPath->GetReach().Intersect(rc).IsEmpty()) vExpected.push_back(spPath);
            rcAll = rcAll.Union(spPath->GetReach());
        }
        ASSERT_EQ(layer.FindPaths(rc), vExpected) << n;
        EXPECT_EQ(layer.GetPathsReach(), rcAll);
    }
}

TEST(VectorLayer, ReachHoldsAllThatIsDrawnAndInkAllThatIsPainted) {
    const auto spPath = MakeLevelStroke(2);
    EXPECT_EQ(spPath->GetReach(), spPath->RectIncludingPath());
    // A width mark's handles stand at ten times the width, an anchor's where they are.
    spPath->GetStream().AddWidthPoint(0x8000);
    spPath->Update();
    EXPECT_EQ(spPath->GetReach().top, -400);
    EXPECT_EQ(spPath->GetReach().bottom, 401);
    spPath->GetStream().GetControlPoint(0)->SetBack(CDualValue<CPoint>({-900, 0}));
    spPath->Update();
    EXPECT_EQ(spPath->GetReach().left, -900);
    const auto spShape = MakeRectPath({2, 3, 10, 12});
    EXPECT_TRUE(spShape->HasInkAt({16, 24}) && spShape->HasInkAt({79, 95}));
    EXPECT_FALSE(spShape->HasInkAt({88, 40}) || spShape->HasInkAt({40, 104}) || spShape->HasInkAt({-8, 40}));
}

TEST(VectorLayer, ManyPathsAreReadInTheirOrder) {
    std::mt19937 random(8);
    TPage page;
    for (int n = 0; n < 200; ++n) page.spLayer->InsertPath(MakeRandomPath(SIZE, random));
    const TBytes vBytes = page.spLayer->Serialize().GetWhole();
    TPage other;
    CDeserializer reader(page.spLayer->Serialize());
    other.spLayer->Deserialize(reader, other.spCanvas);
    EXPECT_EQ(other.spLayer->Serialize().GetWhole(), vBytes);
    auto it = page.spLayer->GetPaths().begin();
    for (const auto& spPath : other.spLayer->GetPaths()) EXPECT_EQ(spPath->GetReach(), (*it++)->GetReach());
    // One whose outline cannot be built is enough to refuse the file.
    const auto spWave = MakeLevelStroke(2);
    page.spLayer->InsertPath(spWave, 120);
    for (int32_t n = 0; n < 120; ++n) AddAnchor(spWave->GetStream(), {n % 2 ? 0x20000 : 0, n});
    spWave->GetStream().SetWave(true, {1, 1});
    TPage bad;
    CDeserializer damaged = OpenChunk(FileOf(page.spLayer->Serialize()));
    EXPECT_THROW(bad.spLayer->Deserialize(damaged, bad.spCanvas), deserialize_error);
    EXPECT_TRUE(bad.spLayer->GetPaths().empty());
}
