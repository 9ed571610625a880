#include "core/ImageFile/ImageFile.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/MemoryFiles.h"

namespace {

constexpr TColor RED = 0x0000FF;
constexpr TColor BLUE = 0xFF0000;

TLayerPtr MakeLayer(const boost::shared_ptr<CCanvasBuffer>& spCanvas, TColor color, uint8_t uAlpha,
                    CPoint pt = {0, 0}) {
    const auto spLayer = CreateRasterLayer(spCanvas);
    spLayer->GetRaster()->GetBlock(pt, true)->Fill(color, uAlpha);
    return spLayer;
}

class LayerTree : public testing::Test {
protected:
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({150, 100});
    CLayerBuffer& m_root = m_spCanvas->GetRoot();
    CHistoryStream& m_history = m_spCanvas->GetHistory();
};

} // namespace

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
    spSet->SetVisible(false);
    spCanvas->ComposeAll();
    EXPECT_EQ(
        flagged([&] {
            dynamic_cast<CRasterLayerBuffer&>(*spTop).GetRaster()->GetWritableBlock({0, 100})->Fill(BLUE, 99);
        }),
        "......");
    EXPECT_EQ(flagged([&] { spSet->SetVisible(true); }), ".#.#..");
    spVector->SetVisible(false);
    spCanvas->ComposeAll();
    EXPECT_EQ(flagged([&] { spVector->InvalidatePath({0, 0, 800, 80}); }), "......");
    EXPECT_EQ(flagged([&] { spVector->SetOpacity(90); }), "##...#");
    EXPECT_TRUE(spVector->MayPaintAt({0, 0})) << "nobody has looked";
    EXPECT_EQ(flagged([&] { spVector->SetVisible(true); }), "##...#");
    EXPECT_FALSE(spVector->MayPaintAt({0, 0}));
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
    for (int n = 0; n < 11; ++n) m_root.AddLayer(CreateLayerSet(m_spCanvas), -1);
    EXPECT_EQ(m_history.GetUndoList().size(), 10u);
    EXPECT_EQ(m_history.GetInitialName(), L"レイヤー追加");
    int nCancelled = 0;
    m_history.SetCancelHandler([&] { return ++nCancelled < 2; });
    for (const size_t nLeft : {10u, 10u, 9u}) { // the handler is dropped when it answers false
        m_history.Undo();
        EXPECT_EQ(m_history.GetUndoList().size(), nLeft);
    }
}

TEST_F(LayerTree, ASlidersWayIsOneStepAndASaveStaysWithinReachOfUndo) {
    const auto spA = MakeLayer(m_spCanvas, RED, 255), spB = MakeLayer(m_spCanvas, BLUE, 255);
    m_root.AddLayer(spA, -1, false);
    m_root.AddLayer(spB, -1, false);
    // Each number sets an opacity, of the lower layer where it is negative; 's' saves, 'u' and 'r' walk.
    const auto steps = [&](std::initializer_list<int> vActs) {
        for (const int n : vActs) switch (n) {
            case 's':
                m_history.SetModified(false);
                break;
            case 'u':
                m_history.Undo();
                break;
            case 'r':
                m_history.Redo();
                break;
            default:
                (n < 0 ? spA : spB)->SetOpacity(static_cast<uint8_t>(std::abs(n)), true);
            }
        return std::pair(m_history.GetUndoList().size(), int{spB->GetOpacity()});
    };
    EXPECT_EQ(steps({200, 150, 100, 100}), std::pair(size_t{1}, 100));
    const uint32_t uBefore = m_history.GetChangeCount();
    EXPECT_EQ(steps({99}), std::pair(size_t{1}, 99));
    EXPECT_GT(m_history.GetChangeCount(), uBefore) << "a fold is a change";
    EXPECT_EQ(steps({-9, 50}), std::pair(size_t{3}, 50)) << "another layer came between";
    EXPECT_EQ(steps({'u', 'u', 'u'}), std::pair(size_t{0}, 255));
    EXPECT_EQ(steps({'r', 60}), std::pair(size_t{2}, 60)) << "not into an entry before something undone";
    EXPECT_EQ(steps({'s', 59, 58}), std::pair(size_t{3}, 58)) << "not into what was saved";
    EXPECT_TRUE(m_history.IsModified());
    EXPECT_EQ(steps({'u', 's', 'r', 57}), std::pair(size_t{3}, 57)) << "it leads away from what was saved";
    EXPECT_EQ(steps({'u', 'u', 'r', 'r', 'u'}), std::pair(size_t{2}, 60)) << "as it was saved";
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
    EXPECT_EQ(PixelAt(thumbnail, {15, 15}), 0xFF000000u | RED);
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
