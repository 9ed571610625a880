#include "system/ImageCodecs.h"

#include "tests/support/MemoryFiles.h"
#include "tests/system/PictureFixtures.h"

#include <gtest/gtest.h>

#include <set>

namespace {

class ImageSave : public testing::Test {
protected:
    std::string Save(const std::wstring& strPath, const QImage& image) {
        CQtBitmap bitmap(image);
        return m_codecs.Save(strPath, bitmap) ? m_files.m_mapFiles[strPath] : std::string();
    }
    QImage SaveAndLoad(const std::wstring& strPath, const QImage& image) {
        Save(strPath, image);
        return ImageOf(m_codecs.Load(strPath));
    }

    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
};

QImage OnWhite(const QImage& image) {
    QImage imageFlat(image.size(), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = image.pixel(x, y);
            const auto flat = [&](int n) { return 255 - (((255 - n) * ((qAlpha(c) * 1024) / 255)) >> 10); };
            imageFlat.setPixel(x, y, qRgb(flat(qRed(c)), flat(qGreen(c)), flat(qBlue(c))));
        }
    return imageFlat;
}

std::set<QRgb> ColorsOf(const QImage& image) {
    std::set<QRgb> setColors;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) setColors.insert(image.pixel(x, y));
    return setColors;
}

constexpr int (*CHANNELS[])(QRgb) = {qRed, qGreen, qBlue};

// The largest difference of a channel's mean over blocks of 16 x 16 pixels: what an eye sees from afar.
double BlockDrift(const QImage& a, const QImage& b) {
    double dWorst = 0;
    for (int nBlock = 0; nBlock < a.width() / 16 * (a.height() / 16); ++nBlock)
        for (const auto channel : CHANNELS) {
            double dSum = 0;
            for (int i = 0; i < 256; ++i) {
                const int x = nBlock % (a.width() / 16) * 16 + i % 16;
                const int y = nBlock / (a.width() / 16) * 16 + i / 16;
                dSum += channel(a.pixel(x, y)) - channel(b.pixel(x, y));
            }
            dWorst = std::max(dWorst, std::abs(dSum) / 256);
        }
    return dWorst;
}

} // namespace

TEST_F(ImageSave, PngKeepsEveryBit) {
    const QImage image = MakeSoftImage(256, 256);
    EXPECT_EQ(SaveAndLoad(L"a.PNG", image), image);
    for (const char* pszChunk : {"gAMA", "iCCP", "sRGB", "cHRM"})
        EXPECT_EQ(m_files.m_mapFiles[L"a.PNG"].find(pszChunk), std::string::npos) << pszChunk;
}

TEST_F(ImageSave, TheOthersLieOnWhite) {
    const QImage image = MakeSoftImage(256, 256);
    EXPECT_EQ(SaveAndLoad(L"a.bmp", image), OnWhite(image));
    EXPECT_EQ(m_files.m_mapFiles[L"a.bmp"].substr(28, 2), Little(24, 2));
    EXPECT_EQ(SaveAndLoad(L"a.tif", image), OnWhite(image));
    QImage imageLarge(64, 64, QImage::Format_ARGB32);
    imageLarge.fill(qRgba(200, 30, 90, 128));
    EXPECT_EQ(SaveAndLoad(L"b.TIFF", imageLarge), OnWhite(imageLarge));
    EXPECT_LT(m_files.m_mapFiles[L"b.TIFF"].size(), 64u * 64 * 3 / 4) << "compressed";
    for (const wchar_t* pszPath : {L"a.jpg", L"a.Jpeg"}) {
        const QImage imageBack = SaveAndLoad(pszPath, imageLarge);
        ASSERT_EQ(imageBack.size(), imageLarge.size());
        for (const auto channel : CHANNELS)
            EXPECT_NEAR(channel(imageBack.pixel(20, 20)), channel(OnWhite(imageLarge).pixel(0, 0)), 2);
    }
}

TEST_F(ImageSave, GifKeepsUpTo256Colours) {
    for (const int nColors : {1, 2, 3, 255, 256}) {
        QImage image(31, 40, QImage::Format_ARGB32);
        for (int i = 0; i < 31 * 40; ++i) {
            const int n = i * 7 % nColors;
            image.setPixel(i % 31, i / 31, qRgb(n, 255 - n, n * n));
        }
        EXPECT_EQ(SaveAndLoad(L"a.gif", image), image) << nColors;
        EXPECT_EQ(ColorsOf(image).size(), static_cast<size_t>(nColors));
    }
}

