#include "system/ImageCodecs.h"

#include "system/GifWriter.h"
#include "tests/support/MemoryFiles.h"
#include "tests/system/PictureFixtures.h"

#include <QColorSpace>
#include <QImageReader>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace {

using namespace std::string_literals;

// The picture in a file of these bytes; null when it is refused.
QImage Load(const std::string& strFile) {
    CMemoryFiles files;
    files.m_mapFiles[L"p"] = strFile;
    return ImageOf(CImageCodecs(files).Load(L"p"));
}

QImage Opaque(int nWidth, int nHeight) {
    return MakeSoftImage(nWidth, nHeight).convertToFormat(QImage::Format_RGB32);
}

QImage Palette(int nColors) {
    QImage image(17, 16, QImage::Format_Indexed8);
    for (int i = 0; i < nColors; ++i) image.setColor(i, qRgba(i * 3, 255 - i, i * i, 255));
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 17; ++x) image.setPixel(x, y, static_cast<uint>((x + y * 17) % nColors));
    return image;
}

// A file of two strips, 4 x 2 pixels RGB. The directory comes before the pixels, so that a cut does not lose
// it; in the form with offsets of 64 bits it comes last and holds every list itself.
std::string HandMadeTiff(bool bBig) {
    const int cb = bBig ? 8 : 4;
    const uint64_t nLists = 8 + 2 + 10 * 12 + 4;
    const std::string strBits = Little(8, 2) + Little(8, 2) + Little(8, 2);
    const uint64_t nPixels = bBig ? 16 : nLists + 6 + 8 + 8;
    const std::string strStrips = Little(nPixels, 4) + Little(nPixels + 12, 4);
    const std::string strSizes = Little(12, 4) + Little(12, 4);
    const struct {
        uint64_t nTag, nType, nCount;
        std::string strValue;
    } ENTRIES[] = {
        {256, 3, 1, Little(4, cb)},
        {257, 3, 1, Little(2, cb)},
        {258, 3, 3, bBig ? strBits + Little(0, 2) : Little(nLists, 4)},
        {259, 3, 1, Little(1, cb)},
        {262, 3, 1, Little(2, cb)},
        {273, 4, 2, bBig ? strStrips : Little(nLists + 6, 4)},
        {277, 3, 1, Little(3, cb)},
        {278, 3, 1, Little(1, cb)},
        {279, 4, 2, bBig ? strSizes : Little(nLists + 14, 4)},
        {284, 3, 1, Little(1, cb)},
    };
    std::string strPixels;
    for (char ch = 0; ch < 24; ++ch) strPixels += ch;
    std::string str = Little(std::size(ENTRIES), bBig ? 8 : 2);
    for (const auto& entry : ENTRIES)
        str += Little(entry.nTag, 2) + Little(entry.nType, 2) + Little(entry.nCount, cb) + entry.strValue;
    str += Little(0, cb);
    if (bBig) return "II+\0"s + Little(8, 4) + Little(16 + 24, 8) + strPixels + str;
    return "II*\0"s + Little(8, 4) + str + strBits + strStrips + strSizes + strPixels;
}

// 8 bits a pixel, 4 x 3, rows: a run; a literal of odd length behind a run; the same.
std::string RunLengthBmp() {
    const std::string strRows = "\4\1\0\0"s + "\1\2\0\3\1\2\1\0\0\0"s + "\1\1\0\3\2\2\2\0"s + "\0\1"s;
    return "BM"s + Little(62 + 16, 4) + Little(0, 4) + Little(66, 4) + Little(40, 4) + Little(4, 4) +
           Little(3, 4) + Little(1, 2) + Little(8, 2) + Little(1, 4) +
           Little(static_cast<uint32_t>(strRows.size()), 4) + Little(0, 8) + Little(3, 4) + Little(0, 4) +
           Little(0, 4) + Little(0xFF0000, 4) + Little(0xFF, 4) + strRows;
}

