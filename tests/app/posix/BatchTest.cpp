#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

namespace {

class CBatch : public CProgramTest {};

TEST_F(CBatch, PatternsAndLinksOfTheSystemLoseNoPage) {
    for (const char* psz : {"pages/a.png", "more/a.png", "more/b.png"})
        SavePicture(psz, QImage(25, 20, QImage::Format_RGB32));
    std::filesystem::create_symlink(m_folder.File("pages"), m_folder.File("link"));
    Write("none", "{\"wait\":1}");
    EXPECT_EQ(RunProgram(VELLUM_SESSION, "--each '*/a.png' --out-dir done none"), 2);
    EXPECT_TRUE(Says("two results have the name a.png")) << m_strSaid;
    EXPECT_EQ(RunProgram(VELLUM_SESSION, "--each 'pages/*.png' --out-dir link none"), 2);
    EXPECT_TRUE(Says("a result would overwrite pages/a.png")) << m_strSaid;
    EXPECT_EQ(RunProgram(VELLUM_SESSION, "--each 'mor[ef]/[ab].png' --out-dir done none"), 0) << m_strSaid;
    EXPECT_TRUE(Says("more/b.png: done\n") && Says("\n2 done, 0 failed")) << m_strSaid;
}

} // namespace
