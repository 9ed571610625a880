// vellumcraft-filter as its user meets it: what it says, its exit code, and that a failure leaves no file.
#include "core/Platform/Bitmap.h"
#include "system/FileStore.h"
#include "system/GifWriter.h"
#include "system/ImageCodecs.h"
#include "system/QtBitmap.h"
#include "tests/support/TempFolder.h"

#include <QImage>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include <sys/wait.h>

namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class CFilter : public testing::Test {
protected:
    CFilter() { SavePicture("in.png", {20, 10}); }

    void SavePicture(const char* pszName, CSize sz) {
        CFileStore files;
        CImageCodecs codecs(files);
        ASSERT_TRUE(codecs.Save(m_folder.File(pszName).wstring(), *codecs.CreateBitmap(sz)));
    }
    /// Runs the filter inside the folder, without a display; returns its exit code.
    int Run(const std::string& strArguments) {
        const std::string strSay = m_folder.File(".say").native();
        const std::string strCommand = "cd '" + m_folder.GetPath().native() +
                                       "' && env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "
                                       "XDG_CONFIG_HOME='" +
                                       m_folder.File(".config").native() + "' '" VELLUM_FILTER "' " +
                                       strArguments + " >'" + strSay + "' 2>&1";
        const int nStatus = std::system(strCommand.c_str());
        m_strSaid = ReadFile(strSay);
        return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
    }
    /// The visible files of the folder.
    std::set<std::string> ListFiles() const {
        std::set<std::string> setNames;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.GetPath()))
            if (entry.path().filename().native()[0] != '.') setNames.insert(entry.path().filename().native());
        return setNames;
    }
    bool Said(const char* pszText) const { return m_strSaid.find(pszText) != std::string::npos; }

    CTempFolder m_folder;
    std::string m_strSaid;
};

TEST_F(CFilter, WrongCommandLinesAreToldApart) {
    SavePicture("in-vellumcraft-alpha1.png", {20, 10});
    const std::string strBefore = ReadFile(m_folder.File("in.png"));
    for (const char* psz :
         {"", "--nonsense in.png", "in.png a.png b.png", "--in-place in.png out.png", "in.png --alpha",
          "--windows in.png", "in.png ./in.png", "--alpha in-vellumcraft-alpha1.png in.png"}) {
        EXPECT_EQ(Run(psz), 2) << psz;
        EXPECT_TRUE(Said("usage: vellumcraft-filter")) << psz;
    }
    EXPECT_EQ(ReadFile(m_folder.File("in.png")), strBefore);
    EXPECT_EQ(Run("--help"), 0);
    EXPECT_TRUE(Said("--in-place"));
}

TEST_F(CFilter, PicturesThatCannotBeReadLeaveNoFile) {
    const std::string strPicture = ReadFile(m_folder.File("in.png"));
    std::ofstream(m_folder.File("cut.png"), std::ios::binary) << strPicture.substr(0, strPicture.size() / 2);
    std::ofstream(m_folder.File("empty.png"));
    SavePicture("small.png", {19, 10});
    const auto setBefore = ListFiles();
    const std::pair<const char*, const char*> CASES[] = {
        {"cut.png", "cut.png: not a picture"},
        {"empty.png", "empty.png: not a picture"},
        {"none.png", "none.png: there is no such"},
        {"--alpha small.png in.png", "small.png: a further channel"},
        {"in.png out.txt", "out.txt: no picture"},
        {"in.png none/out.png", "none/out.png: its folder"},
        {"--script none.json in.png", "none.json: "},
        {"--module in.png in.png", "in.png"},
    };
    for (const auto& [pszArguments, pszText] : CASES) {
        EXPECT_EQ(Run(pszArguments), 1) << pszArguments;
        EXPECT_TRUE(Said(pszText)) << m_strSaid;
    }
    EXPECT_EQ(ListFiles(), setBefore);
}