std::string ProgressiveJpeg() {
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    return writer.write(Opaque(40, 30)) ? buffer.data().toStdString() : std::string();
}

} // namespace

TEST(ImageLoad, EveryKindCutShortIsRefused) {
    const std::pair<const char*, std::string> FILES[] = {
        {"png", EncodeByQt(MakeSoftImage(20, 10), "png")},
        {"palette png", EncodeByQt(Palette(256), "png")},
        {"jpeg", EncodeByQt(Opaque(40, 30), "jpeg")},
        {"progressive jpeg", ProgressiveJpeg()},
        {"bmp", EncodeByQt(Opaque(9, 7), "bmp")},
        {"bmp without offset", EncodeByQt(Opaque(9, 7), "bmp").replace(10, 4, Little(0, 4))},
        {"palette bmp", EncodeByQt(Palette(256), "bmp")},
        {"run-length bmp", RunLengthBmp()},
        {"gif", EncodeGif(Palette(200)).value_or("")},
        {"tiff", EncodeByQt(Opaque(9, 7), "tiff", 0)},
        {"lzw tiff", EncodeByQt(MakeSoftImage(9, 7), "tiff", 1)},
        {"bilevel tiff", EncodeByQt(Opaque(64, 48).convertToFormat(QImage::Format_Mono), "tiff", 1)},
        {"directory-first tiff", HandMadeTiff(false)},
        {"tiff of 64-bit offsets", HandMadeTiff(true)},
    };
    for (const auto& [pszName, strFile] : FILES) {
        EXPECT_FALSE(Load(strFile).isNull()) << pszName;
        EXPECT_FALSE(Load(strFile + "behind").isNull()) << pszName;
        for (size_t cb = 0; cb < strFile.size(); ++cb) {
            ASSERT_TRUE(Load(strFile.substr(0, cb)).isNull()) << pszName << " of " << cb << " bytes";
        }
    }
}

TEST(ImageLoad, DamageAndOtherKindsAreRefused) {
    std::string strPng = EncodeByQt(MakeSoftImage(20, 10), "png");
    strPng[strPng.size() / 2] ^= 0x10;
    EXPECT_TRUE(Load(strPng).isNull());
    std::string strTiff = HandMadeTiff(false);
    strTiff[10 + 5 * 12 + 8] = '\xF0'; // the table of strips lies outside
    EXPECT_TRUE(Load(strTiff).isNull());
    EXPECT_TRUE(Load("VELLUM project, not a picture").isNull());
    EXPECT_TRUE(Load(EncodeByQt(Opaque(4, 4), "ppm")).isNull());
    CMemoryFiles files;
    EXPECT_FALSE(CImageCodecs(files).Load(L"missing.png"));
    // The content tells the kind, whatever the name says.
    files.m_mapFiles[L"picture.jpg"] = EncodeByQt(MakeSoftImage(5, 4), "png");
    EXPECT_EQ(ImageOf(CImageCodecs(files).Load(L"picture.jpg")), MakeSoftImage(5, 4));
}

TEST(ImageLoad, TooLargeIsRefusedBeforeMemoryIsTaken) {
    const auto makeFile = [](int nWidth, int nHeight) {
        QImage image(nWidth, nHeight, QImage::Format_Mono);
        image.fill(1);
        return EncodeByQt(image, "bmp");
    };
    EXPECT_EQ(Load(makeFile(30000, 1)).size(), QSize(30000, 1));
    EXPECT_TRUE(Load(makeFile(30001, 1)).isNull());
    EXPECT_TRUE(Load(makeFile(1, 30001)).isNull());
    const std::string strHuge = makeFile(30000, 17900); // a little over 2 GiB decoded
    rusage usageBefore{};
    rusage usageAfter{};
    getrusage(RUSAGE_SELF, &usageBefore);
    CMemoryFiles files;
    files.m_mapFiles[L"p"] = strHuge;
    EXPECT_FALSE(CImageCodecs(files).Load(L"p"));
    getrusage(RUSAGE_SELF, &usageAfter);
    EXPECT_LT(usageAfter.ru_maxrss - usageBefore.ru_maxrss, 400 << 10)
        << "kilobytes; the file itself is 67 MB";
}

