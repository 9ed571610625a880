#include "core/RasterMove/RasterMove.h"
#include "core/RasterBrush/FreehandTools.h"
#include "tests/support/ToolSession.h"

namespace {

constexpr TColor RED = MakeColor(200, 0, 0);

// Two raster layers; on the lower, active one a red square at (10, 10) to (20, 20), of which the left half is
// selected.
class RasterMove : public testing::Test, protected CToolSession {
protected:
    RasterMove() : CToolSession(MakePage({200, 120})) {
        m_spLayer = boost::static_pointer_cast<CRasterLayerBuffer>(m_spCanvas->GetActiveLayer());
        m_spUpper = CreateRasterLayer(m_spCanvas);
        m_spCanvas->GetRoot().AddLayer(m_spUpper, -1, false);
        Paint(*m_spLayer, {10, 10, 20, 20});
        Select({10, 10, 15, 20});
    }
    static void Paint(CRasterLayerBuffer& layer, const CRect& rc) {
        const auto spTile = layer.GetRaster()->CreateBlock({0, 0});
        spTile->Fill(RED, 255);
        spTile->ClearOutside(rc);
        layer.GetRaster()->PasteBlock(*spTile, {0, 0});
    }
    void Select(const CRect& rc) {
        const auto spSelect = boost::make_shared<CSelectBuffer>(m_spCanvas->GetSize());
        spSelect->SelectAll();
        const auto spTile = boost::static_pointer_cast<CAlphaBlock8>(FullSelectTile()->Clone());
        spTile->ClearOutside(rc);
        spSelect->GetMask().ForEachBlock([&](CPoint pt) { spSelect->GetMask().SetBlock(pt, {}); });
        spSelect->GetMask().SetBlock({0, 0}, spTile);
        spSelect->UpdateOutline();
        m_spCanvas->SetSelect(spSelect);
    }
    /// The columns of the picture's row 15 that are painted, as "10-19 40-44".
    std::string Row(int32_t y = 15) {
        m_spCanvas->ComposeAll();
        std::string strRow;
        for (int32_t x = 0, nFrom = -1; x <= m_spCanvas->GetSize().cx; ++x) {
            const bool bPaint =
                x < m_spCanvas->GetSize().cx && PixelAt(m_spCanvas->GetComposite(), {x, y}) >> 24;
            if (bPaint && nFrom < 0) nFrom = x;
            if (bPaint || nFrom < 0) continue;
            strRow += (strRow.empty() ? "" : " ") + std::to_string(nFrom) + '-' + std::to_string(x - 1);
            nFrom = -1;
        }
        return strRow;
    }
    CRect Bound() const { return m_spCanvas->GetSelect() ? m_spCanvas->GetSelect()->GetBound() : CRect(); }
    void DragBy(CPoint ptFrom, CPoint pt) {
        const CPoint ptEnd = ptFrom + pt;
        Drag({{ptFrom.x * 8, ptFrom.y * 8},
              {ptFrom.x * 8 + 40, ptFrom.y * 8},
              {ptEnd.x * 8 + 7, ptEnd.y * 8 + 7}});
    }
    void Undo() { Command(ID_EDIT_UNDO); }
    /// Undoes everything and expects the given bytes, redoes it and expects the last ones.
    void ExpectHistory(const TBytes& vFirst) {
        const TBytes vLast = Bytes();
        const auto vPicture = Picture();
        const size_t nSteps = Labels().size();
        while (m_spCanvas->GetHistory().CanUndo()) Undo();
        EXPECT_EQ(Bytes(), vFirst);
        while (m_spCanvas->GetHistory().CanRedo()) Command(ID_EDIT_REDO);
        EXPECT_EQ(Bytes(), vLast);
        EXPECT_EQ(Picture(), vPicture);
        EXPECT_EQ(Labels().size(), nSteps);
    }

    boost::shared_ptr<CRasterLayerBuffer> m_spLayer, m_spUpper;
};

} // namespace

