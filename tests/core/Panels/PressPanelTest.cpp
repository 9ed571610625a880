#include "core/IniConfig/IniConfig.h"
#include "core/PanelViews/PressCurveView.h"
#include "core/Panels/PressMemo.h"
#include "core/Platform/System.h"
#include "session/seam/Glass.h"
#include "tests/support/MemoryFiles.h"

namespace {

struct CNowhere : IPaintTarget {
    void Blit(const uint8_t*, int, CSize, const CRect&) override {}
};

std::string Names(const CPressMemoView& memos) {
    std::string str;
    for (const TPressMemo& memo : memos.GetMemos()) str += ToUtf8(memo.strName) + " ";
    return str;
}

} // namespace

TEST(PressCurveView, HandlesKeepAwayFromTheirCornerAndTheOtherOne) {
    const auto first = [](int x, int y) {
        TPressHandles h{x, y, 100, 0};
        LimitHandle1(h);
        return std::pair(h.x1, h.y1);
    };
    const auto second = [](int x, int y) {
        TPressHandles h{0, 100, x, y};
        LimitHandle2(h);
        return std::pair(h.x2, h.y2);
    };
    EXPECT_EQ(first(0, 100), std::pair(2, 98));
    EXPECT_EQ(first(30, 60), std::pair(30, 60));
    EXPECT_EQ(first(79, 98), std::pair(79, 98));
    EXPECT_EQ(first(100, 0), std::pair(57, 43)); // length 141, each 100 * 80 / 141 = 56.7
    EXPECT_EQ(first(100, 98), std::pair(80, 98));
    EXPECT_EQ(second(100, 0), std::pair(98, 2));
    EXPECT_EQ(second(0, 100), std::pair(43, 57));
    EXPECT_EQ(second(40, 30), std::pair(40, 30));
}

TEST(PressCurveView, TheNearestHandleIsDraggedInPercentOfTheBox) {
    CPressCurveView view;
    CNowhere target;
    view.OnPaint(target, {{204, 108}, 0, 0, true, false});          // the box: 104 pixels from (50, 2) on
    EXPECT_FALSE(view.OnPointer(EMessage::LButtonDown, {102, 54})); // far from both
    EXPECT_FALSE(view.OnPointer(EMessage::MouseMove, {80, 60}));
    view.OnPointer(EMessage::LButtonUp, {80, 60});
    EXPECT_FALSE(view.OnPointer(EMessage::LButtonDown, {52, 100})); // taken, not moved yet
    EXPECT_TRUE(view.OnPointer(EMessage::MouseMove, {90, 62}));
    EXPECT_EQ(view.m_handles, (TPressHandles{40, 60, 100, 0}));
    view.OnPointer(EMessage::LButtonUp, {90, 62});
    EXPECT_FALSE(view.OnPointer(EMessage::MouseMove, {60, 62}));
    // The keyboard goes on with that handle, Space takes the other one. Only a drag keeps handles away from
    // their corners.
    EXPECT_TRUE(view.OnKey(VK_Up));
    EXPECT_EQ(view.m_handles.y1, 59);
    EXPECT_TRUE(view.OnKey(VK_Space) && view.OnKey(VK_Left));
    EXPECT_EQ(view.m_handles, (TPressHandles{40, 59, 99, 0}));
    view.m_handles = {};
    view.OnPointer(EMessage::LButtonDown, {52, 104});
    EXPECT_FALSE(view.OnPointer(EMessage::LButtonUp, {52, 104}));
    EXPECT_EQ(view.m_handles, TPressHandles());
    view.OnPointer(EMessage::LButtonDown, {52, 102});
    EXPECT_TRUE(view.OnPointer(EMessage::MouseMove, {150, 2}));
    EXPECT_EQ(view.m_handles, (TPressHandles{57, 43, 100, 0}));
}

TEST(PressCurveView, TheCurveGoesFromTheLowerLeftToTheUpperRightByItsHandles) {
    CGlass glass;
    glass.Resize({109, 109});
    CPressCurveView view;
    view.m_handles = {80, 98, 98, 80};
    view.OnPaint(glass, {{109, 109}, 0, 0, true, false}); // a percent is a pixel, from (4, 4) on
    // (3 * 80 + 3 * 98 + 100) / 8 is 79 on both axes.
    for (int n = 62; n < 100; ++n) EXPECT_EQ(*glass.GetPixel({n, n}) < 0x60, n == 83) << n;
}

TEST(PressMemoView, MemosKeepTheirOrderNamesAndValues) {
    CMemoryFiles files;
    CIniConfig config(L"/ini", files);
    CPressMemoView memos;
    memos.Read(config);
    TBrushParam param;
    param.PressCurve1x = 33;
    param.MinAlphaRate = 7;
    param.BrushRadius = 99;
    EXPECT_EQ(memos.Add(param), 0);
    for (int n = 0; n < 3; ++n) memos.Add({});
    EXPECT_EQ(Names(memos), "筆圧設定1 筆圧設定2 筆圧設定3 筆圧設定4 ");
    memos.Remove(1);
    EXPECT_EQ(memos.Add({}), 3);
    EXPECT_EQ(Names(memos), "筆圧設定1 筆圧設定3 筆圧設定4 筆圧設定2 "); // the free number
    memos.Move(0, 2);
    EXPECT_EQ(Names(memos), "筆圧設定3 筆圧設定4 筆圧設定1 筆圧設定2 ");
    memos.Move(3, 0);
    memos.Rename(0, L"G ペン");
    memos.Rename(1, L"");
    EXPECT_EQ(Names(memos), "G ペン 筆圧設定3 筆圧設定4 筆圧設定1 ");
    memos.Write(config);

    CPressMemoView again;
    again.Read(config);
    EXPECT_EQ(Names(again), Names(memos));
    TBrushParam applied;
    CopyPressure(applied, again.Get(3).param);
    EXPECT_EQ(applied.PressCurve1x, 33u);
    EXPECT_EQ(applied.MinAlphaRate, 7);
    EXPECT_EQ(applied.BrushRadius, TBrushParam().BrushRadius); // not a memo's business
    config.GetSection(L"PressParam")->GetSection(L"Memo1")->SetInt(L"PressCurve2x", 4000);
    again.Read(config);
    EXPECT_EQ(again.Get(0).param.PressCurve2x, 100u);
}
