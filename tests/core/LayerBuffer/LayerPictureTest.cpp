#include "core/RasterKernel/ResolveKernel.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "session/seam/VirtualClock.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/RunningClock.h"

namespace {

constexpr CSize SIZE{250, 120};
constexpr size_t TILE = 96 * 96;

std::vector<uint8_t> FreshPixels(const CCanvasBuffer& canvas) {
    const auto spCopy = boost::make_shared<CCanvasBuffer>();
    CDeserializer top(canvas.Serialize());
    spCopy->Deserialize(top, L"");
    return PixelsOf(*spCopy->Flatten());
}

class LayerPicture : public testing::TestWithParam<unsigned> {
protected:
    void SetUp() override { FillRandomTree(m_spCanvas, 12, m_random); }

    std::mt19937 m_random{GetParam()};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas(SIZE);
    CLayerBuffer& m_root = m_spCanvas->GetRoot();
};

} // namespace

TEST_P(LayerPicture, LightDisplayLosesNoColour) {
    const std::vector<uint8_t> vColor = PixelsOf(*m_spCanvas->Flatten());
    m_spCanvas->ConvertColorMode(false, true);
    m_spCanvas->ComposeAll();
    EXPECT_TRUE(dynamic_cast<CMonoRasterBuffer*>(&m_spCanvas->GetComposite()));
    EXPECT_EQ(PixelsOf(*m_spCanvas->Flatten()), vColor);
    for (const TLayerPtr& spLayer : m_root.GetChildren()) spLayer->SetOpacity(77);
    m_spCanvas->Flatten();
    m_spCanvas->ComposeAll();
    const std::vector<uint8_t> vGrey = PixelsOf(m_spCanvas->GetComposite());
    m_root.FollowColorMode(NoProgress());
    m_spCanvas->ComposeAll();
    EXPECT_EQ(PixelsOf(m_spCanvas->GetComposite()), vGrey);
}

TEST_P(LayerPicture, CachesFollowEveryChange) {
    m_spCanvas->ComposeAll();
    CHistoryStream& history = m_spCanvas->GetHistory();
    for (int n = 0; n < 400; ++n) {
        TLayerPtr spParent = m_root.shared_from_this();
        TLayerPtr spLayer = m_root.GetChildren().front();
        const auto step = [&](const TLayerPtr& sp) {
            return *std::next(sp->GetChildren().begin(),
                              static_cast<int>(m_random() % sp->GetChildren().size()));
        };
        for (spLayer = step(m_root.shared_from_this()); !spLayer->GetChildren().empty() && m_random() % 3;) {
            spParent = spLayer;
            spLayer = step(spParent);
        }
        const CPoint pt{static_cast<int32_t>(m_random() % SIZE.cx),
                        static_cast<int32_t>(m_random() % SIZE.cy)};
        const auto pRaster = dynamic_cast<CRasterLayerBuffer*>(spLayer.get());
        const auto pVector = dynamic_cast<CVectorLayerBuffer*>(spLayer.get());
        const auto nAction = m_random() % 12;
        if (nAction < 2) spLayer->SetVisible(!spLayer->IsVisible());
        if (nAction == 2) spLayer->SetOpacity(static_cast<uint8_t>(m_random()), true);
        const TLayerPtr spInto = m_root.GetChildren().front();
        if (nAction == 3 && spLayer->GetDepthOf(*spInto) < 0) spParent->MoveLayer(spLayer, spInto, 0);
        if (nAction == 4 && pRaster) pRaster->GetRaster()->SetBlock(pt, {});
        if (nAction == 5 && pRaster) pRaster->GetRaster()->GetWritableBlock(pt)->Fill(m_random(), 200);
        if (nAction == 6 && pVector) pVector->InsertPath(MakeRandomPath(SIZE, m_random));
        if (nAction == 7 && pVector) pVector->SetLayerColor(m_random() & 0xFFFFFF);
        if (nAction == 8 && m_root.GetChildren().size() > 2) spParent->RemoveLayer(spLayer);
        if (nAction == 9) spParent->AddLayer(MakeRandomLayer(m_spCanvas, m_random), 0);
        if (nAction == 10 && spLayer->IsRasterizable() && m_random() % 4 == 0)
            RasterizeLayer(spParent, spLayer);
        if (nAction == 11) m_random() % 4 ? history.Undo() : history.Redo();
        if (m_random() % 2) m_spCanvas->FlushCanvasUpdates();
        if (m_random() % 3) ComposeBlock(*m_spCanvas, pt.x, pt.y);
        if (n % 10 == 9) {
            ASSERT_EQ(PixelsOf(*m_spCanvas->Flatten()), FreshPixels(*m_spCanvas)) << n;
        }
    }
    // Nothing is left to do, and nothing holds a tile without need.
    const auto vCounters = m_spCanvas->GetCounters();
    m_spCanvas->FlushCanvasUpdates();
    EXPECT_EQ(vCounters.At(1, 0), m_spCanvas->GetCounters().At(1, 0));
    for (const TLayerPtr& spLayer : m_root.GetChildren()) spLayer->SetVisible(false);
    m_spCanvas->ComposeAll();
    EXPECT_FALSE(m_spCanvas->GetComposite().GetBlock({100, 0}, false));
}

