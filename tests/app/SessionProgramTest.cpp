#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

namespace {

class CSessionProgram : public CProgramTest {
protected:
    void SavePage(const std::string& strName, int nWidth, QColor color) {
        QImage image(nWidth, 20, QImage::Format_ARGB32);
        color.setAlpha(254); // an opaque picture would be returned opaque
        image.fill(color);
        SavePicture(strName, image);
    }
    int Run(const std::string& strArguments, const std::string& strProgram = VELLUM_SESSION) {
        return RunProgram(strProgram, strArguments);
    }
};

TEST_F(CSessionProgram, PlaysInBothDeliveries) {
    Write("new", R"({"answer":{"dialog":"CNewDialog","width":30,"height":20}}
{"command":57600}
{"expect":{"frames":1}}
{"close":"frame"})");
    Write("half", R"({"expect":{"enabled":{"57600":false}}}
{"layer":{"opacity":128}})");
    SavePage("red.png", 25, Qt::red);
    EXPECT_EQ(Run("new --out new.png"), 0) << m_strSaid;
    EXPECT_EQ(LoadPicture("new.png").size(), QSize(30, 20)) << "the last document, though it was closed";
    EXPECT_EQ(Run("half --in red.png --out half.png"), 0) << m_strSaid;
    EXPECT_EQ(qAlpha(LoadPicture("half.png").pixel(3, 3)), 127);
    Write("save", R"({"open":"red.png"}
{"save":"red.vlm"})");
    EXPECT_EQ(Run("save"), 0) << m_strSaid;
    for (const auto& [pszOut, pszHead] :
         {std::pair{"a.png", "\x89PNG"}, {"a.psd", "8BPS"}, {"a.svg", "<?xml"}}) {
        EXPECT_EQ(Run(std::string("--desktop --in red.vlm --out ") + pszOut), 0) << m_strSaid;
        EXPECT_TRUE(m_files.Read(Path(pszOut)).value_or("").starts_with(pszHead)) << pszOut;
    }
    const auto expect = [&](int nCode, const std::string& strArguments, const std::string& strText) {
        EXPECT_EQ(Run(strArguments), nCode) << strArguments;
        EXPECT_TRUE(Says(strText)) << m_strSaid;
        EXPECT_FALSE(std::filesystem::exists(m_folder.File("out.png")));
    };
    Write("bad", "\n{\"wait\":-1}");
    Write("damaged.vlm", "no project");
    Write("box", "{\"open\":\"damaged.vlm\"}");
    Write("none", "{\"wait\":1}");
    expect(2, "bad --out out.png", "bad:2: wait: must be");
    expect(1, "box --out out.png", "box:1: error box: データファイルが破損しています。");
    expect(1, "none --out out.png", "out.png: no document was open");
    expect(1, "none --in damaged.vlm --out out.png", "damaged.vlm: not a picture");
    expect(1, "none --desktop --in damaged.vlm --out out.png", "error box: データファイルが破損しています。");
    expect(1, "none --in red.png --out out.svg", "out.svg: no picture format has this ending");
    expect(2, "none --desktop --out out.png", "--desktop goes with");
    for (const char* psz : {"", "a b", "--desktop --in red.png", "--in red.png --out out.png",
                            "--in red.png --out ./red.png none", "--jobs 2 none", "--format png none",
                            "--each '*.png' --out-dir d --jobs 0 none"})
        expect(2, psz, "usage: vellumcraft-session");
}

TEST_F(CSessionProgram, ABatchDoesWhatItCan) {
    for (const char* psz : {"a", "b", "c", "d"}) SavePage(std::string("pages/") + psz + ".png", 25, Qt::blue);
    SavePage("pages/e.png", 26, Qt::blue);
    Write("pages/f.png", "cut short");
    Write("half", "{\"expect\":{\"size\":{\"width\":25,\"height\":20}}}\n{\"layer\":{\"opacity\":128}}");
    EXPECT_EQ(Run("--each 'pages/*.png' --out-dir done/deep half --jobs 3"), 1);
    for (const char* psz : {"a", "b", "c", "d"})
        EXPECT_EQ(qAlpha(LoadPicture(std::string("done/deep/") + psz + ".png").pixel(1, 1)), 127)
            << m_strSaid;
    EXPECT_TRUE(Says("pages/b.png: done\n") && Says("pages/e.png: failed: half:1: size.width: ") &&
                Says("pages/f.png: failed: pages/f.png: not a picture") && Says("\n4 done, 2 failed, "))
        << m_strSaid;
    EXPECT_FALSE(std::filesystem::exists(m_folder.File("done/deep/e.png")));
    SavePage("絵/1 a.png", 25, Qt::blue);
    Write("絵/2 a.pngx", "none of them");
    EXPECT_EQ(Run("--each '絵/? a.png' --out-dir 絵/done half"), 0) << m_strSaid;
    SavePage("絵/2 a.png", 7, Qt::blue);
    EXPECT_EQ(Run("--each '絵/*a.png' --out-dir safe half --module '" VELLUM_CRASHING_MODULE "'"), 1);
    EXPECT_TRUE(Says("絵/2 a.png: failed: ended by ") && Says("絵/1 a.png: done")) << m_strSaid;
    EXPECT_TRUE(Says("ended by signal 11 ") || Says("ended by exception c0000005\n")) << m_strSaid;
}

TEST_F(CSessionProgram, ABatchOfScansIsCleanedUp) {
    QImage scan(40, 30, QImage::Format_RGB32);
    scan.fill(qRgb(214, 209, 200));
    for (int y = 10; y < 14; ++y)
        for (int x = 0; x < 40; ++x) scan.setPixel(x, y, qRgb(48, 40, 52));
    for (const char* psz : {"a.png", "b.png"}) SavePicture(psz, scan);
    SavePicture("c.png", scan.copy(0, 0, 22, 30));
    EXPECT_EQ(
        Run("--desktop --each '*.png' --out-dir done '" VELLUM_SOURCE "/docs/examples/clean-scan.jsonl'"), 0)
        << m_strSaid;
    for (const auto& [psz, nWidth] : {std::pair{"done/b.png", 20}, {"done/c.png", 11}}) {
        const QImage clean = LoadPicture(psz);
        EXPECT_EQ(clean.size(), QSize(nWidth, 15));
        for (int y = 0; y < 15; ++y)
            EXPECT_EQ(clean.pixel(5, y) & 0xFFFFFF, y == 5 || y == 6 ? 0u : 0xFFFFFFu) << psz << y;
    }
}

TEST_F(CSessionProgram, ABatchOfProjectsIsConverted) {
    for (const char* psz : {"a", "b"}) SavePage(std::string(psz) + ".png", 25, Qt::red);
    const std::string strAll = "--desktop --out-dir done --each ";
    EXPECT_EQ(Run(strAll + "'*.png' --format vlm"), 0) << m_strSaid;
    for (const auto& [pszFormat, pszHead] :
         {std::pair{"png", "\x89PNG"}, {"psd", "8BPS"}, {"svg", "<?xml"}}) {
        EXPECT_EQ(Run(strAll + "'done/?.vlm' --format " + pszFormat), 0) << m_strSaid;
        EXPECT_TRUE(m_files.Read(Path(std::string("done/b.") + pszFormat)).value_or("").starts_with(pszHead));
    }
    EXPECT_EQ(LoadPicture("done/a.png"), LoadPicture("a.png"));
}

TEST_F(CSessionProgram, ABatchThatWouldLoseAPageDoesNotBegin) {
    for (const char* psz : {"pages/a.png", "pages/a.bmp"}) SavePage(psz, 25, Qt::green);
    Write("none", "{\"wait\":1}");
    Write("bad", "{\"wait\":-1}");
    const auto expect = [&](const std::string& strArguments, const std::string& strText) {
        EXPECT_EQ(Run(strArguments), 2) << strArguments;
        EXPECT_TRUE(Says(strText)) << m_strSaid;
        EXPECT_FALSE(std::filesystem::exists(m_folder.File("done")));
    };
    expect("--desktop --each 'pages/a.*' --out-dir done --format svg", "two results have the name a.svg");
    expect("--each 'pages/*.png' --out-dir done --format svg none", "--format svg: no format of results");
    expect("--each 'pages/*.png' --out-dir pages/../pages none", "a result would overwrite pages/a.png");
    expect("--each 'pages/*.png' --out-dir done bad", "bad:1: ");
    EXPECT_EQ(LoadPicture("pages/a.png").pixelColor(1, 1), QColor(0, 255, 0, 254));
}

} // namespace
