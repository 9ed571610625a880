#include "core/Base/Failure.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/LayerBuffer/LayerMerge.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/Planes.h"

#include <gtest/gtest.h>

namespace {

constexpr TColor RED = 0x0000FF;
constexpr TColor BLUE = 0xFF0000;

// A raster layer whose block at `pt` is one colour.
TLayerPtr MakeLayer(const boost::shared_ptr<CCanvasBuffer>& spCanvas, TColor color, uint8_t uAlpha,
                    CPoint pt = {0, 0}) {
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->GetRaster()->GetBlock(pt, true)->Fill(color, uAlpha);
    return spLayer;
}

// The composite's pixel as 0xAABBGGRR.
uint32_t Composed(CCanvasBuffer& canvas, CPoint pt) {
    canvas.ComposeAll();
    return PixelAt(canvas.GetComposite(), pt);
}

class LayerTree : public testing::Test {
protected:
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({150, 100});
    CLayerBuffer& m_root = m_spCanvas->GetRoot();
    CHistoryStream& m_history = m_spCanvas->GetHistory();
};

} // namespace

TEST_F(LayerTree, AMaskRestrictsWhereItHasTiles) {
    const auto spLayer = CreateRasterLayer(m_spCanvas);
    for (const CPoint pt : {CPoint{0, 0}, CPoint{96, 0}})
        spLayer->GetRaster()->GetBlock(pt, true)->Fill(RED, 200);
    m_root.AddLayer(spLayer, -1);
    EXPECT_EQ(Composed(*m_spCanvas, {3, 0}), 200u << 24 | RED);
    CAlphaBufferImpl<uint8_t>& mask = spLayer->GetMask();
    const auto spTile = mask.CreateBlock({0, 0});
    *spTile->GetPixelPtr({3, 0}) = 128;
    mask.SetBlock({0, 0}, spTile);
    EXPECT_EQ(Composed(*m_spCanvas, {3, 0}), 100u << 24 | RED);
    EXPECT_EQ(Composed(*m_spCanvas, {4, 0}), 0u);
    EXPECT_EQ(Composed(*m_spCanvas, {100, 0}), 200u << 24 | RED);
}

TEST_F(LayerTree, ChangesReachTheCountersOnceAndOnlyWhereTheyAre) {
    const auto spLayer = CreateRasterLayer(m_spCanvas);
    const auto spSet = CreateLayerSet(m_spCanvas);
    spLayer->GetRaster()->GetBlock({0, 0}, true)->Fill(RED, 255);
    spSet->AddLayer(spLayer, -1);
    spSet->SetOpacity(1); // a set's opacity is stored and shown, never drawn
    m_root.AddLayer(spSet, -1);
    EXPECT_EQ(Composed(*m_spCanvas, {0, 0}), 0xFF000000u | RED);
    const UpdateCounterMatrix before = m_spCanvas->GetCounters();
    m_spCanvas->FlushCanvasUpdates();
    spLayer->GetRaster()->SetBlock({100, 0}, spLayer->GetRaster()->CreateBlock({96, 0}));
    m_spCanvas->ComposeAll();
    m_spCanvas->FlushCanvasUpdates();
    EXPECT_EQ(m_spCanvas->GetCounters().At(1, 0), before.At(1, 0) + 1);
    EXPECT_EQ(m_spCanvas->GetCounters().At(0, 0), before.At(0, 0));
    // A hidden set keeps its flags to itself, or every repaint would find something to do.
    spSet->SetVisible(false);
    EXPECT_EQ(Composed(*m_spCanvas, {0, 0}), 0u);
    const UpdateCounterMatrix hidden = m_spCanvas->GetCounters();
    spLayer->GetRaster()->GetDirty().Fill(true);
    m_spCanvas->ComposeAll();
    m_spCanvas->FlushCanvasUpdates();
    EXPECT_EQ(m_spCanvas->GetCounters().At(0, 0), hidden.At(0, 0));
}

