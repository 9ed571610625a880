#include "system/pictures/ImageCodecs.h"

#include "system/pictures/GifWriter.h"
#include "system/pictures/QtBitmap.h"
#include "system/pictures/WatchedBuffer.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/TestProgress.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <array>

namespace {

using namespace std::string_literals;

class ImageCodecs : public testing::Test {
protected:
    QImage LoadFile(const std::wstring& strPath) {
        const auto spBitmap = m_codecs.Load(strPath);
        return spBitmap ? static_cast<CQtBitmap&>(*spBitmap).GetImage() : QImage();
    }
    QImage Load(const std::string& strFile) {
        m_files.m_mapFiles[L"p.jpg"] = strFile;
        return LoadFile(L"p.jpg");
    }
    QImage SaveAndLoad(const std::wstring& strPath, const QImage& image) {
        CQtBitmap bitmap(image);
        return m_codecs.Save(strPath, bitmap) ? LoadFile(strPath) : QImage();
    }

    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
};

// A file as Qt writes it, JPEG progressive; a compression of -1 is the format's default.
std::string Encode(const QImage& image, const char* pszFormat, int nCompression = -1) {
    QBuffer buffer;
    QImageWriter writer(&buffer, pszFormat);
    writer.setCompression(nCompression);
    writer.setProgressiveScanWrite(true);
    return writer.write(image) ? buffer.data().toStdString() : std::string();
}

// Every pixel differs in colour and alpha from its neighbours.
QImage Soft(int nWidth, int nHeight) {
    QImage image(nWidth, nHeight, QImage::Format_ARGB32);
    for (int y = 0; y < nHeight; ++y)
        for (int x = 0; x < nWidth; ++x) image.setPixel(x, y, qRgba(x * 5, y * 3, x ^ y, x + y * 7));
    return image;
}

QImage Opaque(int nWidth, int nHeight) { return Soft(nWidth, nHeight).convertToFormat(QImage::Format_RGB32); }

QImage Palette(int nColors) {
    QImage image(17, 16, QImage::Format_Indexed8);
    for (int i = 0; i < nColors; ++i) image.setColor(i, qRgba(i * 3, 255 - i, i * i, i == 3 ? 60 : 255));
    for (int i = 0; i < 17 * 16; ++i) image.setPixel(i % 17, i / 17, static_cast<uint>(i % nColors));
    return image;
}

std::string Little(uint64_t u, size_t cb) { return {reinterpret_cast<const char*>(&u), cb}; }

// 4 x 2 grey pixels. The directory comes before them, so that a cut does not lose it.
std::string HandMadeTiff(bool bBig) {
    constexpr uint64_t PIXELS = 192;
    constexpr uint64_t ENTRIES[][3] = {{256, 3, 4}, {257, 3, 2},      {258, 3, 8}, {259, 3, 1},
                                       {262, 3, 1}, {273, 4, PIXELS}, {278, 3, 2}, {279, 4, 8}};
    const size_t cb = bBig ? 8 : 4;
    std::string str = bBig ? "II+\0\x08\0\0\0\x10\0\0\0\0\0\0\0"s : "II*\0\x08\0\0\0"s;
    str += Little(std::size(ENTRIES), bBig ? 8 : 2);
    for (const auto& [nTag, nType, nValue] : ENTRIES)
        str += Little(nTag, 2) + Little(nType, 2) + Little(1, cb) + Little(nValue, cb);
    str.resize(PIXELS);
    return str + "abcdefgh";
}

// 8 bits a pixel, 4 x 3, rows: a run; a literal of odd length behind a run; the same.
std::string RunLengthBmp() {
    std::string str = "BM";
    for (const uint64_t u : {62 + 16, 0, 66, 40, 4, 3, 1 | 8 << 16, 1, 24, 0, 0, 3, 0, 0, 0xFF0000, 0xFF})
        str += Little(u, 4);
    return str + "\4\1\0\0\1\2\0\3\1\2\1\0\0\0\1\1\0\3\2\2\2\0\0\1"s;
}

int Difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 256;
    const QImage aBytes[] = {a.convertToFormat(QImage::Format_ARGB32),
                             b.convertToFormat(QImage::Format_ARGB32)};
    int nWorst = 0;
    for (qsizetype i = 0; i < aBytes[0].sizeInBytes(); ++i)
        nWorst = std::max(nWorst, std::abs(aBytes[0].constBits()[i] - aBytes[1].constBits()[i]));
    return nWorst;
}

} // namespace

