// ./dev in an unpacked archive, without a repository.
#include "tests/support/ProgramTest.h"

#include "TestPaths.h"

namespace {

namespace fs = std::filesystem;

class CDev : public CProgramTest {};

TEST_F(CDev, FindsTheSourcesWithoutARepository) {
    for (const auto& entry : fs::directory_iterator(VELLUM_SOURCE))
        if (entry.is_directory()) fs::create_directory(m_folder.File(entry.path().filename().native()));
    for (const char* psz : {"dev", ".clang-format"})
        fs::copy(fs::path(VELLUM_SOURCE) / psz, m_folder.File(psz));
    Write("core/Base/A.cpp", "int  a ;\n");
    Write("fuzz/B.h", "int  b ;\n");
    Write("fuzz/notes.txt", "int  c ;\n");
    ASSERT_EQ(RunProgram("./dev", "format"), 0) << m_strSaid;
    EXPECT_EQ(m_files.Read(Path("core/Base/A.cpp")), "int a;\n");
    EXPECT_EQ(m_files.Read(Path("fuzz/B.h")), "int b;\n");
    EXPECT_EQ(m_files.Read(Path("fuzz/notes.txt")), "int  c ;\n");
}

} // namespace