TEST(LayerStep, FlagsTheBlocksInWhichTheLayerHasOrHadSomething) {
    const auto spCanvas = CreateCanvas({288, 192});
    CLayerBuffer& root = spCanvas->GetRoot();
    CHistoryStream& history = spCanvas->GetHistory();
    const auto spBase = CreateRasterLayer(spCanvas);
    spBase->GetRaster()->ForEachBlock(
        [&](CPoint pt) { spBase->GetRaster()->GetBlock(pt, true)->Fill(RED, 9); });
    root.AddLayer(spBase, -1, false);
    spCanvas->ComposeAll();
    // The blocks that moved on, row by row, and then the picture beside one composed from nothing.
    const auto flagged = [&](const auto& fnStep) {
        const UpdateCounterMatrix before = spCanvas->GetCounters();
        fnStep();
        spCanvas->ComposeAll();
        std::string str;
        for (int i = 0; i < 6; ++i)
            str += spCanvas->GetCounters().At(i % 3, i / 3) == before.At(i % 3, i / 3) ? '.' : '#';
        const auto spCopy = boost::make_shared<CCanvasBuffer>();
        CDeserializer top(spCanvas->Serialize());
        spCopy->Deserialize(top, L"");
        spCopy->ComposeAll();
        EXPECT_EQ(PixelsOf(spCanvas->GetComposite()), PixelsOf(spCopy->GetComposite()));
        return str;
    };
    const auto spSet = CreateLayerSet(spCanvas);
    const auto spVector = CreateVectorLayer(spCanvas);
    EXPECT_EQ(flagged([&] {
                  for (const TLayerPtr& sp :
                       {TLayerPtr(spSet), TLayerPtr(spVector), TLayerPtr(CreateRasterLayer(spCanvas))})
                      root.AddLayer(sp, -1, false);
              }),
              "......")
        << "empty layers";
    EXPECT_EQ(flagged([&] { spVector->InsertPath(MakeRectPath(CRect(200, 120, 210, 130))); }), ".....#");
    const TLayerPtr spTop = MakeLayer(spCanvas, BLUE, 200, {96, 0});
    EXPECT_EQ(flagged([&] { spSet->AddLayer(spTop, -1); }), ".#....");
    for (const TLayerPtr& sp : {spTop, TLayerPtr(spSet), TLayerPtr(spVector)}) {
        const std::string strHere = sp == spVector ? ".....#" : ".#....";
        EXPECT_EQ(flagged([&] { sp->SetOpacity(100); }), sp == spSet ? "......" : strHere);
        EXPECT_EQ(flagged([&] { sp->SetVisible(false); }), strHere);
        EXPECT_EQ(flagged([&] { sp->SetVisible(true); }), strHere);
        const TLayerPtr spParent = root.FindParentOf(*sp);
        EXPECT_EQ(flagged([&] { spParent->RemoveLayer(sp); }), strHere);
        EXPECT_EQ(flagged([&] { history.Undo(); }), strHere);
        EXPECT_EQ(flagged([&] { spParent->MoveLayer(sp, spBase, -1, false); }), strHere);
        EXPECT_EQ(PixelAt(spCanvas->GetComposite(), {100, 5}) >> 24, sp == spVector ? 85u : 9u) << "clipped";
        EXPECT_EQ(flagged([&] { spBase->MoveLayer(sp, spParent, 0, false); }), strHere);
    }
    // The set goes out of sight with a layer that changes meanwhile.
    spSet->SetVisible(false);
    spCanvas->ComposeAll();
    EXPECT_EQ(
        flagged([&] {
            dynamic_cast<CRasterLayerBuffer&>(*spTop).GetRaster()->GetWritableBlock({0, 100})->Fill(BLUE, 99);
        }),
        "......");
    EXPECT_EQ(flagged([&] { spSet->SetVisible(true); }), ".#.#..");
    // So does the vector layer, which is not rasterized before it is shown.
    spVector->SetVisible(false);
    spCanvas->ComposeAll();
    EXPECT_EQ(flagged([&] { spVector->InvalidatePath({0, 0, 800, 80}); }), "......");
    EXPECT_EQ(flagged([&] { spVector->SetOpacity(90); }), "##...#");
    EXPECT_TRUE(spVector->MayPaintAt({0, 0})) << "nobody has looked";
    EXPECT_EQ(flagged([&] { spVector->SetVisible(true); }), "##...#");
    EXPECT_FALSE(spVector->MayPaintAt({0, 0}));
    // A layer that takes another's place flags what either shows.
    EXPECT_EQ(flagged([&] { RasterizeLayer(root.shared_from_this(), spVector); }), ".....#");
    TLayerList lstOther;
    for (int n = 0; n < 2; ++n)
        EXPECT_EQ(flagged([&] { CLayerBuffer::SwapChildren(spSet, &lstOther); }), ".#.#..") << n;
}

TEST_F(LayerTree, ADeletedLayerComesBackToItsPlaceAndWrongPlacesAreRefused) {
    const auto spA = MakeLayer(m_spCanvas, RED, 255), spB = MakeLayer(m_spCanvas, BLUE, 255);
    spA->AddLayer(CreateLayerSet(m_spCanvas), -1, false);
    EXPECT_FALSE(m_history.IsModified());
    m_root.AddLayer(spA, -1);
    m_root.AddLayer(spB, 0);
    m_root.SetActiveChild(spB);
    EXPECT_TRUE(m_history.IsModified());
    m_root.RemoveLayer(spB);
    m_root.SetActiveChild(spA);
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"レイヤー削除");
    m_history.Undo();
    EXPECT_EQ(m_root.IndexOf(*spB), 0);
    EXPECT_EQ(m_root.GetActiveChild(), spB);
    m_history.Undo();
    using TRefused = constraint_violation_as<invalid_argument>;
    EXPECT_THROW(m_root.AddLayer(spB, 9), TRefused);
    EXPECT_THROW(m_root.RemoveLayer(spB), TRefused);
    for (const TLayerPtr& spInto : {spA, *spA->GetChildren().begin()})
        EXPECT_THROW(m_root.MoveLayer(spA, spInto, 0), TRefused);
}