TEST(ImageLoad, QtsOwnLimitIsLiftedForTheMoment) {
    const int nOld = QImageReader::allocationLimit();
    QImageReader::setAllocationLimit(1);
    EXPECT_FALSE(Load(EncodeByQt(MakeSoftImage(800, 600), "png")).isNull());
    EXPECT_EQ(QImageReader::allocationLimit(), 1);
    QImageReader::setAllocationLimit(nOld);
}

TEST(ImageLoad, SoftAlphaAndColoursArriveBitForBit) {
    QImage image = MakeSoftImage(256, 128);
    EXPECT_EQ(Load(EncodeByQt(image, "png")), image);
    const QImage imagePlain = image;
    for (const QColorSpace& space :
         {QColorSpace(QColorSpace::AdobeRgb), QColorSpace(QColorSpace::Primaries::SRgb, 1.4f)}) {
        image.setColorSpace(space); // a profile, a gamma
        EXPECT_EQ(Load(EncodeByQt(image, "png")), imagePlain);
    }
    for (const char* pszFormat : {"bmp", "tiff"})
        EXPECT_EQ(Load(EncodeByQt(Opaque(33, 9), pszFormat)),
                  Opaque(33, 9).convertToFormat(QImage::Format_ARGB32));
}

TEST(ImageLoad, OtherDepthsBecomeEightBitsAChannel) {
    QImage imageDeep(256, 1, QImage::Format_RGBA64);
    QImage imageGrey(256, 1, QImage::Format_Grayscale8);
    QImage imageDeepGrey(256, 1, QImage::Format_Grayscale16);
    for (int i = 0; i < 256; ++i) {
        const auto u = static_cast<quint16>(i * 257);
        reinterpret_cast<QRgba64*>(imageDeep.scanLine(0))[i] = qRgba64(u, 65535 - u, 0x1234, u);
        imageGrey.scanLine(0)[i] = static_cast<uchar>(i);
        reinterpret_cast<quint16*>(imageDeepGrey.scanLine(0))[i] = u;
    }
    const QImage imageFromDeep = Load(EncodeByQt(imageDeep, "png"));
    const QImage imageFromGrey = Load(EncodeByQt(imageGrey, "png"));
    const QImage imageFromDeepGrey = Load(EncodeByQt(imageDeepGrey, "png"));
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(imageFromDeep.pixel(i, 0), qRgba(i, 255 - i, 0x12, i)) << i;
        EXPECT_EQ(imageFromGrey.pixel(i, 0), qRgb(i, i, i));
        EXPECT_EQ(imageFromDeepGrey.pixel(i, 0), qRgb(i, i, i));
    }
    QImage imagePalette = Palette(256);
    imagePalette.setColor(3, qRgba(9, 8, 7, 60));
    EXPECT_EQ(Load(EncodeByQt(imagePalette, "png")), imagePalette.convertToFormat(QImage::Format_ARGB32));
    EXPECT_EQ(Load(RunLengthBmp()).pixel(3, 1), qRgb(255, 0, 0)) << "second row from below: 2, then 1 2 1";
    EXPECT_EQ(Load(HandMadeTiff(false)).pixel(1, 1), qRgb(15, 16, 17));
}

TEST(ImageLoad, TheCamerasOrientationIsApplied) {
    std::string strFile = EncodeByQt(Opaque(40, 30), "jpeg");
    strFile.insert(2, "\xFF\xE1\0\x22"s
                      "Exif\0\0MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1\0\6\0\0\0\0\0\0"s);
    EXPECT_EQ(Load(strFile).size(), QSize(30, 40));
}