// A picture of many colours; with alpha also soft, and without colour where it is clear.
QImage MakeNoise(QSize size, QImage::Format format) {
    QImage image(size, format);
    QRandomGenerator random(7);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const auto u = random.generate();
            image.setPixelColor(x, y, QColor::fromRgba(image.hasAlphaChannel() && u >> 24 == 0 ? 0 : u));
        }
    return image;
}

TEST_F(CFilter, UntouchedPicturesComeBackBitForBit) {
    std::ofstream(m_folder.File("script"))
        << R"({"expect":{"frames":1,"enabled":{"57600":false,"12820":true}}})"
           "\n"
        << R"({"answer":{"box":"no"}})"
           "\n"
           R"({"close":"main"})";
    const QImage imagePalette =
        MakeNoise({50, 40}, QImage::Format_RGB32).convertToFormat(QImage::Format_Indexed8);
    const std::pair<const char*, QImage> PICTURES[] = {
        {"one.png", MakeNoise({1, 1}, QImage::Format_RGB32)},
        {"edge.png", MakeNoise({95, 97}, QImage::Format_RGB32)},
        {"tile.bmp", MakeNoise({96, 96}, QImage::Format_RGB32)},
        {"over.tif", MakeNoise({97, 95}, QImage::Format_RGB32)},
        {"soft.png", MakeNoise({200, 130}, QImage::Format_ARGB32)},
        {"palette.gif", imagePalette},
        {"deep.png", MakeNoise({60, 50}, QImage::Format_RGBA64).convertToFormat(QImage::Format_RGBX64)},
        {"grey.jpg", MakeNoise({60, 50}, QImage::Format_Grayscale8)},
    };
    CFileStore files;
    CImageCodecs codecs(files);
    const auto load = [&](const std::string& strName) {
        const auto spBitmap = codecs.Load(m_folder.File(strName).wstring());
        return spBitmap ? static_cast<CQtBitmap&>(*spBitmap).GetImage() : QImage();
    };
    for (const auto& [pszName, image] : PICTURES) {
        if (std::string(pszName).ends_with(".gif"))
            files.Replace(m_folder.File(pszName).wstring(), *EncodeGif(image));
        else
            ASSERT_TRUE(image.save(QString::fromStdString(m_folder.File(pszName).native())));
        EXPECT_EQ(Run(std::string(pszName) + " out.png --script script"), 0) << m_strSaid;
        EXPECT_EQ(load("out.png"), load(pszName)) << pszName;
    }
    // A further channel is read over the blue plane, and gets that plane back.
    EXPECT_EQ(Run("edge.png out.png --alpha edge.png --script script"), 0) << m_strSaid;
    EXPECT_EQ(qBlue(load("out.png").pixel(5, 5)), qGray(load("edge-vellumcraft-alpha1.png").pixel(5, 5)));
    EXPECT_EQ(qRed(load("out.png").pixel(5, 5)), qRed(load("edge.png").pixel(5, 5)));
}

TEST_F(CFilter, AScriptThatFailsIsToldWithItsLine) {
    std::ofstream(m_folder.File("script")) << "\n"
                                              R"({"expect":{"frames":2}})"
                                              "\n";
    EXPECT_EQ(Run("in.png --script script"), 1);
    EXPECT_TRUE(Said("script:2: ")) << m_strSaid;
    std::ofstream(m_folder.File("script")) << R"({"frobnicate":1})"
                                              "\n";
    EXPECT_EQ(Run("in.png --script script"), 1);
    EXPECT_TRUE(Said("script:1: ") && Said("frobnicate")) << m_strSaid;
    EXPECT_FALSE(ListFiles().count("in-vellumcraft.png"));
}

TEST_F(CFilter, WithoutADisplayTheUserIsTold) {
    EXPECT_EQ(Run("in.png"), 1);
    EXPECT_TRUE(Said("-30900") && Said("display")) << m_strSaid;
    EXPECT_EQ(ListFiles(), std::set<std::string>{"in.png"});
}

} // namespace