TEST_F(LayerTree, TheListIsLimitedAndItsFirstLineIsHonest) {
    ASSERT_EQ(g_Switches.m_nMaxHistory, 10);
    EXPECT_EQ(m_history.GetInitialName(), L"<< 初期状態 >>");
    for (int n = 0; n < 11; ++n) m_root.AddLayer(CreateLayerSet(m_spCanvas), -1);
    EXPECT_EQ(m_history.GetUndoList().size(), 10u);
    EXPECT_EQ(m_history.GetInitialName(), L"レイヤー追加");
    int nCancelled = 0;
    m_history.SetCancelHandler([&] { return ++nCancelled < 2; });
    m_history.Undo();
    m_history.Undo();
    EXPECT_EQ(nCancelled, 2);
    EXPECT_EQ(m_history.GetUndoList().size(), 10u); // cancelling pops nothing
    m_history.Undo();
    EXPECT_EQ(m_history.GetUndoList().size(), 9u); // the handler was dropped when it answered false
}

TEST_F(LayerTree, ASlidersWayIsOneStep) {
    const auto spA = MakeLayer(m_spCanvas, RED, 255), spB = MakeLayer(m_spCanvas, BLUE, 255);
    m_root.AddLayer(spA, -1, false);
    m_root.AddLayer(spB, -1, false);
    for (const int n : {200, 150, 100}) spB->SetOpacity(static_cast<uint8_t>(n), true);
    spB->SetOpacity(100, true); // no change, no step
    EXPECT_EQ(m_history.GetUndoList().size(), 1u);
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"不透明度変更");
    spA->SetOpacity(9, true);
    spB->SetOpacity(50, true); // another layer came between
    EXPECT_EQ(m_history.GetUndoList().size(), 3u);
    for (int n = 0; n < 3; ++n) m_history.Undo();
    EXPECT_EQ(spB->GetOpacity(), 255);
    EXPECT_EQ(Composed(*m_spCanvas, {0, 0}), 0xFF000000u | BLUE);
    m_history.Redo();
    EXPECT_EQ(spB->GetOpacity(), 100);
    spB->SetOpacity(60, true); // not into an entry that lies before something undone
    EXPECT_EQ(m_history.GetUndoList().size(), 2u);
}

TEST_F(LayerTree, ASaveStaysWithinReachOfUndo) {
    const auto spLayer = MakeLayer(m_spCanvas, RED, 255);
    m_root.AddLayer(spLayer, -1, false);
    spLayer->SetOpacity(200, true);
    const uint32_t uBefore = m_history.GetChangeCount();
    spLayer->SetOpacity(190, true);
    EXPECT_GT(m_history.GetChangeCount(), uBefore) << "a fold is a change";
    m_history.SetModified(false);
    spLayer->SetOpacity(100, true);
    EXPECT_TRUE(m_history.IsModified());
    spLayer->SetOpacity(90, true); // into the step after the save
    EXPECT_EQ(m_history.GetUndoList().size(), 2u);
    m_history.Undo();
    EXPECT_EQ(spLayer->GetOpacity(), 190) << "as it was saved";
    m_history.SetModified(false);
    m_history.Redo();
    spLayer->SetOpacity(80, true); // the step leads away from the saved state, not to it
    EXPECT_EQ(m_history.GetUndoList().size(), 2u);
    m_history.Undo();
    m_history.Undo();
    m_history.Redo();
    m_history.Redo();
    m_history.Undo();
    EXPECT_EQ(spLayer->GetOpacity(), 190);
}

TEST_F(LayerTree, ShowingAndHidingChangesTheDocumentWithoutAStep) {
    const auto spSet = CreateLayerSet(m_spCanvas);
    const TLayerPtr spInside = MakeLayer(m_spCanvas, RED, 255);
    spSet->AddLayer(spInside, -1, false);
    m_root.AddLayer(spSet, -1, false);
    m_root.AddLayer(MakeLayer(m_spCanvas, BLUE, 255, {96, 0}), -1, false);
    spInside->SetVisible(true, true);
    EXPECT_FALSE(m_history.IsModified()) << "it was shown";
    ChangeColorMode(m_spCanvas, false, false);
    m_history.SetModified(false);
    const TLayerPtr spCopy = m_spCanvas->GetRoot().GetChildren().front()->GetChildren().front();
    spCopy->SetVisible(false, true);
    EXPECT_TRUE(m_history.IsModified());
    EXPECT_EQ(m_history.GetUndoList().size(), 1u);
    m_history.Undo();
    EXPECT_FALSE(spInside->IsVisible()) << "the layer from before";
    EXPECT_EQ(Composed(*m_spCanvas, {0, 0}), 0u);
    EXPECT_EQ(Composed(*m_spCanvas, {96, 0}), 0xFF000000u | BLUE);
    spInside->SetVisible(true, true);
    m_history.Redo();
    EXPECT_EQ(Composed(*m_spCanvas, {0, 0}), 0xFF000000u | GreyOf(255, 0, 0) * 0x010101u);
}

