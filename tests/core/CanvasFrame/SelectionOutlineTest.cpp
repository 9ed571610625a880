// The selection's dashes on the glass of a running session.
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/CommandIds.h"
#include "core/MainFrame/MainFrame.h"
#include "core/MainFrame/SessionScope.h"
#include "session/seam/SessionCanvasWindow.h"
#include "tests/support/TestPlatform.h"

namespace {

constexpr CSize CANVAS{40, 30};
const CRect SELECTED{5, 6, 25, 16};

int LevelAt(CCanvasFrame& frame, CPoint ptCanvas) {
    auto& window = dynamic_cast<CSessionCanvasWindow&>(*frame.GetWindow());
    return window.GetGlass().GetPixel(frame.GetView().ToWindow(ptCanvas))[0];
}

// The levels of the outline's upper edge, from left to right.
std::vector<int> UpperEdge(CCanvasFrame& frame) {
    std::vector<int> v;
    for (int32_t x = SELECTED.left; x <= SELECTED.right; ++x) v.push_back(LevelAt(frame, {x, SELECTED.top}));
    return v;
}

} // namespace

TEST(SelectionOutline, DashesWalkInTheActiveFrameAndGoWithTheSelection) {
    CTestPlatform outside;
    const auto spCanvas = CreateCanvas(CANVAS);
    boost::shared_ptr<CCanvasFrame> spFirst, spSecond;
    std::vector<int> vEdge;
    const auto step = [&](const std::function<void()>& fn) {
        outside.AddStep([fn](CPlayer& player) { fn(), player.Wait(100); });
    };
    step([&] {
        const auto spSelect = boost::make_shared<CSelectBuffer>(CANVAS);
        const auto spTile = spSelect->GetMask().GetBlock({0, 0}, true);
        for (int32_t y = SELECTED.top; y < SELECTED.bottom; ++y)
            std::fill_n(spTile->GetPixelPtr({SELECTED.left, y}), SELECTED.Width(), uint8_t{255});
        spSelect->UpdateOutline();
        spCanvas->SetSelect(spSelect);
    });
    step([&] {
        vEdge = UpperEdge(*spFirst);
        for (size_t i = 0; i + 5 < vEdge.size(); ++i) EXPECT_EQ(vEdge[i] + vEdge[i + 5], 255);
        EXPECT_EQ(LevelAt(*spFirst, {SELECTED.left + 3, SELECTED.top + 3}), 255); // paper inside
    });
    step([&] {
        // One step to the right: what was a pixel before it.
        const std::vector<int> vNow = UpperEdge(*spFirst);
        EXPECT_TRUE(std::equal(vNow.begin() + 1, vNow.end(), vEdge.begin()));
        g_pMainFrame->OpenFrame(spSecond = CreateCanvasFrame(spCanvas));
    });
    step([&] {
        EXPECT_EQ(UpperEdge(*spFirst), std::vector<int>(21, 255)); // no longer active
        EXPECT_NE(UpperEdge(*spSecond), std::vector<int>(21, 255));
        spCanvas->SetSelect({});
    });
    step([&] { EXPECT_EQ(UpperEdge(*spSecond), std::vector<int>(21, 255)); });
    outside.Run([&](const TPlatform& platform) {
        CSessionScope scope(platform);
        CreateMainFrame();
        g_pMainFrame->OpenFrame(spFirst = CreateCanvasFrame(spCanvas));
        scope.Run();
    });
}