INSTANTIATE_TEST_SUITE_P(Seeds, LayerPicture, testing::Range(1u, 9u));

TEST(LayerMerge, BakesOpacitiesUnderTheLowerName) {
    const auto spCanvas = CreateCanvas(SIZE);
    CLayerBuffer& root = spCanvas->GetRoot();
    const auto add = [&](TColor color, uint8_t uOpacity, const wchar_t* pszName) {
        const auto spLayer = CreateRasterLayer(spCanvas);
        spLayer->GetRaster()->GetBlock({0, 0}, true)->Fill(color, 255);
        spLayer->SetOpacity(uOpacity);
        spLayer->setName(pszName);
        root.AddLayer(spLayer, -1, false);
        return spLayer;
    };
    const auto spLow = add(0x0000FF, 128, L"low"), spHigh = add(0xFF0000, 128, L"high");
    root.SetActiveChild(spHigh);
    const uint32_t uBefore = PixelAt(*spCanvas->Flatten(), {0, 0});
    spHigh->SetVisible(false); // merged all the same
    MergeLayers(root.shared_from_this(), spLow, spHigh);
    ASSERT_EQ(root.GetChildren().size(), 1u);
    const TLayerPtr spMerged = root.GetChildren().front();
    EXPECT_TRUE(spMerged->GetName() == L"low" && spMerged->GetOpacity() == 255);
    EXPECT_EQ(PixelAt(*spCanvas->Flatten(), {0, 0}), uBefore);
    spCanvas->GetHistory().Undo();
    EXPECT_EQ(root.GetActiveChild(), spHigh);
}

TEST(VectorLayer, PaintsItsCoverageInItsColourOnlyWhereItChanged) {
    const auto spCanvas = CreateCanvas(SIZE);
    const auto spLayer = CreateVectorLayer(spCanvas);
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    spCanvas->ComposeAll();
    const auto spPath = MakeRectPath(CRect(90, 10, 100, 20));
    const auto counts = [&](const auto& fnStep) {
        const UpdateCounterMatrix before = spCanvas->GetCounters();
        fnStep();
        spCanvas->ComposeAll();
        std::string str;
        for (int32_t x = 0; x < 3; ++x)
            str += std::to_string(spCanvas->GetCounters().At(x, 0) - before.At(x, 0));
        return str;
    };
    EXPECT_EQ(counts([] {}), "000");
    EXPECT_EQ(counts([&] { spLayer->InsertPath(spPath); }), "110");
    // A path that moves repaints where it was and where it is.
    const auto move = [&](int32_t n) {
        spPath->Transform([&](CPoint pt) { return CPoint{pt.x + n * 8, pt.y}; });
    };
    EXPECT_EQ(counts([&] { move(130); }), "111");
    EXPECT_FALSE(spCanvas->GetComposite().GetBlock({0, 0}, false));
    move(-130);
    spLayer->SetLayerColor(0x0000FF);
    spLayer->SetVisible(false); // what takes its content gets it all the same
    EXPECT_EQ(BakeLayers(*spLayer)->GetRaster()->GetBlock({96, 0}, false)->GetPixelColor({3, 10}), 0x0000FFu);
}

