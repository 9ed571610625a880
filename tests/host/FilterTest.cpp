#include "core/Base/Color.h"
#include "system/pictures/GifWriter.h"
#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

#include <QRandomGenerator>
#include <gmock/gmock.h>

namespace {

// A picture of many colours; with alpha also translucent, and without colour where it is transparent.
QImage MakeNoise(QSize size, QImage::Format format) {
    QImage image(size, format == QImage::Format_ARGB32 ? format : QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int i = 0; i < size.width() * size.height(); ++i) {
        const auto u = random.generate();
        image.setPixel(i % size.width(), i / size.width(), u >> 24 ? u : 0);
    }
    return image.convertToFormat(format);
}

class CFilter : public CProgramTest {
protected:
    int Run(const std::string& strArguments) { return RunProgram(VELLUM_FILTER, strArguments); }
    std::map<std::string, std::string> ReadFolder() {
        std::map<std::string, std::string> mapFiles;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.GetPath())) {
            const std::string strName = Utf8Of(entry.path().filename());
            if (strName[0] != '.') mapFiles[strName] = m_files.Read(Path(strName)).value_or("");
        }
        return mapFiles;
    }
};

TEST_F(CFilter, FailuresAreToldApartAndLeaveEveryFile) {
    for (const char* pszName : {"in.png", "in-vellumcraft-alpha1.png"})
        SavePicture(pszName, MakeNoise({20, 10}, QImage::Format_RGB32));
    SavePicture("small.png", MakeNoise({19, 10}, QImage::Format_RGB32));
    Write("cut.png", m_files.Read(Path("in.png"))->substr(0, 300));
    Write("frames", "\n{\"expect\":{\"frames\":2}}\n");
    const auto mapBefore = ReadFolder();
    const auto expect = [&](int nCode, const char* pszArguments, const char* pszText) {
        EXPECT_EQ(Run(pszArguments), nCode) << pszArguments;
        EXPECT_TRUE(Says(pszText)) << pszArguments << ": " << m_strSaid;
    };
    for (const char* psz :
         {"", "--nonsense in.png", "in.png a.png b.png", "--in-place in.png out.png", "in.png --alpha",
          "--windows in.png", "in.png ./in.png", "--alpha in-vellumcraft-alpha1.png in.png"})
        expect(2, psz, "usage: vellumcraft-filter");
    expect(0, "--help", "--in-place");
    expect(1, "cut.png", "cut.png: not a picture");
    expect(1, "none.png", "none.png: there is no such");
    expect(1, "--alpha small.png in.png", "small.png: a further channel");
    expect(1, "in.png out.txt", "out.txt: no picture");
    expect(1, "in.png none/out.png", "none/out.png: its folder");
    expect(1, "--script none.json in.png", "none.json: ");
    expect(1, "--module in.png in.png", "in.png");
    expect(1, "in.png --script frames", "frames:2: ");
    EXPECT_TRUE(ReadFolder() == mapBefore);
}

TEST_F(CFilter, UntouchedPicturesComeBackBitForBit) {
    Write("script", R"({"expect":{"frames":1,"enabled":{"57600":false,"12820":true}}}
                       {"answer":{"box":"no"}}
                       {"close":"main"})");
    Write("palette.gif", *EncodeGif(MakeNoise({50, 40}, QImage::Format_Indexed8)));
    SavePicture("edge.png", MakeNoise({95, 97}, QImage::Format_RGB32));
    SavePicture("soft.png", MakeNoise({200, 130}, QImage::Format_ARGB32));
    for (const auto& [strName, strFile] : ReadFolder()) {
        if (strName == "script") continue;
        EXPECT_EQ(Run(strName + " out.png --script script"), 0) << m_strSaid;
        EXPECT_EQ(LoadPicture("out.png"), LoadPicture(strName)) << strName;
    }
    // A further channel is read over the blue plane, and gets that plane back.
    EXPECT_EQ(Run("edge.png out.png --alpha edge.png --script script"), 0) << m_strSaid;
    const QRgb edge = LoadPicture("edge.png").pixel(5, 5);
    const int nGrey = GreyOf(qRed(edge), qGreen(edge), qBlue(edge));
    EXPECT_EQ(qBlue(LoadPicture("out.png").pixel(5, 5)), nGrey);
    EXPECT_EQ(qGray(LoadPicture("edge-vellumcraft-alpha1.png").pixel(5, 5)), nGrey);
}

} // namespace
