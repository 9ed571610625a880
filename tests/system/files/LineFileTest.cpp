#include "system/files/LineFile.h"

#include "tests/support/TempFolder.h"

namespace {

TEST(LineFile, HoldsWholeLinesAtOnce) {
    CTempFolder folder;
    const auto path = folder.File("lines");
    const auto bytes = [&](const std::string& strName) {
        return CFileStore().Read(TextOf(folder.File(strName))).value_or("none");
    };
    {
        CLineFile file(path);
        EXPECT_TRUE(file.Write("one\n"));
        EXPECT_EQ(bytes("lines"), "one\n") << "at once";
    }
    CLineFile file(path);
    EXPECT_EQ(bytes("lines~"), "one\n");
    EXPECT_TRUE(file.Write("two\n") && bytes("lines") == "two\n");
    EXPECT_FALSE(CLineFile(folder.GetPath()).Write("x\n"));
    EXPECT_EQ(CLineFile(folder.GetPath()).GetFailure(), EFileFailure::NotPlain);
}

} // namespace