TEST(VectorLayer, BlocksRasterizedTogetherAreAsEachAlone) {
    struct TPage {
        boost::shared_ptr<CCanvasBuffer> spCanvas = CreateCanvas({1100, 300});
        boost::shared_ptr<CVectorLayerBuffer> spLayer = CreateVectorLayer(spCanvas);
        TPage() {
            spCanvas->GetRoot().AddLayer(spLayer, -1, false);
            for (const CRect& rc : {CRect(5, 20, 180, 60), {150, 30, 1050, 280}, {900, 2, 2000, 90}})
                spLayer->InsertPath(MakeRectPath(rc));
        }
    };
    TPage page, expected;
    for (int n = 0; n < 3; ++n) {
        for (const TPage* p : {&page, &expected})
            (*std::next(p->spLayer->GetPaths().begin(), n))->Transform([&](CPoint pt) {
                return CPoint{pt.x + (n == 1 ? -700 : 150) + pt.y / 7, pt.y + pt.x / 40};
            });
        // One that is prepared out of turn takes others with it, which must be painted all the same.
        page.spLayer->PrepareOwn({0, 96});
        page.spCanvas->ComposeAll();
        // From the last block to the first none has a neighbour to go with.
        expected.spCanvas->FlushCanvasUpdates();
        for (int32_t k = 4 * 12 - 1; k >= 0; --k) ComposeBlock(*expected.spCanvas, k % 12 * 96, k / 12 * 96);
        ASSERT_EQ(PixelsOf(page.spCanvas->GetComposite()), PixelsOf(expected.spCanvas->GetComposite())) << n;
    }
    EXPECT_FALSE(page.spLayer->PrepareOwn({0, 288}));
}

namespace {

// A level line of full pressure, from canvas pixel `x0` to `x1` at height `y`.
boost::shared_ptr<CRasterStroke> MakeLine(CSize sz, int x0, int x1, int y, bool bErase = false,
                                          const wchar_t* pszName = L"ブラシ") {
    static CRunningClock clock(1); // a slow one: each update draws a step or two
    static CStrokeRandom random;
    const auto spStroke = boost::make_shared<CRasterBrushStroke>(
        TStrokeSetup{sz, 0x0000FF, bErase, true, pszName, {.BrushRadius = 20}, clock, random});
    for (int x = x0; x <= x1; x += 4) spStroke->AddCtlPoint({x * 8, y * 8}, 1024, 90);
    return spStroke;
}

boost::shared_ptr<CSelectBuffer> SelectColumns(int32_t nLeft, int32_t nRight) {
    const auto spSelect = boost::make_shared<CSelectBuffer>(SIZE);
    for (int32_t y = 0; y < SIZE.cy; ++y)
        for (int32_t x = nLeft; x < nRight; ++x)
            *spSelect->GetMask().GetBlock({x, y}, true)->GetPixelPtr({x % 96, y % 96}) = 255;
    return spSelect;
}

class StrokeInProgress : public testing::Test {
protected:
    static void Draw(CRasterLayerBuffer& layer, const boost::shared_ptr<CRasterStroke>& spStroke) {
        layer.SetStroke(spStroke);
        spStroke->AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
        layer.QueueStroke();
    }
    uint32_t AlphaAt(CPoint pt) {
        m_spCanvas->ComposeAll();
        return PixelAt(m_spCanvas->GetComposite(), pt) >> 24;
    }
    void UpdateUntilShown(CPoint pt) {
        for (int n = 0; n < 1000 && AlphaAt(pt) < 255; ++n) m_spCanvas->Update();
        EXPECT_EQ(AlphaAt(pt), 255u);
    }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = MakePage(SIZE);
    boost::shared_ptr<CRasterLayerBuffer> m_spLayer =
        boost::static_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
    CHistoryStream& m_history = m_spCanvas->GetHistory();
};

} // namespace