TEST_F(ImageSave, GifReducesMoreColours) {
    QImage image(256, 192, QImage::Format_ARGB32);
    for (int y = 0; y < 192; ++y)
        for (int x = 0; x < 256; ++x)
            image.setPixel(x, y, y < 96 ? qRgb(255, 255, 255) : qRgb(x, y, (x * 3 + y) / 4));
    const QImage imageBack = SaveAndLoad(L"a.gif", image);
    ASSERT_EQ(imageBack.size(), image.size());
    EXPECT_GT(ColorsOf(imageBack).size(), 200u);
    EXPECT_EQ(ColorsOf(imageBack.copy(0, 0, 256, 96)), std::set<QRgb>{qRgb(255, 255, 255)})
        << "the paper stays white";
    EXPECT_LT(BlockDrift(imageBack, image), 1.5);

    int nWorst = 0;
    for (int y = 96; y < 192; ++y)
        for (int x = 0; x < 256; ++x)
            for (const auto channel : CHANNELS)
                nWorst =
                    std::max(nWorst, std::abs(channel(imageBack.pixel(x, y)) - channel(image.pixel(x, y))));
    EXPECT_LT(nWorst, 30);
}

TEST_F(ImageSave, OtherEndingsAndFailuresWriteNothing) {
    for (const wchar_t* pszPath : {L"a.psd", L"a.webp", L"a", L"png", L"a.png.txt", L"a.png/b"}) {
        EXPECT_FALSE(m_codecs.CanSave(pszPath));
        EXPECT_EQ(Save(pszPath, MakeSoftImage(3, 3)), "");
    }
    EXPECT_TRUE(m_codecs.CanSave(L"/x/絵.JPEG"));
    m_files.m_bReadOnly = true;
    EXPECT_EQ(Save(L"a.png", MakeSoftImage(3, 3)), "");
    EXPECT_TRUE(m_files.m_mapFiles.empty());
    m_files.m_bReadOnly = false;
    CQtBitmap bitmap(MakeSoftImage(3, 3));
    TLockedBits bits;
    ASSERT_TRUE(bitmap.LockBits({0, 0, 1, 1}, ELockMode::Write, bits));
    EXPECT_FALSE(m_codecs.Save(L"a.bmp", bitmap)) << "somebody is drawing on it";
    EXPECT_TRUE(bitmap.UnlockBits());
    EXPECT_TRUE(m_codecs.Save(L"a.bmp", bitmap));
    EXPECT_TRUE(bitmap.LockBits({0, 0, 1, 1}, ELockMode::Read, bits)) << "the codecs let go of it";
}

TEST(Bitmap, StartsTransparentAndLocksOneRectangle) {
    CMemoryFiles files;
    CImageCodecs codecs(files);
    const uintptr_t uToken = codecs.Startup();
    EXPECT_NE(uToken, 0u);
    for (const CSize sz : {CSize{0, 1}, CSize{1, -1}, CSize{30001, 1}, CSize{1, 30001}})
        EXPECT_FALSE(codecs.CreateBitmap(sz));
    const auto spBitmap = codecs.CreateBitmap({5, 4});
    ASSERT_TRUE(spBitmap);
    int32_t nWidth = 0;
    int32_t nHeight = 0;
    EXPECT_TRUE(spBitmap->GetWidth(nWidth) && spBitmap->GetHeight(nHeight));
    EXPECT_EQ((CSize{nWidth, nHeight}), (CSize{5, 4}));
    EXPECT_EQ(ColorsOf(ImageOf(spBitmap)), std::set<QRgb>{0u});
    TLockedBits bits;
    for (const CRect& rc : {CRect(0, 0, 6, 4), CRect(-1, 0, 2, 2), CRect(0, 3, 1, 5), CRect(2, 2, 2, 3)})
        EXPECT_FALSE(spBitmap->LockBits(rc, ELockMode::Read, bits));
    ASSERT_TRUE(spBitmap->LockBits({2, 1, 5, 4}, ELockMode::Write, bits));
    EXPECT_FALSE(spBitmap->LockBits({0, 0, 1, 1}, ELockMode::Read, bits));
    uint8_t* pPixel = bits.pData + 2 * bits.nStride + 4;
    for (int n = 0; n < 4; ++n) pPixel[n] = static_cast<uint8_t>(n + 1); // B, G, R, A
    EXPECT_TRUE(spBitmap->UnlockBits());
    EXPECT_FALSE(spBitmap->UnlockBits());
    EXPECT_EQ(ImageOf(spBitmap).pixel(3, 3), qRgba(3, 2, 1, 4));
    codecs.Shutdown(uToken);
}