TEST_F(LayerTree, LayersLieNoDeeperThanAFileHoldsThem) {
    TLayerPtr spDeepest = m_root.shared_from_this();
    const auto add = [&](const TLayerPtr& spLayer) { spDeepest->AddLayer(spLayer, -1); };
    for (int n = 1; n < MAX_LAYER_NESTING; ++n) {
        const TLayerPtr spSet = CreateLayerSet(m_spCanvas);
        add(spSet);
        spDeepest = spSet;
    }
    // One more layer fits, two in each other do not, whichever way they come.
    const TLayerPtr spOuter = CreateLayerSet(m_spCanvas);
    spOuter->AddLayer(CreateLayerSet(m_spCanvas), -1);
    m_root.AddLayer(spOuter, -1);
    m_history.SetModified(false);
    EXPECT_THROW(m_root.MoveLayer(spOuter, spDeepest, -1), refused_error);
    m_root.RemoveLayer(spOuter, false);
    EXPECT_THROW(add(spOuter), refused_error);
    EXPECT_FALSE(m_history.IsModified());
    add(spOuter->GetChildren().front());
    EXPECT_EQ(m_root.GetNesting(), MAX_LAYER_NESTING);
    try {
        spDeepest->GetChildren().front()->AddLayer(CreateRasterLayer(m_spCanvas), -1);
        ADD_FAILURE() << "too deep";
    } catch (const refused_error& e) {
        EXPECT_EQ(DescribeException(e), e.message); // no box for programmers
    }
    CMemoryFiles files;
    EXPECT_NO_THROW(SaveDocument(*m_spCanvas, L"deep.vlm", files));
}

TEST(Thumbnail, ScaleAndPicture) {
    EXPECT_EQ(ThumbnailScale({4000, 3000}), 48);
    EXPECT_EQ(ThumbnailScale({70, 5000}), 2);
    EXPECT_EQ(ThumbnailScale({69, 5000}), 1);
    const auto spCanvas = CreateCanvas({400, 400});
    const auto spLayer = MakeLayer(spCanvas, RED, 255, {96, 96});
    spCanvas->GetRoot().AddLayer(spLayer, -1);
    spCanvas->ComposeAll();
    CRasterBuffer& thumbnail = *spLayer->GetPicture().GetThumbnail();
    EXPECT_EQ(thumbnail.GetSize(), (CSize{50, 50}));
    EXPECT_EQ(thumbnail.GetBlock({12, 12}, false)->GetPixelColor({3, 3}), RED);
    EXPECT_FALSE(thumbnail.GetBlock({0, 0}, false));
    static_cast<CRasterLayerBuffer&>(*spLayer).GetRaster()->SetBlock({96, 96}, {});
    spCanvas->ComposeAll();
    EXPECT_FALSE(spLayer->GetPicture().GetThumbnail()->GetBlock({12, 12}, false));
}

TEST(Thumbnail, NothingBeyondTheCanvasIsSeen) {
    const auto spCanvas = CreateCanvas({107, 71}); // two pixels to one; the last column and row have only one
    const auto spLayer = CreateRasterLayer(spCanvas);
    spCanvas->GetRoot().AddLayer(spLayer, -1);
    CColorRasterBlockBuffer picture;
    picture.Create({107, 71}, {0, 0});
    picture.Fill(BLUE, 255);
    spLayer->GetRaster()->PasteBlock(picture, {0, 0});
    const auto corner = [&] {
        spLayer->GetRaster()->MarkDirty({106, 70, 107, 71});
        spCanvas->ComposeAll();
        return PixelAt(*spLayer->GetPicture().GetThumbnail(), {53, 35});
    };
    EXPECT_EQ(corner(), 0xFF000000u | BLUE);
    auto& tile = static_cast<CColorRasterBlockBuffer&>(*spLayer->GetRaster()->GetWritableBlock({106, 70}));
    for (size_t n = 0; n < 4; ++n) tile.GetPlane(n)[70 * 96 + 11] = 255; // the pixel right of the corner
    EXPECT_EQ(corner(), 0xFF000000u | BLUE);
}
