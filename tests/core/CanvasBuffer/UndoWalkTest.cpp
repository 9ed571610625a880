#include "core/Base/Text.h"
#include "core/CanvasFrame/LayerCommands.h"
#include "core/Commands/CommandIds.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/LayerBuffer/StrokeHistory.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProjectBytes.h"

namespace {

constexpr CSize SIZE{130, 50};
constexpr size_t OPERATIONS = 500;
constexpr size_t MAX_LAYERS = 9;

void Collect(const CLayerBuffer& layer, std::vector<TLayerPtr>& vLayers) {
    for (const TLayerPtr& spChild : layer.GetChildren()) {
        vLayers.push_back(spChild);
        spChild->SetActiveChild({}); // which layer is active is no part of what is undone
        Collect(*spChild, vLayers);
    }
}

void PaintStroke(CCanvasBuffer& canvas, CRasterLayerBuffer& layer, std::mt19937& random) {
    const auto spRaster = layer.GetRaster();
    const auto spBefore = spRaster->ShallowCopy();
    spRaster->ForEachBlock([&](CPoint pt) {
        if (random() % 2) return;
        const auto spTile = spRaster->GetBlockOrBlank(pt)->Clone();
        for (int n = 0; n < 300; ++n) spTile->GetPixelPtr({0, 0})[random() % (96 * 96 * 2)] ^= random() & 255;
        spRaster->SetBlock(pt, random() % 8 ? spTile : boost::shared_ptr<CRasterBlockBuffer>());
    });
    canvas.GetHistory().Register(
        boost::make_shared<CCommitStrokeBufferHistory>(L"ブラシ", *spBefore, spRaster));
}

class UndoWalk : public testing::TestWithParam<unsigned> {
protected:
    UndoWalk() {
        m_spCanvas->GetHistory().SetLimits(m_switches);
        FillRandomTree(m_spCanvas, 4, m_random);
    }

    // What a document is: its file, its pixels, its selection.
    size_t State() {
        std::vector<TLayerPtr> vLayers;
        m_spCanvas->GetRoot().SetActiveChild({});
        Collect(m_spCanvas->GetRoot(), vLayers);
        const auto hash = [](const auto& v) {
            return std::hash<std::string_view>()({reinterpret_cast<const char*>(v.data()), v.size()});
        };
        return hash(SaveToBytes(*m_spCanvas)) ^ hash(PixelsOf(*m_spCanvas->Flatten())) * 3 ^
               reinterpret_cast<size_t>(m_spCanvas->GetSelect().get());
    }

    // One random action; false when it did nothing.
    bool Act() {
        const size_t nBefore = m_spCanvas->GetHistory().GetUndoList().size();
        std::vector<TLayerPtr> vLayers;
        Collect(m_spCanvas->GetRoot(), vLayers);
        const auto any = [&] { return vLayers.empty() ? TLayerPtr() : vLayers[m_random() % vLayers.size()]; };
        const TLayerPtr spLayer = any();
        m_spCanvas->SelectLayer(spLayer);
        if (!spLayer || (vLayers.size() < MAX_LAYERS && m_random() % 3 == 0))
            return DoLayerCommand(m_spCanvas, ID_LAYER_NEW_RASTER + static_cast<int>(m_random() % 3));
        const auto pVector = dynamic_cast<CVectorLayerBuffer*>(spLayer.get());
        const auto pRaster = dynamic_cast<CRasterLayerBuffer*>(spLayer.get());
        constexpr int COMMANDS[] = {ID_LAYER_DELETE, ID_LAYER_CLIPPING, ID_LAYER_MERGE_DOWN,
                                    ID_LAYER_RASTERIZE};
        const auto nAction = m_random() % 10;
        if (nAction < 4) return DoLayerCommand(m_spCanvas, COMMANDS[nAction]);
        if (nAction == 4 && m_random() % 4 == 0)
            return DoLayerCommand(m_spCanvas, ID_MODE_GREY + static_cast<int>(m_random() % 3));
        if (nAction == 5) spLayer->SetOpacity(static_cast<uint8_t>(m_random()), true);
        if (nAction == 6) spLayer->setName(std::to_wstring(m_random()), true);
        const TLayerPtr spParent = any();
        if (nAction == 7 && spParent != spLayer && !spLayer->FindParentOf(*spParent))
            m_spCanvas->GetRoot().FindParentOf(*spLayer)->MoveLayer(spLayer, spParent, -1);
        if (nAction == 8) ChangeSelection(m_spCanvas, boost::make_shared<CSelectBuffer>(SIZE), L"選択ツール");
        if (nAction == 9 && pVector) pVector->SetLayerColor(m_random() & 0xFFFFFF, true);
        if (nAction == 9 && pRaster) PaintStroke(*m_spCanvas, *pRaster, m_random);
        return m_spCanvas->GetHistory().GetUndoList().size() > nBefore;
    }

    const TGlobalSwitches m_switches{.m_nMaxHistory = OPERATIONS};
    std::mt19937 m_random{GetParam()};
    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas(SIZE);
};

} // namespace

TEST_P(UndoWalk, EveryStateComesBackWholly) {
    std::vector<size_t> vStates{State()};
    while (vStates.size() <= OPERATIONS) {
        vStates.resize(vStates.size() + Act()); // one opacity after the other is one step
        vStates.back() = State();
    }
    size_t nAt = OPERATIONS;
    CHistoryStream& history = m_spCanvas->GetHistory();
    ASSERT_EQ(history.GetUndoList().size(), OPERATIONS);
    while (nAt > 0 && !HasFailure()) {
        const bool bBack = nAt == OPERATIONS || m_random() % 4;
        const std::wstring strLabel =
            (bBack ? history.GetUndoList() : history.GetRedoList()).front()->GetName();
        bBack ? history.Undo() : history.Redo();
        nAt += bBack ? size_t(-1) : 1;
        if (m_random() % 3 == 0) m_spCanvas->ComposeAll();
        EXPECT_EQ(State(), vStates[nAt]) << nAt << (bBack ? " undo " : " redo ") << ToUtf8(strLabel);
    }
    while (history.CanRedo()) history.Redo();
    EXPECT_EQ(State(), vStates.back());
}

INSTANTIATE_TEST_SUITE_P(Seeds, UndoWalk, testing::Range(1u, 4u));
