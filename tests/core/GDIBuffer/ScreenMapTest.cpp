#include "core/GDIBuffer/GDIBuffer.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "system/pictures/QtBitmap.h"

namespace {

// What a view shows of a plane whose pixel (x, y) is the letter 'a' + y * width + x, as lines of text.
std::string Show(CSize sz, const TViewState& view, CPoint ptOrigin = {0, 0}, CSize szTarget = {0, 0}) {
    QImage image = MakeTransparentImage(sz);
    for (int n = 0; n < sz.cx * sz.cy; ++n)
        image.setPixel(n % sz.cx, n / sz.cx, qRgb('a' + n, 'a' + n, 'a' + n));
    CBitmapSession session{boost::make_shared<CQtBitmap>(image)};
    CColorRasterBuffer plane;
    plane.Create(sz, {2, 2}); // small blocks, so that every picture crosses tiles
    plane.ReadBitmap(session, NoProgress());
    CGDIBuffer screen(szTarget.cx ? szTarget : ScaledSize(sz, view));
    screen.FillGrey({0, 0, screen.GetSize().cx, screen.GetSize().cy}, '.');
    plane.DrawToScreen(screen, ptOrigin, view);
    std::string str;
    for (int y = 0; y < screen.GetSize().cy; ++y) {
        for (int x = 0; x < screen.GetSize().cx; ++x) str += static_cast<char>(*screen.GetPixelPtr({x, y}));
        str += '\n';
    }
    return str;
}

} // namespace

TEST(DrawToScreen, RotationsAndFlips) {
    const CSize sz{3, 2}; // abc / def
    EXPECT_EQ(Show(sz, {}), "abc\ndef\n");
    EXPECT_EQ(Show(sz, {48, 90}), "da\neb\nfc\n"); // clockwise
    EXPECT_EQ(Show(sz, {48, 180}), "fed\ncba\n");
    EXPECT_EQ(Show(sz, {48, 270}), "cf\nbe\nad\n");
    EXPECT_EQ(Show(sz, {48, 0, true, false}), "cba\nfed\n");
    EXPECT_EQ(Show(sz, {48, 0, false, true}), "def\nabc\n");
    // Flips are of canvas space: at 90 degrees a horizontal one mirrors the screen from top to bottom.
    EXPECT_EQ(Show(sz, {48, 90, true, false}), "fc\neb\nda\n");
}

TEST(DrawToScreen, Zooms) {
    EXPECT_EQ(Show({2, 1}, {144}), "aaabbb\naaabbb\naaabbb\n");
    EXPECT_EQ(Show({4, 4}, {24}), "fh\nnp\n");     // half: the second sample of two
    EXPECT_EQ(Show({6, 3}, {16}), "hk\n");         // a third: the middle one of three
    EXPECT_EQ(Show({6, 3}, {32}), "abde\nghjk\n"); // two thirds: two of three
    EXPECT_EQ(Show({2, 2}, {72}), "aab\naab\nccd\n");
    EXPECT_EQ(Show({1, 1}, {3}), "a\n"); // something is left of everything
    EXPECT_EQ(Show({6, 3}, {16, 0, true, false}), "kh\n");
}

TEST(DrawToScreen, ClipsAtTheTargetAndSkipsStaleBlocks) {
    EXPECT_EQ(Show({3, 2}, {}, {-1, 1}, {4, 2}), "....\nbc..\n");
    EXPECT_EQ(Show({3, 2}, {}, {9, 9}, {2, 1}), "..\n");
    CColorRasterBuffer plane;
    plane.Create({4, 2}, {2, 2});
    plane.GetDirty().Set(1, 0);
    CGDIBuffer screen({4, 2});
    plane.DrawToScreen(screen, {0, 0}, {});
    EXPECT_EQ(*screen.GetPixelPtr({1, 0}), 255); // transparent shows white paper
    EXPECT_EQ(*screen.GetPixelPtr({2, 0}), 0);   // stale: left alone
}
