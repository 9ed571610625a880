// The selection's dashes on the glass of a running session.
#include "tests/support/TestPlatform.h"

namespace {

constexpr CSize CANVAS{40, 30};
const CRect SELECTED{5, 6, 25, 16};

boost::shared_ptr<CSelectBuffer> Select(const CRect& rc) {
    const auto spSelect = boost::make_shared<CSelectBuffer>(CANVAS);
    const auto spTile = spSelect->GetMask().GetBlock({0, 0}, true);
    for (int32_t y = rc.top; y < rc.bottom; ++y)
        std::fill_n(spTile->GetPixelPtr({rc.left, y}), rc.Width(), uint8_t{255});
    spSelect->UpdateOutline();
    return spSelect;
}

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
    step([&] { spCanvas->SetSelect(Select(SELECTED)); });
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

TEST(SelectionOutline, AStepRepaintsTheCellsThatTheOutlineCrossesAndThoseThatItLeft) {
    CCanvasView view;
    view.SetCanvasSize(CANVAS);
    view.Apply({480}, {500, 400}); // ten times as large, the corner at (90, 90)
    CSelectionDashes dashes;
    const auto spWide = Select({5, 3, 40, 27}), spSmall = Select({6, 4, 7, 5});
    const std::vector<CRect> vRing{
        {128, 64, 500, 128}, {128, 128, 192, 320}, {448, 128, 500, 320}, {128, 320, 500, 384}};
    EXPECT_EQ(dashes.TakeStale(spWide, view), vRing);
    EXPECT_FALSE(dashes.Crosses(spWide, view, {192, 128, 448, 320}));
    EXPECT_TRUE(dashes.Crosses(spWide, view, {191, 128, 448, 320}));
    CGDIBuffer glass({500, 400});
    dashes.Draw(glass, {448, 128, 500, 320}, spWide, view, 0);
    EXPECT_EQ(dashes.TakeStale(spSmall, view), vRing) << "what was drawn is wiped";
    EXPECT_EQ(dashes.TakeStale(spSmall, view), (std::vector<CRect>{{128, 128, 192, 192}}));
    view.ScrollTo({70, 0});
    EXPECT_EQ(dashes.TakeStale(spSmall, view), (std::vector<CRect>{{64, 128, 128, 192}}));
    EXPECT_EQ(dashes.TakeStale(nullptr, view), std::vector<CRect>());
}
