#include "core/ImageFile/ImageFile.h"
#include "tests/support/LayerPictures.h"
#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

namespace {

class ThumbnailProgram : public CProgramTest {
protected:
    // The left half is red under half a transparency, the rest is paper.
    void SaveDrawing(const std::string& strName) {
        const auto spCanvas = MakePage({400, 200});
        CRasterBuffer& raster =
            *boost::static_pointer_cast<CRasterLayerBuffer>(spCanvas->GetActiveLayer())->GetRaster();
        for (int32_t y = 0; y < 200; y += 96)
            for (int32_t x = 0; x < 192; x += 96)
                raster.GetBlock({x, y}, true)->Fill(MakeColor(255, 0, 0), 128);
        SaveDocument(*spCanvas, Path(strName), m_files);
    }
    int Run(const std::string& strArguments) { return RunProgram(VELLUM_THUMBNAILER, strArguments); }
};

} // namespace

TEST_F(ThumbnailProgram, WritesASmallPicture) {
    SaveDrawing("絵 1.vlm");
    EXPECT_EQ(Run("-s 128 '絵 1.vlm' small.png"), 0) << m_strSaid;
    const QImage image = LoadPicture("small.png");
    EXPECT_EQ(image.size(), QSize(128, 64));
    EXPECT_EQ(image.pixel(30, 30), qRgb(255, 128, 128));
    EXPECT_EQ(image.pixel(100, 63), qRgb(255, 255, 255));
    EXPECT_EQ(Run("--size 5000 '絵 1.vlm' small.png"), 0) << "the old one is replaced";
    EXPECT_EQ(LoadPicture("small.png").size(), QSize(400, 200)) << "not enlarged";
    EXPECT_EQ(m_strSaid, "");
}

TEST_F(ThumbnailProgram, WithoutAPictureThereIsAnExitCode) {
    SaveDrawing("whole.vlm");
    const std::string strWhole = *m_files.Read(Path("whole.vlm"));
    Write("cut.vlm", strWhole.substr(0, strWhole.size() / 2));
    Write("empty.vlm", "");
    for (const char* psz : {"cut.vlm out.png", "empty.vlm out.png", "none.vlm out.png", ". out.png",
                            "whole.vlm none/out.png", "whole.vlm ."}) {
        EXPECT_EQ(Run(psz), 1) << psz;
        EXPECT_EQ(m_strSaid, "") << psz;
        EXPECT_FALSE(std::filesystem::exists(m_folder.File("out.png"))) << psz;
        EXPECT_EQ(Run(std::string("--verbose ") + psz), 1);
        EXPECT_TRUE(Says("vellumcraft-thumbnailer: ") && Says("。")) << m_strSaid;
    }
    for (const char* psz : {"", "whole.vlm", "whole.vlm a b", "-s 0 whole.vlm out.png",
                            "-s x whole.vlm out.png", "whole.vlm ./whole.vlm"}) {
        EXPECT_EQ(Run(psz), 2) << psz;
        EXPECT_TRUE(Says("usage: vellumcraft-thumbnailer")) << psz;
    }
    EXPECT_EQ(*m_files.Read(Path("whole.vlm")), strWhole);
}