TEST_F(RasterMove, MovesSelectedPixelsBeyondTheEdgeAndBack) {
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        DragBy({100, 100}, {30, 2});
        EXPECT_EQ(Row(), "15-19 40-44");
        EXPECT_EQ(Bound(), CRect(40, 12, 45, 22));
        DragBy({50, 50}, {-43, 0}); // x from -3
        EXPECT_EQ(Row(), "0-1 15-19");
        EXPECT_EQ(Bound(), CRect(0, 12, 2, 22));
        DragBy({0, 0}, {-500, -500});
        EXPECT_EQ(m_spCanvas->GetSelect(), nullptr);
        DragBy({0, 0}, {500 + 13, 500 - 2});
        EXPECT_EQ(Row(), "10-19") << "home again";
        EXPECT_EQ(Bytes(), vFirst);
        EXPECT_EQ(Labels(), std::vector<std::wstring>(4, L"ラスタ移動"));
        ExpectHistory(vFirst);
        Undo(), Undo();
        EXPECT_EQ(Row(), "0-1 15-19");
        m_bPen = true; // goes on from any state, with the pen too
        DragBy({0, 0}, {5, 0});
        EXPECT_EQ(Row(), "2-6 15-19");
        ExpectHistory(vFirst);
    });
}

TEST_F(RasterMove, CopiesWithControlInEveryFreehandTool) {
    Play(TOOL_BRUSH, [&] {
        const TBytes vFirst = Bytes();
        Key(VK_Control, true);
        DragBy({150, 100}, {30, 0});
        EXPECT_EQ(Row(), "10-19 40-44");
        DragBy({150, 100}, {30, 0}); // drops the first copy and goes on with a second one
        EXPECT_EQ(Row(), "10-19 40-44 70-74");
        m_bPen = true;
        DragBy({150, 100}, {30, 0});
        EXPECT_EQ(Row(), "10-19 40-44 70-74 100-104");
        EXPECT_EQ(Labels(), std::vector<std::wstring>(3, L"ラスタ複製"));
        ExpectHistory(vFirst);
        // Without a selection Control neither copies nor draws.
        Command(ID_SELECT_NONE);
        const size_t nSteps = Labels().size();
        for (const bool bPen : {false, true}) {
            m_bPen = bPen;
            DragBy({30, 60}, {30, 0});
            EXPECT_EQ(Row(60), "");
        }
        EXPECT_EQ(Labels().size(), nSteps);
        Key(VK_Control, false);
    });
}

TEST_F(RasterMove, WithoutASelectionTheWholeLayerFloats) {
    m_spCanvas->SetSelect({});
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        DragBy({100, 100}, {-15, 0});
        EXPECT_EQ(Row(), "0-4");
        EXPECT_EQ(m_spCanvas->GetSelect(), nullptr);
        DragBy({100, 100}, {20, 0});
        EXPECT_EQ(Row(), "15-24") << "nothing is lost beyond the edge";
        ExpectHistory(vFirst);
        m_spCanvas->SelectLayer(m_spUpper);
        EXPECT_EQ(m_spLayer->GetFloat() != nullptr, true);
        DragBy({100, 100}, {20, 0}); // an empty layer has nothing to move
        EXPECT_EQ(Labels().size(), 2u);
        Command(ID_SELECT_NONE);
        EXPECT_FALSE(m_spLayer->GetFloat());
        EXPECT_EQ(Row(), "15-24");
    });
}

TEST_F(RasterMove, ADragThatEndsWhereItBeganOrIsCancelledLiftsNothing) {
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        Click({80, 80});
        Drag({{80, 80}, {400, 80}, {87, 87}});
        Press({80, 80}), Move({400, 80});
        EXPECT_EQ(Row(), "15-19 50-54");
        Type(VK_Escape);
        EXPECT_EQ(Row(), "10-19");
        Release({400, 80});
        Press({80, 80}), Move({400, 80});
        Undo(); // takes the drag back
        EXPECT_EQ(Row(), "10-19");
        Move({600, 80}), Release({600, 80});
        EXPECT_TRUE(Labels().empty() && !m_spLayer->GetFloat());
        EXPECT_EQ(Bound(), CRect(10, 10, 15, 20));
        EXPECT_EQ(Bytes(), vFirst);
        DragBy({0, 0}, {20, 0});
        // A cancelled lift on another layer lets the first one's pixels float again.
        m_spCanvas->SelectLayer(m_spUpper);
        Paint(*m_spUpper, {30, 10, 34, 20});
        Press({80, 80}), Move({400, 80});
        EXPECT_FALSE(m_spLayer->GetFloat());
        EXPECT_EQ(Row(), "15-19 30-34 70-73");
        Pointer(EMessage::RButtonDown, {400, 80});
        EXPECT_TRUE(m_spLayer->GetFloat() && !m_spUpper->GetFloat());
        EXPECT_EQ(Labels().size(), 1u);
    });
}

