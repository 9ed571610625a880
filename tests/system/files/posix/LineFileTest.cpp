#include "system/files/LineFile.h"

#include "tests/support/TempFolder.h"
#include "tests/support/posix/InProcess.h"

TEST(LineFile, HoldsWholeLinesOnAFullDisk) {
    const CTempFolder folder;
    CLineFile file(folder.File("lines"));
    EXPECT_TRUE(OnFullDisk(10, [&] { return file.Write("1234567\n") && !file.Write("1234567\n"); }));
    EXPECT_EQ(CFileStore().Read(TextOf(folder.File("lines"))).value_or("none"), "1234567\n");
}
