#include "core/Base/Text.h"
#include "core/Panels/ColorWnd.h"
#include "session/seam/Glass.h"

TEST(HsvColor, GoesToColoursAndBack) {
    EXPECT_EQ(ColorOfHsv({0, 255, 255}), MakeColor(255, 0, 0));
    EXPECT_EQ(ColorOfHsv({90, 255, 255}), MakeColor(128, 255, 0));
    EXPECT_EQ(ColorOfHsv({240, 255, 128}), MakeColor(0, 0, 128));
    EXPECT_EQ(ColorOfHsv({359, 0, 77}), MakeColor(77, 77, 77));
    for (int nHue = 0; nHue < 360; ++nHue) {
        const THsv hsv{nHue, 255, 255};
        EXPECT_EQ(HsvOfColor(ColorOfHsv(hsv), {}), hsv);
    }
    // No channel strays by more than the coarseness of whole degrees allows.
    for (int n = 0; n < 18 * 18 * 18; ++n) {
        const int r = n % 18 * 15, g = n / 18 % 18 * 15, b = n / 18 / 18 * 15;
        const auto by = [](int nLevel) { return static_cast<uint8_t>(nLevel); };
        const TColor color = ColorOfHsv(HsvOfColor(MakeColor(by(r), by(g), by(b)), {}));
        EXPECT_TRUE(std::abs(RedOf(color) - r) <= 3 && std::abs(GreenOf(color) - g) <= 3) << n;
        EXPECT_LE(std::abs(BlueOf(color) - b), 3) << n;
    }
    EXPECT_EQ(HsvOfColor(MakeColor(9, 9, 9), {200, 50, 50}), (THsv{200, 0, 9}));
    EXPECT_EQ(HsvOfColor(0, {200, 50, 50}), (THsv{200, 50, 0}));
}

TEST(ReadHexColor, TakesSixDigitsOnly) {
    EXPECT_EQ(ReadHexColor(L"#12aBcD"), MakeColor(0x12, 0xAB, 0xCD));
    EXPECT_EQ(ReadHexColor(L"0000ff"), MakeColor(0, 0, 255));
    for (const wchar_t* psz : {L"", L"#", L"12345", L"1234567", L"12345g", L"##12345", L"１２３４５６"})
        EXPECT_FALSE(ReadHexColor(psz)) << ToUtf8(psz);
}

TEST(ColorViews, ShowEachColourWhereItIsChosen) {
    CGlass glass;
    glass.Resize({200, 200});
    const auto shown = [&](CPoint pt) {
        const uint8_t* p = glass.GetPixel(pt);
        return MakeColor(p[2], p[1], p[0]);
    };
    CColorCircleView circle;
    circle.m_hsv = {90, 255, 0}; // marks in the square's lower right corner and at the ring's top
    circle.OnPaint(glass, {{200, 200}, 0, 0, true, false});
    for (const CPoint pt : {CPoint{60, 60}, CPoint{140, 60}, CPoint{60, 140}, CPoint{99, 120}}) {
        circle.OnPointer(EMessage::LButtonDown, pt);
        EXPECT_EQ(shown(pt), ColorOfHsv(circle.m_hsv)) << pt.x << " " << pt.y;
    }
    EXPECT_EQ(shown({104, 10}) & 0xF0F0F0u, 0xF0F0F0u);
    circle.OnPaint(glass, {.sz = {200, 200}, .dScale = 2});
    EXPECT_EQ(shown({104, 17}) & 0xF0F0F0u, 0xF0F0F0u) << "marks are as large on a dense glass";
    CTwoColorBoxView boxes;
    boxes.m_clrBrush = 0x123456, boxes.m_clrBack = 0x654321;
    boxes.OnPaint(glass, {{36, 36}, 0, 0, true, false});
    EXPECT_TRUE(shown({18, 18}) == 0x123456 && shown({30, 30}) == 0x654321);
}
