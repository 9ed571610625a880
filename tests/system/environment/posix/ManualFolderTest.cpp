#include "system/environment/ManualFolder.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>

TEST(ManualFolder, IsInADataFolderUnlessItIsBesideTheModule) {
    const CTempFolder folder;
    const auto put = [&](const char* pszFolder) {
        const auto path = folder.File(pszFolder);
        std::filesystem::create_directories(path);
        std::ofstream(path / "index.html") << "page";
        return path;
    };
    const auto find = [&](const char* pszModule) {
        return FindManual(folder.File(pszModule),
                          folder.File("none").native() + ":" + folder.File("data").native());
    };
    const auto data = put("data/vellumcraft/manual");
    EXPECT_EQ(find("usr/bin/program"), data);
    EXPECT_EQ(FindManual("/program", std::filesystem::relative(folder.File("data")).native()), "");
    const auto usr = put("usr/share/vellumcraft/manual");
    EXPECT_EQ(find("usr/bin/program"), usr);
    EXPECT_EQ(find("elsewhere/vellumcraft.8bf"), data);
}
