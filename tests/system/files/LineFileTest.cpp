#include "system/files/LineFile.h"

#include "tests/support/InProcess.h"
#include "tests/support/TempFolder.h"

namespace {

TEST(LineFile, HoldsWholeLinesAlsoOnAFullDisk) {
    CTempFolder folder;
    const auto path = folder.File("lines");
    const auto bytes = [&](const std::string& strName) {
        return CFileStore().Read(FromUtf8(folder.File(strName).native())).value_or("none");
    };
    {
        CLineFile file(path);
        EXPECT_TRUE(file.Write("one\n"));
        EXPECT_EQ(bytes("lines"), "one\n") << "at once";
    }
    CLineFile file(path);
    EXPECT_EQ(bytes("lines~"), "one\n");
    EXPECT_TRUE(OnFullDisk(10, [&] { return file.Write("1234567\n") && !file.Write("1234567\n"); }));
    EXPECT_EQ(bytes("lines"), "1234567\n");
    EXPECT_FALSE(CLineFile(folder.GetPath()).Write("x\n"));
    EXPECT_EQ(CLineFile(folder.GetPath()).GetFailure(), EFileFailure::NotPlain);
}

} // namespace
