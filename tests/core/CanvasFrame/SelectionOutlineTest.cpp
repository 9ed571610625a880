#include "tests/support/TestPlatform.h"

namespace {

constexpr CSize CANVAS{40, 30};

boost::shared_ptr<CSelectBuffer> Select(const CRect& rc) {
    const auto spSelect = boost::make_shared<CSelectBuffer>(CANVAS);
    const auto spTile = spSelect->GetMask().GetBlock({0, 0}, true);
    for (int32_t y = rc.top; y < rc.bottom; ++y)
        std::fill_n(spTile->GetPixelPtr({rc.left, y}), rc.Width(), uint8_t{255});
    spSelect->UpdateOutline();
    return spSelect;
}

} // namespace

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
