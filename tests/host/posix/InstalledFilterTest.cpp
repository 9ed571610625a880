#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

#include <gmock/gmock.h>

namespace {

class CInstalledFilter : public CProgramTest {};

TEST_F(CInstalledFilter, WithoutADisplayNothingIsWritten) {
    SavePicture("in.png", QImage(5, 5, QImage::Format_RGB32));
    EXPECT_EQ(RunProgram(VELLUM_FILTER, "in.png out.png"), 1);
    EXPECT_TRUE(Says("-30900")) << m_strSaid;
    EXPECT_FALSE(std::filesystem::exists(m_folder.File("out.png")));
}

TEST_F(CInstalledFilter, AnInstalledProgramFindsItsModule) {
    Write("script", "");
    SavePicture("a.png", QImage(5, 5, QImage::Format_RGB32));
    for (const char* psz : {"bin", "lib/vellumcraft"})
        std::filesystem::create_directories(m_folder.File(psz));
    std::filesystem::copy_file(VELLUM_FILTER, m_folder.File("bin/filter"));
    EXPECT_EQ(RunProgram("bin/filter", "a.png --script script"), 1) << "there is no module";
    std::filesystem::create_symlink(VELLUM_MODULE, m_folder.File("lib/vellumcraft/vellumcraft.8bf"));
    EXPECT_EQ(RunProgram("bin/filter", "a.png --script script"), 0) << m_strSaid;
}

TEST_F(CInstalledFilter, ManualPageAndCompletionFollowItsHelp) {
    const std::string strMaker = VELLUM_SOURCE "/tools/make_help_files.py";
    ASSERT_EQ(RunProgram("python3", strMaker + " '" VELLUM_FILTER "' 1.0 made"), 0) << m_strSaid;
    EXPECT_THAT(
        m_files.Read(Path("made/man/vellumcraft-filter.1")).value_or(""),
        testing::HasSubstr(
            ".TP\n\\fB\\-\\-alpha\\fR \\fIFILE\\fR\na picture of IN's size as a further channel (may be "
            "repeated); it is written back beside OUT as NAME\\-vellumcraft"));
    RunProgram("bash",
               "-c '. made/completions/vellumcraft-filter; _vellumcraft_filter vellumcraft-filter --in "
               "vellumcraft-filter; echo ${COMPREPLY[@]}'");
    EXPECT_EQ(m_strSaid, "--in-place\n");
}

} // namespace
