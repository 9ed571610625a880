#include "core/Base/Resource.h"
#include "core/Commands/MenuTable.h"
#include "core/Panels/ToolTable.h"
#include "session/seam/SessionKeys.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/TestPlatform.h"
#include "tests/support/TestTool.h"

namespace {

struct CEditTool : CTestTool {
    using CTestTool::CTestTool;
    bool OnCommand(int nId) override { return Note(std::to_string(nId)); }
    bool CanCommand(int nId) const override { return nId == ID_EDIT_CLEAR; }
    bool Cut() override { return Note("cut"); }
    bool Copy() override { return Note("copy"); }
    bool Paste() override { return Note("paste"); }
    bool CanCopy() const override { return true; }
    bool CanPaste() const override { return true; }
    bool OnPrivateMessage(int64_t w, int64_t l) override { return w == 3 && Note(std::to_string(l)); }
    bool Note(const std::string& str) {
        m_strDone += str + " ";
        return true;
    }
    std::string m_strDone;
};

void Press(int nKey) {
    g_AppModule.GetPlatform().queue.Post({g_pMainFrame->GetWindow(), EMessage::KeyDown, nKey});
}

} // namespace

TEST(Commands, ASessionGivesTheActiveToolWhatNobodyElseDoes) {
    CTestPlatform outside;
    boost::shared_ptr<CEditTool> spTool;
    CToolMaker tools;
    const auto enabled = [] {
        std::string str;
        for (const int nId : {ID_EDIT_CUT, ID_EDIT_COPY, ID_EDIT_PASTE, ID_EDIT_CLEAR, ID_VIEW_OUTLINE,
                              ID_VIEW_ALL_ANCHORS, ID_PANEL_LAYER, ID_VIEW_FAST_SCROLL})
            if (g_pMainFrame->IsCommandEnabled(nId)) str += std::string(FindCommandName(nId)) + " ";
        return str;
    };
    outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(enabled(), "view-outline view-all-anchors panel-layer view-fast-scroll ")
            << "the brush edits nothing";
        spTool = tools.Use<CEditTool>();
        EXPECT_EQ(
            enabled(),
            "edit-copy edit-paste edit-clear view-outline view-all-anchors panel-layer view-fast-scroll ");
        player.SendCommand(ID_EDIT_CLEAR);
        EXPECT_TRUE(g_pMainFrame->OnMessage({nullptr, WM_TOOL_MESSAGE, 3, 4}));
        EXPECT_FALSE(g_pMainFrame->OnMessage({nullptr, WM_TOOL_MESSAGE, 4, 3}));
        EXPECT_FALSE(player.TryCommand(ID_EDIT_CUT));
        player.GetStage().keys.Press(VK_Control, true);
        for (const int nKey : {'V', 'X', 'C'}) Press(nKey);
    });
    outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(spTool->m_strDone, "57632 4 paste copy ");
        player.GetStage().keys.Press(VK_Control, false);
        g_wpActiveFrame.lock()->GetWindow()->Destroy();
        EXPECT_EQ(enabled(), "view-outline view-all-anchors panel-layer view-fast-scroll ")
            << "nothing is open";
    });
    outside.Play([] { CTestPlatform::Open(CreateCanvas({30, 20})); });
}

TEST(Commands, EveryLayerAndModeCommandIsOneUndoStepUnderItsName) {
    struct TCase {
        int nBefore; ///< the command that leads to the case, 0 for none
        int nId;
        const wchar_t* pszLabel;
    };
    const TCase aCases[] = {
        {0, ID_LAYER_NEW_RASTER, L"レイヤー追加"}, {0, ID_LAYER_NEW_VECTOR, L"レイヤー追加"},
        {0, ID_LAYER_NEW_SET, L"レイヤー追加"},    {0, ID_LAYER_DELETE, L"レイヤー削除"},
        {0, ID_LAYER_CLIPPING, L"レイヤー移動"},   {ID_LAYER_CLIPPING, ID_LAYER_CLIPPING, L"レイヤー移動"},
        {0, ID_LAYER_MERGE_DOWN, L"レイヤ結合"},   {ID_LAYER_NEW_VECTOR, ID_LAYER_RASTERIZE, L"ラスタライズ"},
        {0, ID_MODE_GREY, L"カラーモード変更"},    {ID_MODE_GREY, ID_MODE_RGB, L"カラーモード変更"},
        {0, ID_MODE_LIGHT, L"カラーモード変更"},
    };
    CTestPlatform outside;
    const auto spCanvas = MakePage({200, 100});
    std::mt19937 random(3);
    spCanvas->GetRoot().AddLayer(MakeRandomLayer(spCanvas, random), -1, false);
    outside.AddStep([&](CPlayer& player) {
        CHistoryStream& history = spCanvas->GetHistory();
        for (const auto& [nBefore, nId, pszLabel] : aCases) {
            spCanvas->SelectLayer(spCanvas->GetRoot().GetChildren().back());
            if (nBefore) player.SendCommand(nBefore);
            const TBytes vBefore = SaveToBytes(*spCanvas);
            player.SendCommand(nId);
            const TBytes vDone = SaveToBytes(*spCanvas);
            EXPECT_TRUE(history.GetUndoList().size() == (nBefore ? 2u : 1u) && vDone != vBefore) << nId;
            EXPECT_EQ(history.GetUndoList().front()->GetName(), pszLabel);
            player.SendCommand(ID_EDIT_UNDO);
            EXPECT_TRUE(SaveToBytes(*spCanvas) == vBefore) << nId;
            player.SendCommand(ID_EDIT_REDO);
            EXPECT_TRUE(SaveToBytes(*spCanvas) == vDone) << nId;
            history.GoTo({});
        }
        g_wpActiveFrame.lock()->GetWindow()->Destroy();
    });
    outside.Play([&] { CTestPlatform::Open(spCanvas); });
}