TEST_F(ImageCodecs, EveryKindCutShortIsRefused) {
    const std::pair<const char*, std::string> FILES[] = {
        {"png", Encode(Soft(20, 10), "png")},
        {"jpeg", Encode(Opaque(40, 30), "jpeg")},
        {"bmp", Encode(Opaque(9, 7), "bmp")},
        {"bmp without offset", Encode(Opaque(9, 7), "bmp").replace(10, 4, Little(0, 4))},
        {"palette bmp", Encode(Palette(256), "bmp")},
        {"run-length bmp", RunLengthBmp()},
        {"gif", EncodeGif(Palette(200)).value_or("")},
        {"tiff", Encode(Soft(9, 7), "tiff", 0)},
        {"bilevel tiff", Encode(Opaque(64, 48).convertToFormat(QImage::Format_Mono), "tiff", 1)},
        {"directory-first tiff", HandMadeTiff(false)},
        {"tiff of 64-bit offsets", HandMadeTiff(true)},
    };
    for (const auto& [pszName, strFile] : FILES) {
        EXPECT_FALSE(Load(strFile).isNull() || Load(strFile + "behind").isNull()) << pszName;
        for (size_t cb = 0; cb < strFile.size(); ++cb)
            ASSERT_TRUE(Load(strFile.substr(0, cb)).isNull()) << pszName << " of " << cb << " bytes";
    }
    std::string strDamaged = FILES[0].second;
    strDamaged[strDamaged.size() / 2] ^= 0x10;
    for (const std::string& str : {strDamaged, Encode(Opaque(4, 4), "ppm"), "no picture"s})
        EXPECT_TRUE(Load(str).isNull());
    EXPECT_TRUE(LoadFile(L"missing.png").isNull());
}

TEST_F(ImageCodecs, TooLargeIsRefused) {
    const int nOld = QImageReader::allocationLimit();
    QImageReader::setAllocationLimit(1); // the limit must not apply here
    EXPECT_EQ(Load(Encode(Soft(30000, 12), "png")).size(), QSize(30000, 12));
    EXPECT_EQ(QImageReader::allocationLimit(), 1);
    QImageReader::setAllocationLimit(nOld);
    for (const QSize size : {QSize(30001, 1), {1, 30001}, {30000, 17900}}) // the last decodes to over 2 GiB
        EXPECT_TRUE(Load(Encode(QImage(size, QImage::Format_Mono), "bmp")).isNull()) << size.width();
}

TEST_F(ImageCodecs, SoftAlphaAndColoursStayBitForBit) {
    QImage image = Soft(256, 128);
    for (const QColorSpace& space : {QColorSpace(), QColorSpace(QColorSpace::AdobeRgb),
                                     QColorSpace(QColorSpace::Primaries::SRgb, 1.4f)}) {
        image.setColorSpace(space); // none, a profile, a gamma
        EXPECT_EQ(Load(Encode(image, "png")), Soft(256, 128));
    }
    EXPECT_EQ(SaveAndLoad(L"a.PNG", Soft(256, 128)), Soft(256, 128));
    for (const char* pszChunk : {"gAMA", "iCCP", "sRGB", "cHRM"})
        EXPECT_EQ(m_files.m_mapFiles[L"a.PNG"].find(pszChunk), std::string::npos) << pszChunk;
    std::string strCamera = Encode(Opaque(40, 30), "jpeg");
    strCamera.insert(2, "\xFF\xE1\0\x22"s
                        "Exif\0\0MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1\0\6\0\0\0\0\0\0"s);
    EXPECT_EQ(Load(strCamera).size(), QSize(30, 40)) << "turned as the camera was";
}