TEST_F(StrokeInProgress, EntersTheHistoryInTheOrderOfDrawingOnAllLayers) {
    const auto spHigh = CreateRasterLayer(m_spCanvas);
    m_spLayer->AddLayer(spHigh, -1, false);
    Draw(*m_spLayer, MakeLine(SIZE, 10, 240, 30, false, L"1"));
    Draw(*spHigh, MakeLine(SIZE, 10, 20, 30, false, L"2"));
    Draw(*spHigh, MakeLine(SIZE, 10, 200, 60, false, L"3"));
    Draw(*m_spLayer, MakeLine(SIZE, 10, 20, 60, false, L"4"));
    ChangeSelection(m_spCanvas, SelectColumns(0, 9), L"s");
    std::wstring strNames;
    for (const auto& spHistory : m_history.GetUndoList()) strNames += spHistory->GetName();
    EXPECT_EQ(strNames, L"s4321");
    // Strokes of a layer that was taken out of the tree hold no others up.
    Draw(*spHigh, MakeLine(SIZE, 10, 200, 60, false, L"5"));
    Draw(*m_spLayer, MakeLine(SIZE, 10, 20, 60, false, L"6"));
    m_spLayer->RemoveLayer(spHigh, false);
    m_spCanvas->CompleteWork();
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"6");
}

TEST_F(StrokeInProgress, PassesEachFlagOnOnce) {
    const auto gather = [&] {
        CBoolMatrix matrix(m_spCanvas->GetCounters().GetSize());
        m_spLayer->GetChangeMatrix(matrix);
        return matrix.HasNew();
    };
    m_spLayer->SetStroke(MakeLine(SIZE, 20, 160, 50));
    m_spCanvas->Update();
    EXPECT_TRUE(gather());
    EXPECT_FALSE(gather()) << "nothing was drawn since, though the block is still stale";
    int n = 0;
    for (; n < 1000 && !gather(); ++n) m_spCanvas->Update();
    EXPECT_LT(n, 1000) << "what is drawn next is passed on again";
}

TEST_F(StrokeInProgress, ShowsInsideTheSelectionAndIsMergedAsItWasShown) {
    m_spLayer->SetStroke(MakeLine(SIZE, 20, 160, 50));
    UpdateUntilShown({100, 50});
    const auto spSelect = boost::make_shared<CSelectBuffer>(SIZE);
    *spSelect->GetMask().GetBlock({96, 0}, true)->GetPixelPtr({4, 50}) = 128;
    m_spCanvas->SetSelect(spSelect);
    m_spLayer->GetPicture().MarkAllDirty();
    EXPECT_EQ(AlphaAt({100, 50}), 128u);
    EXPECT_EQ(AlphaAt({101, 50}), 0u);
    EXPECT_EQ(AlphaAt({50, 50}), 0u); // no mask tile: nothing selected
    m_spLayer->SetStroke({});         // taken away without a trace
    EXPECT_EQ(AlphaAt({100, 50}), 0u);
    EXPECT_FALSE(m_history.CanUndo());
    // Two strokes wait in line and are merged in their order, one step each.
    m_spCanvas->SetSelect({});
    for (const bool bErase : {false, true})
        Draw(*m_spLayer, MakeLine(SIZE, bErase ? 100 : 20, 160, 50, bErase));
    EXPECT_TRUE(m_spCanvas->HasPendingWork());
    m_spCanvas->CompleteWork();
    for (const auto& [n60, n130] : {std::pair{255u, 0u}, {255u, 255u}, {0u, 0u}}) {
        EXPECT_TRUE(AlphaAt({60, 50}) == n60 && AlphaAt({130, 50}) == n130);
        m_history.Undo();
    }
}

TEST(ColorMode, AnOperationThatFailsLeavesTheDocumentAsItWas) {
    const auto spCanvas = CreateCanvas(SIZE);
    std::mt19937 random(5);
    FillRandomTree(spCanvas, 8, random);
    const std::vector<uint8_t> vColor = PixelsOf(*spCanvas->Flatten());
    try {
        CanvasBufferHistoryHelper helper(L"", spCanvas);
        spCanvas->GetRoot().RemoveLayer(spCanvas->GetRoot().GetChildren().front(), false);
        throw internal_error(L"");
    } catch (const internal_error&) {
    }
    EXPECT_EQ(PixelsOf(*spCanvas->Flatten()), vColor);
}
