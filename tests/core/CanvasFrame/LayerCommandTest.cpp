#include "core/CanvasFrame/LayerCommands.h"
#include "core/Commands/CommandIds.h"
#include "tests/support/LayerPictures.h"

namespace {

// The tree from the bottom up, children in brackets, the active layer with a star.
std::wstring Describe(const CLayerBuffer& layer, const TLayerPtr& spActive) {
    std::wstring str;
    for (const TLayerPtr& spChild : layer.GetChildren()) {
        if (!str.empty()) str += L" ";
        str += spChild->GetName() + (spChild == spActive ? L"*" : L"");
        if (!spChild->GetChildren().empty()) str += L"[" + Describe(*spChild, spActive) + L"]";
    }
    return str;
}

class LayerCommands : public testing::Test {
protected:
    void Add(const wchar_t* pszName) {
        DoLayerCommand(m_spCanvas, ID_LAYER_NEW_RASTER);
        m_spCanvas->GetActiveLayer()->setName(pszName);
    }
    std::wstring Tree() { return Describe(m_spCanvas->GetRoot(), m_spCanvas->GetActiveLayer()); }
    void Select(int idx) {
        m_spCanvas->SelectLayer(*std::next(m_spCanvas->GetRoot().GetChildren().begin(), idx));
    }
    bool IsEnabled(int nId) { return GetLayerCommandState(*m_spCanvas, nId).bEnabled; }
    bool IsChecked(int nId) { return GetLayerCommandState(*m_spCanvas, nId).bChecked; }
    bool Do(int nId) { return DoLayerCommand(m_spCanvas, nId); }

    boost::shared_ptr<CCanvasBuffer> m_spCanvas = CreateCanvas({50, 40});
    CHistoryStream& m_history = m_spCanvas->GetHistory();
};

} // namespace

TEST_F(LayerCommands, NewLayersGoAboveTheActiveOneUnderFreeNames) {
    EXPECT_FALSE(IsEnabled(ID_LAYER_DELETE) || IsEnabled(ID_LAYER_RASTERIZE) || Do(ID_LAYER_DELETE));
    Do(ID_LAYER_NEW_RASTER);
    Do(ID_LAYER_NEW_RASTER);
    Select(0);
    Do(ID_LAYER_NEW_RASTER);
    EXPECT_EQ(Tree(), L"新規ラスタレイヤー 新規ラスタレイヤー (3)* 新規ラスタレイヤー (2)");
    Do(ID_LAYER_DELETE);
    EXPECT_EQ(Tree(), L"新規ラスタレイヤー* 新規ラスタレイヤー (2)"); // the one below
    Do(ID_LAYER_DELETE);
    EXPECT_EQ(Tree(), L"新規ラスタレイヤー (2)*");
    for (int n = 0; n < 2; ++n) m_history.Undo();
    Select(1);
    Do(ID_LAYER_NEW_SET);
    Do(ID_LAYER_NEW_RASTER); // into the set, whose names are its own
    Do(ID_LAYER_NEW_VECTOR);
    EXPECT_EQ(dynamic_cast<CVectorLayerBuffer&>(*m_spCanvas->GetActiveLayer()).GetLayerColor(),
              0u); // ink on paper
    EXPECT_EQ(Tree(), L"新規ラスタレイヤー 新規ラスタレイヤー (3) "
                      L"新規レイヤーセット[新規ラスタレイヤー 新規ベクタレイヤー*] 新規ラスタレイヤー (2)");
    m_history.Undo();
    EXPECT_EQ(m_spCanvas->GetActiveLayer()->GetName(), L"新規ラスタレイヤー"); // the one below
}

TEST_F(LayerCommands, ClippingMovesOntoTheLayerBelowAndBack) {
    Add(L"a"), Add(L"b"), Add(L"c");
    Select(0);
    EXPECT_FALSE(IsEnabled(ID_LAYER_CLIPPING)); // nothing below
    Select(1);
    Do(ID_LAYER_CLIPPING);
    EXPECT_EQ(Tree(), L"a[b*] c");
    EXPECT_TRUE(IsChecked(ID_LAYER_CLIPPING));
    Select(1);
    Do(ID_LAYER_CLIPPING);
    EXPECT_EQ(Tree(), L"a[b c*]");
    m_history.Undo();
    EXPECT_EQ(Tree(), L"a[b] c*");
    m_history.Redo();
    Do(ID_LAYER_CLIPPING);
    EXPECT_EQ(Tree(), L"a[b] c*");
    EXPECT_EQ(m_history.GetUndoList().front()->GetName(), L"レイヤー移動");
    m_spCanvas->SelectLayer(m_spCanvas->GetRoot().GetChildren().front()->GetChildren().front());
    EXPECT_FALSE(IsEnabled(ID_LAYER_MERGE_DOWN)); // nothing below among its siblings
    Do(ID_LAYER_DELETE);
    EXPECT_EQ(Tree(), L"a* c");
    m_history.Undo();
    EXPECT_EQ(Tree(), L"a[b*] c");
    Select(1);
    EXPECT_FALSE(IsEnabled(ID_LAYER_MERGE_DOWN)); // the one below has children
    Select(0);
    EXPECT_TRUE(IsEnabled(ID_LAYER_RASTERIZE));
    Do(ID_LAYER_RASTERIZE);
    EXPECT_EQ(Tree(), L"a* c");
    Select(1);
    Do(ID_LAYER_NEW_SET);
    EXPECT_FALSE(IsEnabled(ID_LAYER_MERGE_DOWN)); // a set merges with nothing
    Select(1);
    EXPECT_TRUE(IsEnabled(ID_LAYER_MERGE_DOWN));
    Do(ID_LAYER_MERGE_DOWN);
    EXPECT_EQ(Tree(), L"a* 新規レイヤーセット");
}