TEST_F(ImageCodecs, OtherDepthsBecomeEightBitsAChannel) {
    QImage imageDeep(256, 1, QImage::Format_RGBA64), imageGrey(256, 1, QImage::Format_Grayscale8);
    for (int i = 0, u = 0; i < 256; ++i, u += 257) {
        imageDeep.setPixelColor(i, 0, qRgba64(u, 65535 - u, 0x1234, u));
        imageGrey.setPixel(i, 0, qRgb(i, i, i));
    }
    const QImage imageFromDeep = Load(Encode(imageDeep, "png"));
    const QImage imageFromGrey = Load(Encode(imageGrey, "png"));
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(imageFromDeep.pixel(i, 0), qRgba(i, 255 - i, 0x12, i));
        EXPECT_EQ(imageFromGrey.pixel(i, 0), qRgb(i, i, i));
    }
    EXPECT_EQ(Load(Encode(imageGrey.convertToFormat(QImage::Format_Grayscale16), "png")), imageFromGrey);
    EXPECT_EQ(Load(Encode(Palette(256), "png")), Palette(256).convertToFormat(QImage::Format_ARGB32));
    EXPECT_EQ(Load(RunLengthBmp()).pixel(3, 1), qRgb(255, 0, 0)) << "second row from below: 2, then 1 2 1";
    EXPECT_EQ(Load(HandMadeTiff(false)).pixel(1, 1), qRgb('f', 'f', 'f'));
}

TEST_F(ImageCodecs, KindsWithoutAlphaLieOnWhite) {
    QImage image(256, 64, QImage::Format_ARGB32);
    for (int i = 0; i < 256 * 64; ++i) image.setPixel(i % 256, i / 256, qRgba(200, 30, 90, i % 256));
    QImage imageOnWhite(256, 64, QImage::Format_RGB32);
    imageOnWhite.fill(Qt::white);
    QPainter(&imageOnWhite).drawImage(0, 0, image);
    for (const auto& [pszPath, nTolerance] :
         {std::pair(L"a.bmp", 1), {L"a.tif", 1}, {L"a.TIFF", 1}, {L"a.jpg", 3}, {L"a.Jpeg", 3}})
        EXPECT_LE(Difference(SaveAndLoad(pszPath, image), imageOnWhite), nTolerance);
    EXPECT_EQ(LoadFile(L"a.tif").pixel(128, 0), qRgb(228, 143, 173));
    EXPECT_EQ(m_files.m_mapFiles[L"a.bmp"].substr(28, 2), Little(24, 2));
    EXPECT_LT(m_files.m_mapFiles[L"a.tif"].size(), 256u * 64 * 3 / 2) << "compressed";
}

TEST_F(ImageCodecs, PicturesWithoutTransparencyAreWrittenWithoutAlpha) {
    QImage image = Opaque(20, 10).convertToFormat(QImage::Format_ARGB32);
    const auto colorType = [&] { return m_files.m_mapFiles[L"a.png"].at(25); };
    EXPECT_EQ(SaveAndLoad(L"a.png", image), image);
    EXPECT_EQ(colorType(), 2) << "R, G, B";
    image.setPixel(19, 9, qRgba(7, 8, 9, 254));
    EXPECT_EQ(SaveAndLoad(L"a.png", image), image);
    EXPECT_EQ(colorType(), 6) << "and alpha";
}

