#include "tests/ui/UiTest.h"

#include "core/ImageFile/DibBlock.h"
#include "system/pictures/QtBitmap.h"

#include <boost/make_shared.hpp>

namespace {

QImage Pixels(QImage::Format format = QImage::Format_ARGB32) {
    QImage image(2, 2, QImage::Format_ARGB32);
    image.fill(qRgba(1, 2, 3, 254));
    image.setPixel(0, 0, qRgba(200, 100, 0, 255));
    image.setPixel(1, 0, qRgba(255, 0, 255, 85));
    return image.convertToFormat(format);
}

TDibBytes MakeBlock() {
    CQtBitmap bitmap(Pixels());
    return MakeDibBlock(bitmap);
}

/// Another program's content.
class CForeignClip {
public:
    CForeignClip& With(const char* pszMime, const QByteArray& bytes) {
        m_pData->setData(pszMime, bytes);
        return *this;
    }
    CForeignClip& WithImage(const QImage& image) { return m_pData->setImageData(image), *this; }
    TLoadedPicture PutOn(IClipboard& clipboard) {
        QGuiApplication::clipboard()->setMimeData(m_pData);
        EXPECT_TRUE(clipboard.HasPicture());
        return clipboard.GetPicture();
    }

private:
    QMimeData* m_pData = new QMimeData; // the clipboard takes it
};

QByteArray MakeBmp() {
    const TDibBytes spBlock = MakeBlock();
    return QByteArray::fromStdString(MakeBmpFileHeader(*spBlock) + *spBlock);
}

} // namespace

TEST_F(CUiTest, TheClipboardHoldsPicturesWithAlpha) {
    IClipboard& clipboard = m_platform.GetPlatform().clipboard;
    clipboard.SetText(L"文");
    EXPECT_FALSE(clipboard.HasPicture());
    EXPECT_FALSE(clipboard.GetPicture());
    EXPECT_FALSE(clipboard.GetBlock());
    const uint32_t uText = clipboard.GetChangeCount();
    CQtBitmap bitmap(Pixels());
    ASSERT_TRUE(clipboard.SetPicture(bitmap));
    EXPECT_NE(clipboard.GetChangeCount(), uText);
    EXPECT_EQ(QGuiApplication::clipboard()->image().pixel(1, 0), qRgba(255, 0, 255, 85));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "");

    const uint32_t uOwn = clipboard.GetChangeCount();
    const TLoadedPicture picture =
        CForeignClip().WithImage(Pixels(QImage::Format_ARGB32_Premultiplied)).PutOn(clipboard);
    EXPECT_NE(clipboard.GetChangeCount(), uOwn) << "another program's";
    ASSERT_TRUE(picture);
    EXPECT_EQ(CopyToImage(*picture), Pixels());
    EXPECT_EQ(*clipboard.GetBlock(), *MakeBlock());
}

TEST_F(CUiTest, ACopiedBlockReachesOtherProgramsWithItsSoftEdges) {
    IClipboard& clipboard = m_platform.GetPlatform().clipboard;
    const TDibBytes spBlock = MakeBlock();
    clipboard.SetBlock(spBlock);
    EXPECT_TRUE(clipboard.HasPicture());
    EXPECT_EQ(clipboard.GetBlock(), spBlock) << "not a copy";
    EXPECT_EQ(CopyToImage(*clipboard.GetPicture()), Pixels());
    const QMimeData* pData = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(pData->formats(), QStringList({"image/png", "image/bmp", "application/x-qt-image"}));
    EXPECT_EQ(QImage::fromData(pData->data("image/png"), "PNG").convertToFormat(QImage::Format_ARGB32),
              Pixels());
    EXPECT_EQ(pData->data("image/bmp"), MakeBmp());
    EXPECT_EQ(QGuiApplication::clipboard()->image(), Pixels());
    clipboard.SetBlock(boost::make_shared<std::string>("no block"));
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->data("image/png").isEmpty());
    EXPECT_TRUE(QGuiApplication::clipboard()->image().isNull());
}

TEST_F(CUiTest, APictureIsTakenInTheFormThatKeepsMost) {
    IClipboard& clipboard = m_platform.GetPlatform().clipboard;
    const QImage imageWorse(1, 1, QImage::Format_RGB32);
    QByteArray png;
    QBuffer buffer(&png);
    Pixels().save(&buffer, "PNG");
    const auto expect = [](const TLoadedPicture& picture) {
        ASSERT_TRUE(picture);
        EXPECT_EQ(CopyToImage(*picture), Pixels());
    };
    expect(
        CForeignClip().With("image/png", png).With("image/bmp", "BM").WithImage(imageWorse).PutOn(clipboard));
    expect(CForeignClip().With("image/bmp", MakeBmp()).WithImage(imageWorse).PutOn(clipboard));
    expect(CForeignClip().With("image/png", "damaged").With("image/x-bmp", MakeBmp()).PutOn(clipboard));
    const TLoadedPicture damaged =
        CForeignClip().With("image/png", png.first(png.size() / 2)).PutOn(clipboard);
    EXPECT_FALSE(damaged);
    EXPECT_EQ(damaged.failure, EFileFailure::DamagedPicture);
    EXPECT_FALSE(clipboard.GetBlock());
}

TEST_F(CUiTest, CopiedStrokesReachOtherProgramsAsCurvesAndPixels) {
    IClipboard& clipboard = m_platform.GetPlatform().clipboard;
    const auto spStrokes = boost::make_shared<std::string>("strokes", 8); // with a zero
    clipboard.SetStrokes({spStrokes, "<svg/>", MakeBlock()});
    EXPECT_TRUE(clipboard.HasStrokes() && clipboard.HasPicture());
    EXPECT_EQ(clipboard.GetStrokes(), spStrokes) << "not a copy";
    EXPECT_EQ(CopyToImage(*clipboard.GetPicture()), Pixels());
    const QMimeData* pData = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(pData->data("image/svg+xml"), "<svg/>");
    EXPECT_EQ(pData->data("application/x-vellumcraft-strokes").toStdString(), *spStrokes);
    EXPECT_EQ(QImage::fromData(pData->data("image/png"), "PNG").convertToFormat(QImage::Format_ARGB32),
              Pixels());
    clipboard.SetStrokes({spStrokes, "<svg/>", nullptr});
    EXPECT_TRUE(clipboard.HasStrokes() && !clipboard.HasPicture());
    EXPECT_FALSE(clipboard.GetPicture() || clipboard.GetBlock());
    clipboard.SetBlock(MakeBlock());
    EXPECT_FALSE(clipboard.HasStrokes() || clipboard.GetStrokes());
    // Another instance of the application.
    CForeignClip()
        .With("application/x-vellumcraft-strokes", QByteArray::fromStdString(*spStrokes))
        .WithImage(Pixels())
        .PutOn(clipboard);
    ASSERT_TRUE(clipboard.HasStrokes() && clipboard.GetStrokes());
    EXPECT_EQ(*clipboard.GetStrokes(), *spStrokes);
}
