// A tool that has something open though no operation runs: who ends it, and how.
#include "core/AppModule/AppModule.h"
#include "core/AppModule/MessageQueue.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/CommandIds.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "core/RasterBrush/FreehandTools.h"
#include "core/Tools/PenContact.h"
#include "session/seam/SessionDialogs.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/TestPlatform.h"

#include <gtest/gtest.h>

namespace {

/// Keeps what it has open as a step of the active canvas's history.
struct COpenTool : CTools {
    using CTools::CTools;
    void DrawOverlay(COverlay&, const TOverlayMapper&) const override {}
    static constexpr TToolInfo INFO{0, L"", "", ECursor::Arrow};
    const TToolInfo& GetInfo() const override { return INFO; }
    bool IsEnabled() const override { return true; }
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
    CPenContact contact;
    CStrokeRandom random;
    boost::shared_ptr<COpenTool> spTool;
    const auto open = [&] {
        g_wpActiveTool = spTool;
        spTool->m_bOpen = true;
        spTool->m_strEnds.clear();
    };
    const auto command = [](int nId) { SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, nId}); };
    const auto name = [] { return g_wpActiveFrame.lock()->GetCanvas()->GetActiveLayer()->GetName(); };
    outside.AddStep([&](CPlayer& player) {
        const TPlatform& platform = player.GetStage().platform;
        const TToolOutside tools{platform.clock,  platform.keys, random, g_AppModule.GetSettings(),
                                 platform.codecs, contact,       {},     {}};
        spTool = boost::make_shared<COpenTool>(tools);
        const std::wstring strBefore = name();
        open();
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_UNDO)) << "what is open can be undone";
        command(ID_EDIT_UNDO);
        EXPECT_EQ(spTool->m_strEnds, "k");
        EXPECT_EQ(name(), strBefore) << "it was undone";
        EXPECT_TRUE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO));
        open();
        EXPECT_FALSE(g_pMainFrame->IsCommandEnabled(ID_EDIT_REDO)) << "what is open comes behind";
        SendMessage({g_wpActiveFrame.lock()->GetWindow(), EMessage::KeyDown, VK_Escape});
        EXPECT_EQ(spTool->m_strEnds, "x");
        EXPECT_EQ(name(), strBefore);
        open();
        command(ID_LAYER_NEW_RASTER);
        EXPECT_EQ(spTool->m_strEnds, "k");
        open();
        g_pMainFrame->SwitchTool(TOOL_PENCIL);
        EXPECT_EQ(spTool->m_strEnds, "k");
        open();
        g_lstCanvasFrame.front()->GetWindow()->Activate();
        EXPECT_EQ(spTool->m_strEnds, "k");
        open();
        player.GetStage().dialogs.Push({.kind = TAnswer::EKind::Box, .box = EBoxAnswer::No});
        SendMessage({g_lstCanvasFrame.front()->GetWindow(), EMessage::Close});
        EXPECT_EQ(spTool->m_strEnds, "k");
        spTool.reset();
    });
    outside.Run([&](const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        for (int n = 0; n < 2; ++n) g_pMainFrame->OpenFrame(CreateCanvasFrame(MakePage({60, 40})));
        scope.Run();
    });
}