TEST_F(RasterMove, ArrowKeysFoldIntoOneStep) {
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        Type(VK_Right), Type(VK_Down), Type(VK_Right);
        Key(VK_Shift, true), Type(VK_Right), Key(VK_Shift, false);
        EXPECT_EQ(Row(), "15-19 22-26");
        EXPECT_EQ(Bound(), CRect(22, 11, 27, 21));
        const CPoint ptAt = m_spLayer->GetFloat()->GetOffset();
        SendMessage({g_wpActiveFrame.lock()->GetWindow(), EMessage::KeyDown, VK_Left, 1}); // a held key
        EXPECT_EQ(m_spLayer->GetFloat()->GetOffset(), ptAt - CPoint(1, 0));
        EXPECT_EQ(Labels(), std::vector<std::wstring>{L"ラスタ移動"});
        ExpectHistory(vFirst);
        DragBy({0, 0}, {5, 0});
        Type(VK_Left);
        EXPECT_EQ(Labels().size(), 3u) << "a drag lies between";
        ExpectHistory(vFirst);
        const CPoint ptBefore = m_spLayer->GetFloat()->GetOffset();
        Command(ID_VIEW_ROTATE_RIGHT), Type(VK_Right); // up on the canvas
        EXPECT_EQ(m_spLayer->GetFloat()->GetOffset(), ptBefore - CPoint(0, 1));
    });
}

TEST_F(RasterMove, CommandsTakeTheFloatAlone) {
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        DragBy({0, 0}, {8, 0}); // half over the rest of the square
        EXPECT_EQ(Row(), "15-22");
        Command(ID_EDIT_CLEAR);
        EXPECT_EQ(Row(), "15-19");
        EXPECT_TRUE(!m_spCanvas->GetSelect() && !m_spLayer->GetFloat());
        Undo();
        EXPECT_EQ(Row(), "15-22");
        EXPECT_TRUE(m_spLayer->GetFloat() && Bound() == CRect(18, 10, 23, 20));
        Command(ID_SELECT_ALL);
        EXPECT_FALSE(m_spLayer->GetFloat());
        EXPECT_EQ(Bound(), CRect(0, 0, 200, 120));
        Command(ID_SELECT_ALL); // nothing changes
        Command(ID_EDIT_CLEAR);
        Command(ID_EDIT_CLEAR);
        EXPECT_EQ(Row(), "");
        Command(ID_SELECT_NONE);
        Command(ID_SELECT_NONE);
        EXPECT_EQ(Labels(),
                  (std::vector<std::wstring>{L"ラスタ移動", L"全選択", L"選択範囲を消去", L"選択解除"}));
        ExpectHistory(vFirst);
    });
}

// A stroke over floating pixels is one step with their merge, inside their mask.
TEST_F(RasterMove, AStrokeMergesTheFloatInItsOwnStep) {
    Play(CRasterMove::TOOL_ID, [&] {
        const TBytes vFirst = Bytes();
        DragBy({0, 0}, {30, 0});
        const TBytes vAfloat = Bytes();
        g_pMainFrame->SwitchTool(TOOL_ERASER);
        auto& eraser = dynamic_cast<CRasterEraser&>(*g_wpActiveTool.lock());
        eraser.GetParam().BrushRadius = 64;
        Drag({{42 * 8, 5 * 8}, {42 * 8, 15 * 8}, {42 * 8, 30 * 8}});
        m_spCanvas->CompleteWork();
        EXPECT_FALSE(m_spLayer->GetFloat());
        EXPECT_EQ(Labels(), (std::vector<std::wstring>{L"ラスタ移動", L"消しゴム"}));
        EXPECT_EQ(Row(), "15-19") << "erased inside the selection, which is as wide as the eraser";
        Undo();
        EXPECT_TRUE(m_spLayer->GetFloat());
        EXPECT_EQ(Bytes(), vAfloat);
        Command(ID_EDIT_REDO);
        ExpectHistory(vFirst);
    });
}