TEST_F(ImageCodecs, GifKeepsUpTo256ColoursAndReducesMore) {
    for (const int nColors : {1, 2, 3, 255, 256}) {
        QImage image(31, 40, QImage::Format_ARGB32);
        for (int i = 0, n = 0; i < 31 * 40; ++i, n = i * 7 % nColors)
            image.setPixel(i % 31, i / 31, qRgb(n, 255 - n, n * n));
        EXPECT_EQ(SaveAndLoad(L"a.gif", image), image) << nColors;
    }
    QImage image(256, 192, QImage::Format_ARGB32);
    for (int i = 0; i < 256 * 192; ++i) {
        const int x = i % 256, y = i / 256;
        image.setPixel(x, y, y < 96 ? 0xFFFFFFFF : qRgb(x, y, (x * 3 + y) / 4));
    }
    const QImage imageBack = SaveAndLoad(L"a.gif", image);
    EXPECT_EQ(imageBack.copy(0, 0, 256, 96), image.copy(0, 0, 256, 96)) << "the paper stays white";
    EXPECT_LT(Difference(imageBack, image), 30);
    const auto fromAfar = [](const QImage& i) { return i.scaled(16, 12, {}, Qt::SmoothTransformation); };
    EXPECT_LE(Difference(fromAfar(imageBack), fromAfar(image)), 1);
}

TEST_F(ImageCodecs, BitmapsStartTransparentAndLockOneRectangle) {
    EXPECT_NE(m_codecs.Startup(), 0u) << "every kind has its decoder";
    for (const CSize sz : {CSize{0, 1}, CSize{1, -1}, CSize{30001, 1}, CSize{1, 30001}})
        EXPECT_FALSE(m_codecs.CreateBitmap(sz));
    const auto spBitmap = m_codecs.CreateBitmap({5, 4});
    const QImage& image = static_cast<CQtBitmap&>(*spBitmap).GetImage();
    EXPECT_EQ(image.pixel(4, 3), 0u);
    TLockedBits bits;
    ASSERT_TRUE(spBitmap->LockBits({2, 1, 5, 4}, ELockMode::Write, bits));
    std::iota(bits.pData + 2 * bits.nStride + 4, bits.pData + 2 * bits.nStride + 8, uint8_t{1}); // B, G, R, A
    EXPECT_FALSE(spBitmap->LockBits({0, 0, 1, 1}, ELockMode::Read, bits));
    EXPECT_FALSE(m_codecs.Save(L"a.bmp", *spBitmap)) << "somebody is drawing on it";
    EXPECT_TRUE(spBitmap->UnlockBits() && !spBitmap->UnlockBits());
    EXPECT_EQ(image.pixel(3, 3), qRgba(3, 2, 1, 4));
    EXPECT_TRUE(m_codecs.Save(L"a.bmp", *spBitmap));
    EXPECT_TRUE(spBitmap->LockBits({0, 0, 1, 1}, ELockMode::Read, bits)) << "the codecs let go of it";
}

TEST_F(ImageCodecs, OtherEndingsWriteNothing) {
    for (const wchar_t* pszPath : {L"a.psd", L"a.webp", L"a", L"png", L"a.png.txt", L"a.png/b"})
        EXPECT_FALSE(m_codecs.CanSave(pszPath) || !SaveAndLoad(pszPath, Soft(3, 3)).isNull());
    EXPECT_TRUE(m_codecs.CanSave(L"/x/絵.JPEG") && m_files.m_mapFiles.empty());
}

TEST(WatchedBuffer, ACancelledReadIsTheEndOfTheBytesAndACancelledWriteFails) {
    QByteArray bytes(100, 'a');
    std::array<char, 10> aRead;
    for (const bool bRead : {true, false}) {
        CCountedProgress progress(2);
        progress.Begin(L"", 0);
        CWatchedBuffer buffer(bytes, progress);
        const auto pass = [&] {
            return bRead ? buffer.read(aRead.data(), aRead.size()) : buffer.write("bbbbbbbbbb", 10);
        };
        EXPECT_EQ(pass(), 10);
        for (int n = 0; n < 2; ++n) EXPECT_EQ(pass(), bRead ? 0 : -1);
        EXPECT_THROW(buffer.RaiseCancel(), cancelled_error);
    }
}
