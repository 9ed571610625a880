#include "tests/support/TestPlatform.h"
#include "tests/support/TestTool.h"

namespace {

/// Keeps what it has open as a step of the active canvas's history.
struct COpenTool : CTestTool {
    using CTestTool::CTestTool;
    bool IsOpen() const override { return m_bOpen; }
    void EndOpen(bool bKeep) override {
        m_bOpen = false;
        m_strEnds += bKeep ? 'k' : 'x';
        if (bKeep) GetCanvas()->GetActiveLayer()->setName(L"kept", true);
    }
    bool m_bOpen = false;
    std::string m_strEnds;
};

} // namespace

TEST(OpenTool, IsSettledBeforeTheDocumentOrTheToolChanges) {
    CTestPlatform outside;
    CToolMaker tools;
    const auto command = [](int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); };
    const auto name = [] { return g_wpActiveFrame.lock()->GetCanvas()->GetActiveLayer()->GetName(); };
    outside.AddStep([&](CPlayer& player) {
        const auto spTool = tools.Use<COpenTool>();
        const auto ends = [&](const std::function<void()>& fnHappens) {
            g_wpActiveTool = spTool;
            spTool->m_bOpen = true;
            spTool->m_strEnds.clear();
            EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO)) << "what is open can be undone";
            EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO)) << "what is open comes behind";
            fnHappens();
            return spTool->m_strEnds;
        };
        const std::wstring strBefore = name();
        EXPECT_EQ(ends([&] { command(ID_EDIT_UNDO); }), "k");
        EXPECT_EQ(name(), strBefore) << "it was undone";
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO));
        EXPECT_EQ(ends([] {
                      SendMessage({g_wpActiveFrame.lock()->GetWindow(), EMessage::KeyDown, VK_Escape});
                  }),
                  "x");
        EXPECT_EQ(name(), strBefore);
        EXPECT_EQ(ends([&] { command(ID_LAYER_NEW_RASTER); }), "k");
        EXPECT_EQ(ends([] { g_pMainFrame->SwitchTool(TOOL_PENCIL); }), "k");
        EXPECT_EQ(ends([] { g_lstCanvasFrame.front()->GetWindow()->Activate(); }), "k");
        player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::No});
        EXPECT_EQ(ends([] { SendMessage({g_lstCanvasFrame.front()->GetWindow(), EMessage::Close}); }), "k");
    });
    outside.Play([] {
        for (int n = 0; n < 2; ++n) CTestPlatform::Open(MakePage({60, 40}));
    });
}
