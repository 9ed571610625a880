#include "tests/support/TestPlatform.h"
#include "tests/support/TestTool.h"

namespace {

/// Keeps what it has open as a step of the active canvas's history.
struct COpenTool : CTestTool {
    using CTestTool::CTestTool;
    bool IsOpen() const override { return m_bOpen; }
    void EndOpen(EOpenEnd why) override {
        m_bOpen = false;
        m_strEnds += "xkht"[static_cast<int>(why)];
        if (why == EOpenEnd::Commit || why == EOpenEnd::History)
            GetCanvas()->GetActiveLayer()->setName(L"kept", true);
    }
    const wchar_t* GetCloseQuestion() const override { return m_pszQuestion; }
    bool ShowPreview(bool bShow) override {
        if (m_pszQuestion) m_strEnds += bShow ? '+' : '-';
        return m_pszQuestion;
    }
    bool m_bOpen = false;
    const wchar_t* m_pszQuestion = nullptr; ///< of a tool with a preview
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
        EXPECT_EQ(ends([&] { command(ID_EDIT_UNDO); }), "h");
        EXPECT_EQ(name(), strBefore) << "it was undone";
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO));
        EXPECT_EQ(ends([] {
                      SendMessage({g_wpActiveFrame.lock()->GetWindow(), EMessage::KeyDown, VK_Escape});
                  }),
                  "x");
        EXPECT_EQ(name(), strBefore);
        EXPECT_EQ(ends([&] { command(ID_LAYER_NEW_RASTER); }), "k");
        EXPECT_EQ(ends([] { g_pMainFrame->SwitchTool(TOOL_PENCIL); }), "t");
        EXPECT_EQ(ends([] { g_lstCanvasFrame.front()->GetWindow()->Activate(); }), "k");
        EXPECT_EQ(ends([&] { command(ID_FILE_SAVE); }), "k");
        spTool->m_pszQuestion = L"?";
        EXPECT_EQ(ends([&] { command(ID_FILE_SAVE); }), "-+") << "a preview is shown again behind the dialog";
        const auto answer = [&](EBoxAnswer box) {
            player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = box});
        };
        const auto close = [] { SendMessage({g_lstCanvasFrame.front()->GetWindow(), EMessage::Close}); };
        answer(EBoxAnswer::Cancel);
        EXPECT_EQ(ends(close), "");
        for (const EBoxAnswer box : {EBoxAnswer::Yes, EBoxAnswer::No}) {
            answer(box);
            answer(EBoxAnswer::Cancel); // the document is changed, and not to be saved
            EXPECT_EQ(ends(close), box == EBoxAnswer::Yes ? "k" : "x");
        }
        EXPECT_EQ(g_lstCanvasFrame.size(), 2u);
        spTool->m_pszQuestion = nullptr;
        answer(EBoxAnswer::No);
        EXPECT_EQ(ends(close), "k");
    });
    outside.Play([] {
        for (int n = 0; n < 2; ++n) CTestPlatform::Open(MakePage({60, 40}));
    });
}
