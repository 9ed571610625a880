// The tables of commands and tools, and commands that a tool answers for.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/PrivateMessages.h"
#include "core/Base/Resource.h"
#include "core/Commands/CommandIds.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/MenuTable.h"
#include "core/MainFrame/SessionScope.h"
#include "core/Panels/ToolTable.h"
#include "core/Tools/PenContact.h"
#include "session/seam/SessionKeys.h"
#include "tests/support/TestPlatform.h"

#include <boost/make_shared.hpp>

#include <set>

namespace {

// Selects, copies and pastes, but has nothing to deselect and cuts nothing.
struct CEditTool : CTools {
    using CTools::CTools;
    static constexpr TToolInfo INFO{99, L"", "", ECursor::Arrow};
    const TToolInfo& GetInfo() const override { return INFO; }
    bool IsEnabled() const override { return true; }
    void DrawOverlay(COverlay&, const TOverlayMapper&) const override {}
    bool OnCommand(int nId) override { return Note(std::to_string(nId)); }
    bool CanCommand(int nId) const override { return nId == ID_SELECT_ALL; }
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
    CStrokeRandom random;
    CPenContact contact;
    std::unique_ptr<TToolOutside> pOutside;
    const auto enabled = [] {
        std::string str;
        for (const int nId : {ID_EDIT_CUT, ID_EDIT_COPY, ID_EDIT_PASTE, ID_SELECT_ALL, ID_SELECT_NONE,
                              ID_VIEW_OUTLINE, ID_VIEW_ALL_ANCHORS, ID_PANEL_LAYER, ID_VIEW_FAST_SCROLL})
            if (g_pMainFrame->IsCommandEnabled(nId)) str += std::string(FindCommandName(nId)) + " ";
        return str;
    };
    outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(enabled(), "view-fast-scroll ") << "the brush edits nothing";
        const TPlatform& platform = g_AppModule.GetPlatform();
        pOutside = std::make_unique<TToolOutside>(TToolOutside{platform.clock, platform.keys, random,
                                                               g_AppModule.GetSettings(), platform.codecs,
                                                               contact, [](int) {}, [](EToolNotice) {}});
        g_wpActiveTool = spTool = boost::make_shared<CEditTool>(*pOutside);
        EXPECT_EQ(enabled(), "edit-copy edit-paste select-all view-fast-scroll ");
        player.SendCommand(ID_SELECT_ALL);
        EXPECT_TRUE(g_pMainFrame->OnMessage({nullptr, WM_TOOL_MESSAGE, 3, 4}));
        EXPECT_FALSE(g_pMainFrame->OnMessage({nullptr, WM_TOOL_MESSAGE, 4, 3}));
        EXPECT_FALSE(player.TryCommand(ID_SELECT_NONE));
        player.GetStage().keys.Press(VK_Control, true);
        for (const int nKey : {'V', 'X', 'C'}) Press(nKey);
    });
    outside.AddStep([&](CPlayer& player) {
        EXPECT_EQ(spTool->m_strDone, "12840 4 paste copy ");
        player.GetStage().keys.Press(VK_Control, false);
        g_wpActiveFrame.lock()->GetWindow()->Destroy();
        EXPECT_EQ(enabled(), "view-fast-scroll ") << "nothing is open";
    });
    outside.Run([&](const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        g_pMainFrame->OpenFrame(CreateCanvasFrame(CreateCanvas({30, 20})));
        scope.Run();
    });
}

TEST(Commands, NamesAndToolsAreDistinctAndComplete) {
    for (const int nId : ListCommands(LoadMenu(200))) EXPECT_EQ(FindCommandId(FindCommandName(nId)), nId);
    std::set<int> setTools;
    for (const TToolRow& row : GetToolTable()) {
        EXPECT_FALSE(FindResource(row.info.pszIcon).empty()) << row.info.nId;
        EXPECT_TRUE(setTools.insert(row.info.nId).second) << row.info.nId;
    }
}
