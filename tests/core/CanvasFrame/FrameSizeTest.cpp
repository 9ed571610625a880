// A canvas of another size in windows that are open.
#include "core/AppModule/MessageQueue.h"
#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/CommandIds.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "tests/support/TestPlatform.h"

#include <boost/make_shared.hpp>

TEST(FrameSize, EveryViewTakesTheCanvasesSizeOverAlsoAtUndo) {
    constexpr CSize WIDE{3000, 2000};
    constexpr CSize NARROW{2990, 1100};
    CTestPlatform outside;
    boost::shared_ptr<CCanvasBuffer> spCanvas;
    const auto expect = [&](CSize sz) {
        ASSERT_EQ(g_lstCanvasFrame.size(), 2u);
        for (const auto& spFrame : g_lstCanvasFrame) {
            EXPECT_EQ(spFrame->GetView().GetCanvasSize(), sz);
            CCanvasView view;
            view.SetCanvasSize(sz);
            view.Apply(spFrame->GetView().GetState(), spFrame->GetView().GetClient());
            EXPECT_EQ(spFrame->GetView().GetExtent(), view.GetExtent());
        }
    };
    // A frame follows the canvas also before it is painted again.
    outside.AddStep([&](CPlayer&) {
        ResizeCanvas(spCanvas, NARROW, ShiftChange({-10, -900}), L"画像サイズ変更");
        for (const auto& spFrame : g_lstCanvasFrame) SendMessage({spFrame->GetWindow(), EMessage::MouseMove});
        expect(NARROW);
        SendMessage({g_pMainFrame->GetWindow(), EMessage::Command, ID_EDIT_UNDO});
        for (const auto& spFrame : g_lstCanvasFrame) spFrame->InvalidateAll();
    });
    outside.AddStep([&](CPlayer&) { expect(WIDE); }, EStepKind::Expects);
    outside.Run([&](const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        spCanvas = CreateCanvas(WIDE);
        for (int n = 0; n < 2; ++n) g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
        scope.Run();
    });
    spCanvas.reset();
}
