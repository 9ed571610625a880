#include "tests/ui/UiTest.h"

#include "system/pictures/QtBitmap.h"

namespace {

QImage Pixels(QImage::Format format = QImage::Format_ARGB32) {
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(200, 100, 0, 255));
    image.setPixel(1, 0, qRgba(255, 0, 255, 85));
    return image.convertToFormat(format);
}

} // namespace

TEST_F(CUiTest, TheClipboardHoldsPicturesWithAlpha) {
    IClipboard& clipboard = m_platform.GetPlatform().clipboard;
    clipboard.SetText(L"文");
    EXPECT_FALSE(clipboard.HasPicture());
    EXPECT_FALSE(clipboard.GetPicture());
    const uint32_t uText = clipboard.GetChangeCount();
    CQtBitmap bitmap(Pixels());
    ASSERT_TRUE(clipboard.SetPicture(bitmap));
    EXPECT_NE(clipboard.GetChangeCount(), uText);
    EXPECT_EQ(QGuiApplication::clipboard()->image().pixel(1, 0), qRgba(255, 0, 255, 85));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "");

    const uint32_t uOwn = clipboard.GetChangeCount();
    QGuiApplication::clipboard()->setImage(Pixels(QImage::Format_ARGB32_Premultiplied));
    EXPECT_NE(clipboard.GetChangeCount(), uOwn) << "another program's";
    EXPECT_TRUE(clipboard.HasPicture());
    const auto spPicture = clipboard.GetPicture();
    ASSERT_TRUE(spPicture);
    EXPECT_EQ(CopyToImage(*spPicture), Pixels());
}
