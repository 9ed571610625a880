#include "system/files/OutputFile.h"

#include "system/files/FileStore.h"
#include "tests/support/TempFolder.h"
#include "tests/support/posix/InProcess.h"

#include <gtest/gtest.h>

TEST(OutputFile, IsOverwrittenInAFolderThatIsClosed) {
    const CTempFolder folder;
    const auto path = folder.File("out");
    CFileStore files;
    const auto bytes = [&] { return files.Read(path.wstring()).value_or("none"); };
    EXPECT_TRUE(WriteOutput(path, "first") && bytes() == "first");
    std::filesystem::permissions(path, std::filesystem::perms(0666));
    std::filesystem::permissions(folder.GetPath(), std::filesystem::perms(0555));
    EXPECT_TRUE(AsPlainUser(PLAIN_GROUP, [&] { return bool(WriteOutput(path, "new")); }));
    EXPECT_EQ(bytes(), "new");
    EXPECT_FALSE(AsPlainUser(PLAIN_GROUP, [&] { return bool(WriteOutput(folder.File("other"), "new")); }));
    std::filesystem::permissions(folder.GetPath(), std::filesystem::perms(0755));
    EXPECT_FALSE(std::filesystem::exists(folder.File("other")));
}
